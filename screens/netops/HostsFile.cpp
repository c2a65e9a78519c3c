#include "screens/netops/HostsFile.h"

#include <syslog.h>

#include <boost/filesystem.hpp>

#include "host/HostPaths.h"
#include "host/Log.h"

namespace Tolm::HostsFile {

namespace {

namespace fs = boost::filesystem;

fs::path Hosts() { return HostPath::Resolve("/etc/hosts"); }
fs::path Backup() { return HostPath::Resolve("/etc/hosts.backup"); }

void LogRestoreFailure(const boost::system::error_code& error)
{
    Log::Write(LOG_INFO, "failed to restore /etc/hosts: %s", error.message().c_str());
}

}  // namespace

bool MoveAside()
{
    boost::system::error_code error;
    fs::copy_file(Hosts(), Backup(), fs::copy_options::overwrite_existing, error);
    if (!error) fs::remove(Hosts(), error);
    if (error) Log::Write(LOG_INFO, "failed to backup /etc/hosts: %s", error.message().c_str());
    return !error;
}

void Restore()
{
    boost::system::error_code error;
    fs::rename(Backup(), Hosts(), error);
    if (error) LogRestoreFailure(error);
}

void EnsureInPlace()
{
    boost::system::error_code error;
    if (fs::exists(Hosts(), error) || !fs::exists(Backup(), error)) return;
    fs::rename(Backup(), Hosts(), error);
    if (error) LogRestoreFailure(error);
}

}  // namespace Tolm::HostsFile

#include "host/sim/StateFile.h"

#include "host/HostCtlException.h"
#include "host/HostPaths.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/file.h>
#include <unistd.h>

namespace Tolm::HostSim {
namespace {

using HostCtl::Lib::HostCtlException;

std::string ErrnoText(const std::string& what, const std::string& path)
{
    return what + " " + path + ": " + std::strerror(errno);
}

// Holds an flock on "<state>.lock" for its lifetime.
class Lock {
public:
    Lock(const std::string& statePath, int operation)
    {
        std::string lockPath = statePath + ".lock";
        _fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        if (_fd < 0)
            throw HostCtlException(ErrnoText("cannot open host state lock", lockPath));
        while (::flock(_fd, operation) != 0) {
            if (errno != EINTR) {
                ::close(_fd);
                throw HostCtlException(ErrnoText("cannot lock host state", lockPath));
            }
        }
    }
    ~Lock() { ::close(_fd); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    int _fd = -1;
};

nlohmann::json ReadUnlocked(const std::string& path)
{
    std::ifstream in(path);
    if (!in)
        throw HostCtlException(ErrnoText("cannot read host state", path));
    std::stringstream buffer;
    buffer << in.rdbuf();
    try {
        nlohmann::json state = nlohmann::json::parse(buffer.str());
        if (!state.is_object())
            throw HostCtlException("host state " + path + " is not a JSON object");
        return state;
    } catch (const nlohmann::json::exception& e) {
        throw HostCtlException("host state " + path + " is corrupt: " + e.what());
    }
}

void WriteUnlocked(const std::string& path, const nlohmann::json& state)
{
    std::string text = state.dump(2) + "\n";
    std::string tmp = path + ".tmp." + std::to_string(::getpid());
    int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        throw HostCtlException(ErrnoText("cannot write host state", tmp));
    size_t done = 0;
    while (done < text.size()) {
        ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            std::string msg = ErrnoText("cannot write host state", tmp);
            ::close(fd);
            ::unlink(tmp.c_str());
            throw HostCtlException(msg);
        }
        done += static_cast<size_t>(n);
    }
    if (::fsync(fd) != 0 || ::close(fd) != 0) {
        std::string msg = ErrnoText("cannot flush host state", tmp);
        ::unlink(tmp.c_str());
        throw HostCtlException(msg);
    }
    if (::rename(tmp.c_str(), path.c_str()) != 0) {
        std::string msg = ErrnoText("cannot replace host state", path);
        ::unlink(tmp.c_str());
        throw HostCtlException(msg);
    }
}

}  // namespace

StateFile::StateFile(std::string path) : _path(std::move(path)) {}

std::string StateFile::DefaultPath()
{
    return HostPath::Resolve("/var/lib/hostsim/host.json");
}

nlohmann::json StateFile::Read() const
{
    // Rename makes every file a whole one, so readers need no lock.
    return ReadUnlocked(_path);
}

void StateFile::Update(const std::function<void(nlohmann::json&)>& change) const
{
    Lock lock(_path, LOCK_EX);
    nlohmann::json state = ReadUnlocked(_path);
    change(state);
    WriteUnlocked(_path, state);
}

void StateFile::Write(const nlohmann::json& state) const
{
    Lock lock(_path, LOCK_EX);
    WriteUnlocked(_path, state);
}

}  // namespace Tolm::HostSim

#include "host/sim/StateFile.h"

#include "host/HostCtlException.h"
#include "host/HostPaths.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
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

// Far above any real host's state; a bigger file is a mistake, not a host.
constexpr off_t kMaxStateBytes = 16 << 20;

std::string ReadText(const std::string& path)
{
    // O_NONBLOCK: a FIFO put in the state's place must fail here instead of
    // waiting for a writer; fstat then refuses anything but a regular file.
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0)
        throw HostCtlException(ErrnoText("cannot read host state", path));
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{fd};
    struct stat st {};
    if (::fstat(fd, &st) != 0)
        throw HostCtlException(ErrnoText("cannot read host state", path));
    if (!S_ISREG(st.st_mode))
        throw HostCtlException("host state " + path + " is not a regular file");
    if (st.st_size > kMaxStateBytes)
        throw HostCtlException("host state " + path + " is too large (" + std::to_string(st.st_size) +
                               " bytes, at most " + std::to_string(kMaxStateBytes) + ")");
    std::string text;
    char buffer[65536];
    for (;;) {
        ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            throw HostCtlException(ErrnoText("cannot read host state", path));
        if (n == 0)
            return text;
        text.append(buffer, static_cast<size_t>(n));
        if (text.size() > static_cast<size_t>(kMaxStateBytes))
            throw HostCtlException("host state " + path + " is too large");
    }
}

nlohmann::json ReadUnlocked(const std::string& path)
{
    std::string text = ReadText(path);
    try {
        nlohmann::json state = nlohmann::json::parse(text);
        if (!state.is_object())
            throw HostCtlException("host state " + path + " is not a JSON object");
        return state;
    } catch (const nlohmann::json::exception& e) {
        throw HostCtlException("host state " + path + " is corrupt: " + e.what());
    }
}

// Every writer holds the lock while its temporary file exists, so one found
// by the lock's holder was left by a writer that died mid-write.
void RemoveStaleTemporaries(const std::string& path)
{
    namespace fs = std::filesystem;
    fs::path target(path);
    std::string prefix = target.filename().string() + ".tmp.";
    std::error_code ec;
    for (fs::directory_iterator it(target.parent_path(), ec), end; !ec && it != end; it.increment(ec))
        if (it->path().filename().string().rfind(prefix, 0) == 0) {
            std::error_code ignored;
            fs::remove(it->path(), ignored);
        }
}

void WriteUnlocked(const std::string& path, const nlohmann::json& state)
{
    RemoveStaleTemporaries(path);
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

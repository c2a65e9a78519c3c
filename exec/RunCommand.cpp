#include "exec/RunCommand.h"

#include "exec/PipePair.h"
#include "host/HostPaths.h"
#include "host/Log.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <spawn.h>
#include <string>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Tolm {
namespace {

constexpr long long kSleepMicros = 20000;

// A child that exits before reading all its input would raise SIGPIPE in the
// console and end it. Block the signal on this thread while feeding, and
// swallow one that became pending because of our write, so the failed write
// shows up only as EPIPE.
class SigpipeGuard {
public:
    SigpipeGuard()
    {
        sigemptyset(&_pipeSet);
        sigaddset(&_pipeSet, SIGPIPE);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        _wasPending = sigismember(&pending, SIGPIPE) == 1;
        _active = pthread_sigmask(SIG_BLOCK, &_pipeSet, &_oldMask) == 0;
    }
    SigpipeGuard(const SigpipeGuard&) = delete;
    SigpipeGuard& operator=(const SigpipeGuard&) = delete;
    ~SigpipeGuard()
    {
        if (!_active)
            return;
        int saved = errno;
        if (!_wasPending) {
            struct timespec zero {};
            while (sigtimedwait(&_pipeSet, nullptr, &zero) == -1 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &_oldMask, nullptr);
        errno = saved;
    }

private:
    sigset_t _pipeSet;
    sigset_t _oldMask;
    bool _wasPending = false;
    bool _active = false;
};

void FeedInput(int fd, const char* input, unsigned int inputLength)
{
    SigpipeGuard guard;
    unsigned int done = 0;
    while (done < inputLength) {
        ssize_t n = ::write(fd, input + done, inputLength - done);
        if (n > 0) {
            done += static_cast<unsigned int>(n);
        } else if (n < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        } else {
            return;
        }
    }
}

// Reads until the capacity is filled or end of file; whatever is beyond the
// capacity stays in the pipe and is lost with it.
void Collect(int fd, char* buffer, unsigned int* length)
{
    unsigned int capacity = *length;
    unsigned int stored = 0;
    while (stored < capacity) {
        ssize_t n = ::read(fd, buffer + stored, capacity - stored);
        if (n > 0) {
            stored += static_cast<unsigned int>(n);
        } else if (n == 0) {
            break;
        } else if (errno == EINTR || errno == EAGAIN) {
            continue;
        } else {
            *length = static_cast<unsigned int>(-1);
            return;
        }
    }
    *length = stored;
}

// The console blocks or redirects signals for its own signal thread; a tool
// must start with the default dispositions and nothing blocked.
class SpawnAttributes {
public:
    SpawnAttributes()
    {
        if (posix_spawnattr_init(&_attr) != 0)
            return;
        _ok = true;
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        if (posix_spawnattr_setsigmask(&_attr, &none) != 0 ||
            posix_spawnattr_setsigdefault(&_attr, &all) != 0 ||
            posix_spawnattr_setflags(&_attr, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF) != 0)
            _valid = false;
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes()
    {
        if (_ok)
            posix_spawnattr_destroy(&_attr);
    }
    bool Ok() const { return _ok && _valid; }
    posix_spawnattr_t* Get() { return &_attr; }

private:
    posix_spawnattr_t _attr;
    bool _ok = false;
    bool _valid = true;
};

class SpawnActions {
public:
    SpawnActions() { _ok = posix_spawn_file_actions_init(&_actions) == 0; }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions()
    {
        if (_ok)
            posix_spawn_file_actions_destroy(&_actions);
    }
    bool Ok() const { return _ok; }
    posix_spawn_file_actions_t* Get() { return &_actions; }

private:
    posix_spawn_file_actions_t _actions;
    bool _ok = false;
};

// posix_spawn rather than fork/execve: glibc implements it with
// CLONE_VFORK, so a failed exec comes back reliably as its return value
// instead of as an exit status of a half-started child, and no copy of the
// parent's address space is made. The file actions place the three pipe ends
// on 0, 1 and 2 and then close every other descriptor the child inherited, so
// nothing of the console (terminal, signal pipe) leaks into host tools.
pid_t StartChild(const std::string& path, const char* const* argv, PipePair& in, PipePair& out,
                 PipePair& err)
{
    SpawnActions actions;
    SpawnAttributes attributes;
    if (!actions.Ok() || !attributes.Ok()) {
        errno = ENOMEM;
        return -1;
    }
    int rc = posix_spawn_file_actions_adddup2(actions.Get(), in.readEnd, STDIN_FILENO);
    if (rc == 0)
        rc = posix_spawn_file_actions_adddup2(actions.Get(), out.writeEnd, STDOUT_FILENO);
    if (rc == 0)
        rc = posix_spawn_file_actions_adddup2(actions.Get(), err.writeEnd, STDERR_FILENO);
    if (rc == 0)
        rc = posix_spawn_file_actions_addclosefrom_np(actions.Get(), STDERR_FILENO + 1);
    if (rc != 0) {
        errno = rc;
        return -1;
    }

    static char pythonHome[] = "PYTHONHOME=/";
    char* const environment[] = {pythonHome, nullptr};
    pid_t pid = -1;
    rc = posix_spawn(&pid, path.c_str(), actions.Get(), attributes.Get(), const_cast<char* const*>(argv),
                     environment);
    if (rc != 0) {
        errno = rc;
        return -1;
    }
    return pid;
}

// A signal (SIGCHLD while a network test runs) must not shorten the limit.
void SleepMicros(long long micros)
{
    struct timespec left {};
    left.tv_sec = static_cast<time_t>(micros / 1000000);
    left.tv_nsec = static_cast<long>((micros % 1000000) * 1000);
    while (::nanosleep(&left, &left) == -1 && errno == EINTR) {
    }
}

// Waits for the child. `status` is filled in only when waitpid reports it; a
// failed waitpid or an expired limit leave it alone.
void WaitForChild(pid_t pid, int timeoutSeconds, int& status)
{
    if (timeoutSeconds <= 0) {
        while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
        return;
    }
    long long budget = static_cast<long long>(timeoutSeconds) * 1000000;
    do {
        if (::waitpid(pid, &status, WNOHANG) != 0)
            return;
        SleepMicros(kSleepMicros);
        budget -= kSleepMicros;
    } while (budget > 0);
    Log::Write(LOG_WARNING, "Killing process because %d seconds timeout expired", timeoutSeconds);
    ::kill(pid, SIGKILL);
}

// The program is a host path; so is the script the shell is handed as its
// first argument ("/bin/sh /etc/init.d/SSH status"). Both are resolved here,
// once, for every caller; `script` keeps the resolved script alive.
std::vector<const char*> HostArguments(const std::string& program, const char* const* argv, std::string& script)
{
    std::vector<const char*> args;
    for (const char* const* a = argv; a != nullptr && *a != nullptr; ++a)
        args.push_back(*a);
    bool shell = program.size() >= 3 && program.compare(program.size() - 3, 3, "/sh") == 0;
    if (shell && args.size() > 1 && args[1][0] == '/') {
        script = HostPath::Resolve(args[1]);
        args[1] = script.c_str();
    }
    args.push_back(nullptr);
    return args;
}

}  // namespace

int RunCommand(const char* path, const char* const* argv, char* out, unsigned int* outLength,
               char* err, unsigned int* errLength, const char* input, unsigned int inputLength,
               int timeoutSeconds)
{
    PipePair inPipe;
    PipePair outPipe;
    PipePair errPipe;
    if (!inPipe.Open() || !outPipe.Open() || !errPipe.Open())
        return -1;

    const std::string program = path == nullptr ? "" : path;
    std::string script;
    std::vector<const char*> args = HostArguments(program, argv, script);
    pid_t pid = StartChild(HostPath::Resolve(program), args.data(), inPipe, outPipe, errPipe);
    if (pid < 0)
        return -1;  // the pipes close on the way out; errno survives closing

    inPipe.CloseRead();
    outPipe.CloseWrite();
    errPipe.CloseWrite();

    if (input != nullptr)
        FeedInput(inPipe.writeEnd, input, inputLength);
    inPipe.CloseWrite();

    // Stays -1 (not a normal exit) unless waitpid fills it in.
    int status = -1;
    WaitForChild(pid, timeoutSeconds, status);

    if (out != nullptr && outLength != nullptr)
        Collect(outPipe.readEnd, out, outLength);
    if (err != nullptr && errLength != nullptr)
        Collect(errPipe.readEnd, err, errLength);

    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    Log::Write(LOG_ERR, "Run Command did not terminate normally");
    return -1;
}

}  // namespace Tolm

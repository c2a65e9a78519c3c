#include "exec/ToolRun.h"

#include "exec/PipePair.h"
#include "host/Log.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolm {
namespace {

thread_local ToolWaitHooks t_hooks;
thread_local ToolRun* t_running = nullptr;

// How long a tool killed at its limit may take to die before it is left
// unreaped; a dead process goes in microseconds.
constexpr int kReapGraceMs = 100;

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

void SetNonBlocking(int fd)
{
    const int flags = ::fcntl(fd, F_GETFL);
    if (flags >= 0)
        ::fcntl(fd, F_SETFL, flags | O_NONBLOCK);
}

}  // namespace

int OpenPidFd(pid_t pid)
{
#ifdef SYS_pidfd_open
    const int fd = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    if (fd >= 0)
        ::fcntl(fd, F_SETFD, FD_CLOEXEC);
    return fd;
#else
    (void)pid;
    errno = ENOSYS;
    return -1;
#endif
}

pid_t WaitChild(pid_t pid, int* status, int flags)
{
    pid_t got;
    do {
        got = ::waitpid(pid, status, flags);
    } while (got < 0 && errno == EINTR);
    return got;
}

void SetToolWaitHooks(const ToolWaitHooks& hooks)
{
    t_hooks = hooks;
}

void BeforeToolWait()
{
    if (t_hooks.beforeWait)
        t_hooks.beforeWait();
}

int WaitForTool(pid_t pid)
{
    return ToolRun(pid, 0).Wait();
}

void KillRunningTool()
{
    for (ToolRun* run = t_running; run != nullptr; run = run->_outer)
        run->KillGroup();
}

ToolRun::ToolRun(pid_t pid, int timeoutSeconds)
    : _pid(pid),
      _pidfd(OpenPidFd(pid)),
      _timeoutSeconds(timeoutSeconds),
      _deadline(std::chrono::steady_clock::now() + std::chrono::seconds(timeoutSeconds > 0 ? timeoutSeconds : 0))
{
}

ToolRun::~ToolRun()
{
    if (_pidfd >= 0)
        ::close(_pidfd);
}

void ToolRun::Feed(PipePair& in, const char* input, unsigned int length)
{
    if (input == nullptr || in.writeEnd < 0)
        return;
    _in = &in;
    _input = input;
    _inputLength = length;
    SetNonBlocking(in.writeEnd);
}

void ToolRun::Collect(int fd, char* buffer, unsigned int* length)
{
    if (fd < 0 || _sinkCount == 2)
        return;
    SetNonBlocking(fd);
    Sink& sink = _sinks[_sinkCount++];
    sink.fd = fd;
    if (buffer != nullptr && length != nullptr) {
        sink.buffer = buffer;
        sink.length = length;
    }
}

// Reads what the pipe holds now; `all` keeps reading until end of file or
// an empty pipe (at most a few pipefuls: something the tool left behind may
// keep writing). Past the capacity (or without a buffer) bytes are dropped,
// so a tool never blocks on a full pipe.
void ToolRun::Drain(Sink& sink, bool all)
{
    char scratch[4096];
    size_t budget = all ? 1u << 20 : 0;
    while (sink.fd >= 0) {
        const unsigned int capacity = sink.buffer ? *sink.length : 0;
        const bool room = sink.buffer != nullptr && sink.stored < capacity;
        char* to = room ? sink.buffer + sink.stored : scratch;
        const size_t want = room ? capacity - sink.stored : sizeof scratch;
        const ssize_t n = ::read(sink.fd, to, want);
        if (n > 0) {
            if (room)
                sink.stored += static_cast<unsigned int>(n);
            if (budget <= static_cast<size_t>(n))
                return;
            budget -= static_cast<size_t>(n);
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && errno == EAGAIN)
            return;
        if (n < 0)
            sink.failed = true;
        sink.fd = -1;  // end of file or error: nothing more to watch
    }
}

void ToolRun::FeedSome()
{
    while (_in != nullptr && _fed < _inputLength) {
        const ssize_t n = ::write(_in->writeEnd, _input + _fed, _inputLength - _fed);
        if (n > 0) {
            _fed += static_cast<unsigned int>(n);
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && errno == EAGAIN)
            return;
        break;  // the tool closed its input: stop feeding
    }
    if (_in != nullptr) {
        _in->CloseWrite();
        _in = nullptr;
    }
}

bool ToolRun::Reap(int flags)
{
    if (_reaped)
        return true;
    int status = 0;
    const pid_t got = WaitChild(_pid, &status, flags);
    if (got == _pid) {
        _status = status;
        _reaped = true;
    } else if (got < 0) {
        _reaped = true;  // someone else reaped it; the status stays unknown
    }
    return _reaped;
}

void ToolRun::KillGroup()
{
    if (!_reaped)
        ::kill(-_pid, SIGKILL);
}

int ToolRun::Wait()
{
    // The host may go down with this tool: what the screen should show
    // while it works goes out first.
    BeforeToolWait();
    SigpipeGuard sigpipe;
    _outer = t_running;
    t_running = this;
    if (_in != nullptr)
        FeedSome();

    for (;;) {
        if (_pidfd < 0 && Reap(WNOHANG))
            break;
        pollfd fds[5];
        int n = 0;
        const int pidAt = _pidfd >= 0 ? n : -1;
        if (_pidfd >= 0)
            fds[n++] = {_pidfd, POLLIN, 0};
        const int inAt = _in != nullptr ? n : -1;
        if (_in != nullptr)
            fds[n++] = {_in->writeEnd, POLLOUT, 0};
        int sinkAt[2] = {-1, -1};
        for (int i = 0; i < _sinkCount; ++i) {
            if (_sinks[i].fd < 0)
                continue;
            sinkAt[i] = n;
            fds[n++] = {_sinks[i].fd, POLLIN, 0};
        }
        const int wakeAt = t_hooks.wakeFd >= 0 && t_hooks.onWake ? n : -1;
        if (wakeAt >= 0)
            fds[n++] = {t_hooks.wakeFd, POLLIN, 0};

        int waitMs = -1;
        if (_timeoutSeconds > 0) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(_deadline - std::chrono::steady_clock::now());
            waitMs = left.count() > 0 ? static_cast<int>(left.count()) : 0;
        }
        // Without a pidfd only the pipes can wake us: check the child again
        // now and then (old kernels only).
        if (_pidfd < 0 && (waitMs < 0 || waitMs > 250))
            waitMs = 250;

        const int ready = ::poll(fds, static_cast<nfds_t>(n), waitMs);
        if (ready < 0 && errno != EINTR) {
            Log::Errno("poll() failed");
            break;
        }
        if (ready > 0) {
            for (int i = 0; i < _sinkCount; ++i)
                if (sinkAt[i] >= 0 && fds[sinkAt[i]].revents != 0)
                    Drain(_sinks[i], false);
            if (inAt >= 0 && fds[inAt].revents != 0)
                FeedSome();
            if (wakeAt >= 0 && fds[wakeAt].revents != 0)
                t_hooks.onWake();
            if (pidAt >= 0 && fds[pidAt].revents != 0 && Reap(WNOHANG))
                break;
        }
        if (_timeoutSeconds > 0 && std::chrono::steady_clock::now() >= _deadline) {
            Log::Write(LOG_WARNING, "Killing process because %d seconds timeout expired", _timeoutSeconds);
            KillGroup();
            if (_pidfd >= 0) {
                pollfd dead{_pidfd, POLLIN, 0};
                ::poll(&dead, 1, kReapGraceMs);
            }
            Reap(WNOHANG);
            _status = -1;
            break;
        }
    }

    // What the tool wrote before it ended is in the pipes now; whatever a
    // process it left behind writes later is not waited for.
    for (int i = 0; i < _sinkCount; ++i) {
        Drain(_sinks[i], true);
        if (_sinks[i].length != nullptr)
            *_sinks[i].length = _sinks[i].failed ? static_cast<unsigned int>(-1) : _sinks[i].stored;
    }
    if (_in != nullptr) {
        _in->CloseWrite();
        _in = nullptr;
    }
    t_running = _outer;
    return _status;
}

}  // namespace Tolm

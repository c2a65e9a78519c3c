#include "screens/netops/StepRunner.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

#include "frame/Frame.h"
#include "host/Log.h"

namespace Tolm {

namespace {

// The pipe the handler writes to while a test runs; -1 otherwise.
std::atomic<int> gWakeFd{-1};
static_assert(std::atomic<int>::is_always_lock_free, "the signal handler reads it");

void OnChildExit(int)
{
    const int saved = errno;
    const int fd = gWakeFd.load();
    if (fd >= 0) {
        const char byte = 1;
        // A full pipe already holds a wake-up: losing this byte loses nothing.
        [[maybe_unused]] ssize_t written = write(fd, &byte, 1);
    }
    errno = saved;
}

sigset_t ChildSignal()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGCHLD);
    return set;
}

}  // namespace

StepRunner::StepRunner()
{
    if (!_wake.Open()) {
        Log::Errno("pipe() failed");
        return;
    }
    fcntl(_wake.readEnd, F_SETFL, O_NONBLOCK);
    fcntl(_wake.writeEnd, F_SETFL, O_NONBLOCK);
    gWakeFd = _wake.writeEnd;
    struct sigaction action {};
    action.sa_handler = OnChildExit;
    action.sa_flags = SA_RESTART | SA_NOCLDSTOP;
    sigemptyset(&action.sa_mask);
    sigaction(SIGCHLD, &action, nullptr);
    // Kept off this thread, so the key wait is never cut short by it; the
    // signal thread takes it and the pipe wakes the wait.
    const sigset_t child = ChildSignal();
    pthread_sigmask(SIG_BLOCK, &child, &_savedMask);
    Frame::WatchDescriptor(_wake.readEnd);
}

StepRunner::~StepRunner()
{
    Abandon();
    Frame::WatchDescriptor(-1);
    if (_wake.readEnd < 0) return;
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    sigaction(SIGCHLD, &action, nullptr);
    pthread_sigmask(SIG_SETMASK, &_savedMask, nullptr);
    gWakeFd = -1;
}

bool StepRunner::Start(const std::function<int()>& body)
{
    Abandon();
    if (_wake.readEnd < 0) return false;
    const pid_t pid = fork();
    if (pid < 0) {
        Log::Errno("fork() failed");
        return false;
    }
    if (pid == 0) {
        // Its own process group, so abandoning it takes whatever it started.
        setpgid(0, 0);
        // A fresh signal state for the step: nothing the console blocks or
        // handles applies to it.
        signal(SIGCHLD, SIG_DFL);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        int status = 1;
        try {
            status = body();
        } catch (...) {
        }
        // No exit handlers: they belong to the console (the terminal).
        _exit(status);
    }
    setpgid(pid, pid);
    _pid = pid;
    return true;
}

std::optional<int> StepRunner::Collect()
{
    char bytes[64];
    while (read(_wake.readEnd, bytes, sizeof bytes) > 0) {
    }
    if (_pid <= 0) return std::nullopt;
    int status = 0;
    pid_t got;
    do {
        got = waitpid(_pid, &status, WNOHANG);
    } while (got < 0 && errno == EINTR);
    if (got == 0) return std::nullopt;
    _pid = -1;
    return got < 0 ? -1 : status;
}

void StepRunner::Abandon()
{
    if (_pid <= 0) return;
    if (kill(-_pid, SIGKILL) != 0) kill(_pid, SIGKILL);
    int status;
    while (waitpid(_pid, &status, 0) < 0 && errno == EINTR) {
    }
    _pid = -1;
}

}  // namespace Tolm

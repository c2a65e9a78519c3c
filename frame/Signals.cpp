#include <pthread.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <initializer_list>

#include "exec/ToolRun.h"
#include "frame/Frame.h"
#include "host/ChildWait.h"
#include "host/Log.h"

namespace Tolm {

sigset_t Frame::_signalSet;
int Frame::_signalPipe[2] = {-1, -1};
std::string Frame::_pendingSignals;

void Frame::InitSignals()
{
    // Close-on-exec: host tools have no business with our pipe.
    if (pipe2(_signalPipe, O_CLOEXEC) != 0) {
        Log::Errno("pipe() failed");
        std::exit(1);
    }

    sigemptyset(&_signalSet);
    for (int sig : {SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGWINCH}) sigaddset(&_signalSet, sig);
    // Blocked before any thread exists, so every thread inherits the mask
    // and the signals arrive only through sigwait.
    if (int rc = pthread_sigmask(SIG_BLOCK, &_signalSet, nullptr); rc != 0) {
        errno = rc;
        Log::Errno("pthread_sigmask() failed");
    }

    // Waiting for a host tool: the screen shows what it should meanwhile, and
    // the signal pipe is still heard.
    SetToolWaitHooks({&Window::Flush, _signalPipe[0], &Frame::ServeSignalDuringTool});
    // Programs the host library starts are waited for the same way.
    Host::SetChildWait(&WaitForTool);

    pthread_t thread;
    if (int rc = pthread_create(&thread, nullptr, &Frame::SignalHandler, nullptr); rc != 0) {
        errno = rc;
        Log::Errno("pthread_create() failed");
        std::exit(1);
    }
}

void Frame::ServeSignalDuringTool()
{
    const int code = ReadSignalByte();
    if (code < 0) return;
    if (code == SIG_TERMINATE) {
        KillRunningTool();
        std::exit(0);
    }
    _pendingSignals.push_back(static_cast<char>(code));
}

void* Frame::SignalHandler(void*)
{
    for (;;) {
        int sig = 0;
        if (int rc = sigwait(&_signalSet, &sig); rc != 0) {
            errno = rc;
            Log::Errno("sigwait() failed");
            continue;
        }
        unsigned char code;
        switch (sig) {
        case SIGUSR1: code = SIG_REFRESH; break;
        case SIGUSR2: code = SIG_RESTART; break;
        case SIGWINCH: code = SIG_RESIZE; break;
        case SIGINT:
        case SIGQUIT:
        case SIGTERM: code = SIG_TERMINATE; break;
        default: continue;
        }
        ssize_t written;
        do {
            written = write(_signalPipe[1], &code, 1);
        } while (written <= 0 && errno == EINTR);
    }
    return nullptr;
}

}  // namespace Tolm

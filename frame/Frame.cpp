#include "frame/Frame.h"

#include <sys/ioctl.h>
#include <sys/select.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "frame/FrameClock.h"
#include "frame/Terminal.h"
#include "host/Log.h"
#include "catalogue/StringFactory.h"

namespace Tolm {

Frame* Frame::fgFrame = nullptr;

namespace {

// Seconds without a key before the window in front is dimmed.
constexpr long kDimAfter = 60;

FrameClock& RealClock()
{
    static FrameClock clock;
    return clock;
}

FrameClock* g_clock = nullptr;

int g_watchedFd = -1;

FrameClock& Clock()
{
    return g_clock ? *g_clock : RealClock();
}

bool Passed(const timeval& now, const timeval& deadline)
{
    return now.tv_sec > deadline.tv_sec || (now.tv_sec == deadline.tv_sec && now.tv_usec > deadline.tv_usec);
}

timeval Until(const timeval& deadline, const timeval& now)
{
    if (Passed(now, deadline)) return timeval{0, 0};
    timeval left{deadline.tv_sec - now.tv_sec, deadline.tv_usec - now.tv_usec};
    if (left.tv_usec < 0) {
        left.tv_usec += 1000000;
        --left.tv_sec;
    }
    return left;
}

}  // namespace

timeval FrameClock::Now()
{
    timeval tv{};
    gettimeofday(&tv, nullptr);
    return tv;
}

int FrameClock::Wait(const timeval* limit)
{
    return Frame::WaitForInput(limit);
}

void Frame::SetClock(FrameClock* clock)
{
    g_clock = clock;
}

Frame::Frame(Frame* parent, int x, int y, int width, int height, int background, int foreground)
    : Window(x, y, width, height, background, foreground),
      _parentFrame(parent),
      _factory(StringFactory::GetFactory("en_US"))
{
}

std::string Frame::Text(TextId id) const
{
    return _factory != nullptr ? _factory->GetString(static_cast<unsigned>(id)) : "";
}

Frame::~Frame()
{
    // The catalogue lives for the whole process; only our handle goes.
    _factory = nullptr;
    if (fgFrame == this) fgFrame = nullptr;
}

int Frame::Run(Frame* window, bool redrawOnAccept)
{
    fgFrame = nullptr;
    Frame* parent = window->_parentFrame;
    if (parent) {
        parent->Draw(false);
        parent->Push();
    }
    window->Draw(true);
    fgFrame = window;
    int result;
    try {
        result = window->Execute();
    } catch (const TolmTimeout&) {
        // The session is over; whoever catches this redraws.
        fgFrame = nullptr;
        throw;
    }
    if (parent && (redrawOnAccept || result != 1)) {
        parent->Draw(true);
        parent->Push();
    }
    fgFrame = parent;
    return result;
}

int Frame::GetKey(Window* window, bool idleTimeout)
{
    FrameClock& clock = Clock();
    const bool idleActive = _idleTimeout != 0 && idleTimeout;
    const timeval start = clock.Now();
    const long idleSeconds = std::max<long>(_idleTimeout, kDimAfter);
    const timeval idleDeadline{start.tv_sec + idleSeconds, start.tv_usec};
    const timeval dimDeadline{start.tv_sec + kDimAfter, start.tv_usec};
    bool dimmed = false;

    for (;;) {
        const timeval now = clock.Now();
        if (idleActive && Passed(now, idleDeadline)) {
            fgFrame = nullptr;
            throw TolmTimeout();
        }
        // Everything drawn since the last key goes out in one update.
        Window::Flush();
        int result;
        if (!dimmed && !Passed(now, dimDeadline)) {
            timeval left = Until(dimDeadline, now);
            result = clock.Wait(&left);
        } else {
            if (!dimmed && window) {
                window->Draw(false);
                window->Push();
                Window::Flush();
            }
            if (idleActive) {
                timeval left = Until(idleDeadline, now);
                result = clock.Wait(&left);
            } else {
                result = clock.Wait(nullptr);
            }
            dimmed = true;
        }

        switch (result) {
        case WAIT_TIMEOUT:
        case WAIT_NOTHING:
            continue;
        case WAIT_REFRESH:
            if (fgFrame) fgFrame->Refresh();
            CheckSmartCard();
            continue;
        case WAIT_RESTART:
            if (!_loggedIn) std::exit(0);
            _markForRestart = true;
            continue;
        case WAIT_RESIZE:
        case Key::Resize:
            // Screens are laid out once; a new size means a fresh start.
            Resize();
            std::exit(0);
        case WAIT_TERMINATE:
            std::exit(0);
        case WAIT_WATCHED:
            return result;
        default:
            break;
        }
        if (result < 0) continue;
        if (dimmed && window) {
            if (curscr) clearok(curscr, TRUE);
            window->Draw(true);
            window->Push();
        }
        return result;
    }
}

namespace {

// Descriptor 0 reported readable: true when that means end of input or a
// terminal that went away rather than a key. `unknown` is set when the
// descriptor cannot tell (then a read that yields no key decides).
bool InputGone(bool& unknown)
{
    int pending = 0;
    unknown = false;
    if (ioctl(0, FIONREAD, &pending) == 0) return pending == 0;
    if (errno == EIO) return true;
    unknown = true;
    return false;
}

}  // namespace

void Frame::WatchDescriptor(int fd)
{
    g_watchedFd = fd;
}

int Frame::WaitForInput(const timeval* limit)
{
    const int pipeFd = _signalPipe[0];
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(0, &readable);
    if (pipeFd >= 0) FD_SET(pipeFd, &readable);
    if (g_watchedFd >= 0) FD_SET(g_watchedFd, &readable);
    // A signal that came while a host tool ran is already waiting: only look
    // whether a key is there too.
    const bool queued = !_pendingSignals.empty();
    timeval left{};
    if (limit && !queued) left = *limit;
    int n = select(std::max({0, pipeFd, g_watchedFd}) + 1, &readable, nullptr, nullptr,
                   limit || queued ? &left : nullptr);
    if (n < 0) {
        Log::Errno("select() failed");
        return WAIT_NOTHING;
    }
    if (n == 0 && !queued) return WAIT_TIMEOUT;

    // Keys first: a signal byte waits for the next call.
    if (n > 0 && FD_ISSET(0, &readable)) {
        bool unknown = false;
        if (InputGone(unknown)) {
            Log::Write(LOG_INFO, "Terminal input closed, ending");
            return WAIT_TERMINATE;
        }
        if (stdscr) {
            // Only what has already arrived: a partial escape sequence is no key.
            wtimeout(stdscr, 0);
            int key = wgetch(stdscr);
            wtimeout(stdscr, -1);
            if (key != ERR) return key;
        }
        if (unknown) {
            Log::Write(LOG_INFO, "Terminal input closed, ending");
            return WAIT_TERMINATE;
        }
    }
    if (queued) {
        // Signals that arrived while a host tool ran, in their order.
        const auto code = static_cast<unsigned char>(_pendingSignals.front());
        _pendingSignals.erase(0, 1);
        return code >= SIG_REFRESH && code <= SIG_TERMINATE ? -2 - code : WAIT_NOTHING;
    }
    if (n > 0 && g_watchedFd >= 0 && FD_ISSET(g_watchedFd, &readable)) return WAIT_WATCHED;
    if (n > 0 && pipeFd >= 0 && FD_ISSET(pipeFd, &readable)) return ReadSignalCode();
    return WAIT_NOTHING;
}

int Frame::ReadSignalByte()
{
    unsigned char code = 0;
    ssize_t got;
    do {
        got = read(_signalPipe[0], &code, 1);
    } while (got < 0 && errno == EINTR);
    return got == 1 ? code : -1;
}

int Frame::ReadSignalCode()
{
    const int code = ReadSignalByte();
    if (code >= SIG_REFRESH && code <= SIG_TERMINATE) return -2 - code;
    return WAIT_NOTHING;
}

void Frame::AwaitWhileAway(int fd)
{
    // Whoever has the terminal reads the keys; the session's clock runs from
    // the moment it was lent, as no key reaches the console meanwhile.
    const bool idleActive = _idleTimeout != 0;
    const timeval start = Clock().Now();
    const timeval idleDeadline{start.tv_sec + std::max<long>(_idleTimeout, kDimAfter), start.tv_usec};
    bool resized = false;
    for (;;) {
        const timeval now = Clock().Now();
        if (idleActive && Passed(now, idleDeadline)) {
            fgFrame = nullptr;
            throw TolmTimeout();
        }
        const int pipeFd = _signalPipe[0];
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(fd, &readable);
        if (pipeFd >= 0) FD_SET(pipeFd, &readable);
        timeval left = Until(idleDeadline, now);
        const int n = select(std::max(fd, pipeFd) + 1, &readable, nullptr, nullptr, idleActive ? &left : nullptr);
        if (n < 0) {
            if (errno == EINTR) continue;
            Log::Errno("select() failed");
            return;
        }
        if (n == 0) continue;
        if (FD_ISSET(fd, &readable)) break;
        switch (ReadSignalCode()) {
        case WAIT_REFRESH:
            // Nothing is drawn while the terminal is lent; a removed card
            // still ends the session.
            CheckSmartCard();
            break;
        case WAIT_RESTART:
            if (!_loggedIn) std::exit(0);
            _markForRestart = true;
            break;
        case WAIT_RESIZE:
            resized = true;
            break;
        case WAIT_TERMINATE:
            std::exit(0);
        default:
            break;
        }
    }
    // The screens are laid out once; a new size means a fresh start, once the
    // terminal is back.
    if (resized) {
        Resize();
        std::exit(0);
    }
}

}  // namespace Tolm

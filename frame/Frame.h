#pragma once
// Tolm::Frame: every screen and dialog. Supplies the modal loop (Run), the one
// key reader (GetKey, with dimming and the idle timeout), the signal thread
// that turns signals into bytes on a self-pipe, and the process-wide session
// state.
#include <signal.h>
#include <sys/time.h>

#include <string>

#include "catalogue/TextId.h"
#include "frame/Window.h"
#include "host/TarnCtlHardware.h"

namespace Tolm {

class StringFactory;
class FrameClock;

// Thrown by Frame::GetKey when the idle timeout expires; unwinds every open
// window back to the status screen. Never swallow it.
class TolmTimeout {};

class Frame : public Window {
public:
    // One byte per signal on the self-pipe.
    enum SignalCode : unsigned char {
        SIG_REFRESH = 1,    // SIGUSR1
        SIG_RESTART = 2,    // SIGUSR2
        SIG_RESIZE = 3,     // SIGWINCH
        SIG_TERMINATE = 4,  // SIGINT, SIGQUIT, SIGTERM
    };
    // What WaitForInput returns besides key codes (0 and above).
    enum WaitCode : int {
        WAIT_NOTHING = -1,
        WAIT_TIMEOUT = -2,
        WAIT_REFRESH = -3,
        WAIT_RESTART = -4,
        WAIT_RESIZE = -5,
        WAIT_TERMINATE = -6,
        WAIT_WATCHED = -7,  // the watched descriptor became readable
    };

    // A top-level curses window at (x, y); `parent` is the frame this one is
    // run over (null for a full screen of its own).
    Frame(Frame* parent, int x, int y, int width, int height, int background, int foreground);
    ~Frame() override;

    // The window's own key loop; its result is what Run returns.
    virtual int Execute() = 0;
    // Re-read live data and redraw (on the refresh signal, for the frame in
    // front only).
    virtual void Refresh() {}

    Frame* ParentFrame() const { return _parentFrame; }
    StringFactory* Factory() const { return _factory; }
    // The catalogue text `id`; empty when there is no catalogue.
    std::string Text(TextId id) const;

    // Run `window` modally: dim the parent, draw the window, Execute, redraw
    // the parent. TolmTimeout passes through (parent not redrawn). A caller
    // that opens another window over the parent once `window` is accepted
    // (result 1) passes `redrawOnAccept` false: the parent stays as it is
    // until that window draws it, so it never reaches the terminal between.
    static int Run(Frame* window, bool redrawOnAccept = true);
    // Read one key for `window`. Dims it after 60 s without a key; with
    // `idleTimeout` true and _idleTimeout non-zero throws TolmTimeout after
    // max(_idleTimeout, 60) s. Handles the signal codes itself (refresh,
    // restart, resize and terminate, the last two by exiting).
    static int GetKey(Window* window, bool idleTimeout);
    // One wait on descriptor 0 and the self-pipe; `limit` null waits
    // without limit. A key wins over a pending signal byte.
    static int WaitForInput(const timeval* limit);
    // While another program has the terminal: waits until `fd` is readable
    // (the program's pidfd) without reading keys, serving the signals and
    // the idle timeout as GetKey does (so the session can still end).
    static void AwaitWhileAway(int fd);
    // Also wait on `fd` (-1: none): while it is readable, GetKey returns
    // WAIT_WATCHED, so a dialog can wait for keys and for a child process at
    // once without polling. A pending key still comes first.
    static void WatchDescriptor(int fd);

    static void SetLoggedIn(bool loggedIn);
    static void SetLoginName(const std::string& name);
    static void LoadIdleTimeout();

    // Block the signal set, create the pipe, start the signal thread.
    // Exits with status 1 when the pipe or the thread cannot be created.
    static void InitSignals();
    static void* SignalHandler(void* unused);
    // The signal pipe became readable while a host tool runs: terminate
    // ends the console (and the tool) at once, the rest waits for GetKey.
    static void ServeSignalDuringTool();
    static void Resize();
    static void CheckSmartCard();
    static std::string LookupSmartCardUser();
    static bool IsSmartCardPresent(const std::string& userId);

    // Replace the clock GetKey uses (null restores the real one). Tests only.
    static void SetClock(FrameClock* clock);

    // Process-wide session state.
    static Frame* fgFrame;
    static sigset_t _signalSet;
    static int _signalPipe[2];
    static TarnCtl::Hardware::SmartCardInfoImpl _cardInfo;
    static bool _isLoggedWithSmartCard;
    static std::string _smartCardLoginId;
    static std::string _loginName;
    static bool _loggedIn;
    static bool _markForRestart;
    static unsigned _idleTimeout;
    // Signal bytes read while a host tool ran, served by the next wait.
    static std::string _pendingSignals;

protected:
    Frame* _parentFrame;
    StringFactory* _factory;

private:
    // One byte from the self-pipe as a WaitCode.
    static int ReadSignalCode();
    // One byte from the signal pipe; -1 when none could be read.
    static int ReadSignalByte();
};

}  // namespace Tolm

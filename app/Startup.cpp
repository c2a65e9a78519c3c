#include "app/Startup.h"

#include <fcntl.h>
#include <linux/vt.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdio>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "app/HostBackend.h"
#include "frame/CursesSession.h"
#include "frame/Frame.h"
#include "frame/StartupChecks.h"
#include "frame/TerminalFlags.h"
#include "host/HostCtlException.h"
#include "host/HostPaths.h"
#include "host/Log.h"

namespace Tolm {

namespace {

constexpr const char* kPidFile = "/var/run/tolm.pid";

void SwitchToVt(int vt)
{
    std::string console = HostPath::Resolve("/dev/console");
    int fd = open(console.c_str(), O_RDWR | O_CLOEXEC);
    if (fd >= 0) {
        if (ioctl(fd, VT_ACTIVATE, vt) < 0) ioctl(fd, VT_WAITACTIVE, vt);
        close(fd);
    }
    // No suspending the console from the keyboard, now and whenever the
    // saved attributes are applied again.
    orig_termios.c_cc[VSUSP] = 0;
    tcsetattr(1, TCSANOW, &orig_termios);
}

}  // namespace

int RunConsole(int argc, char** argv, const std::function<std::unique_ptr<Frame>()>& makeStatusScreen)
{
    const App::Arguments args = App::ParseArguments(argc, argv);
    if (!App::InstallHostBackend(args.backend)) return 1;

    std::optional<int> vt;
    if (!args.positional.empty()) {
        vt = Startup::ParseVt(args.positional[0].c_str());
        if (!vt) Log::Write(LOG_ERR, "Invalid VT specified for Tolm: %s", args.positional[0].c_str());
    }

    Frame::InitSignals();
    // Ctrl-Z on the terminal raises SIGTSTP. Left at its default, curses
    // catches it with a handler that redraws the screen from inside the
    // signal, wherever the main thread happens to be; the console is never
    // suspended anyway, so the signal is ignored before curses starts.
    std::signal(SIGTSTP, SIG_IGN);
    Frame::LoadIdleTimeout();

    // Nothing may reach the screen except through curses.
    int devNull = open("/dev/null", O_WRONLY);
    if (devNull >= 0) {
        dup2(devNull, 2);
        close(devNull);
    }

    tcgetattr(1, &orig_termios);
    setenv("TERMINFO", "/usr/share/terminfo", 0);

    const char* term = std::getenv("TERM");
    if (term && (std::strcmp(term, "linux") == 0 || std::strcmp(term, "xterm") == 0))
        runningOverSerial = false;

    Log::Open("Tolm");
    Log::Write(LOG_INFO, "Starting Tolm");

    Startup::ClaimPidFile(HostPath::Resolve(kPidFile), kPidFile);

    if (vt) SwitchToVt(*vt);

    // Machines without the English UTF-8 locale still need UTF-8 output.
    if (!std::setlocale(LC_ALL, "en_US.UTF-8")) std::setlocale(LC_ALL, "C.UTF-8");

    if (!StartCurses(term)) return 0;

    std::unique_ptr<Frame> statusScreen;
    try {
        statusScreen = makeStatusScreen();
        Frame::Run(statusScreen.get());
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Tolm aborted by exception: %s", e.what());
    }

    statusScreen.reset();
    EndCurses();
    // Give the console its own palette back.
    static const char kResetPalette[] = "\033]R";
    ssize_t ignored = write(1, kResetPalette, 3);
    (void)ignored;
    return 0;
}

}  // namespace Tolm

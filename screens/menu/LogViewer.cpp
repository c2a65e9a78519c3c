#include "screens/menu/LogViewer.h"

#include <pthread.h>
#include <signal.h>
#include <sys/select.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "exec/ToolRun.h"
#include "frame/Frame.h"
#include "frame/Keys.h"
#include "host/HostPaths.h"
#include "host/Log.h"
#include "ui/ExternalProgram.h"

extern char** environ;

namespace Tolm {

const HostLog kHostLogs[] = {
    {Key::F1, "F1", "Syslog", "/var/log/syslog.log"},
    {Key::F2, "F2", "Tarn", "/var/log/tarn.log"},
    {Key::F3, "F3", "Configuration (sysboot)", "/var/log/sysboot.log"},
    {Key::F4, "F4", "Management Agent (hagentd)", "/var/log/hagentd.log"},
    {Key::F5, "F5", "Central Agent (cagent)", "/var/log/cagent.log"},
    {Key::F6, "F6", "High Availibility Agent (haagent)", "/var/log/haagent.log"},
    {Key::F7, "F7", "Pellor Talvo Observation log (evtd)", "/var/log/evtd.log"},
};
const int kHostLogCount = sizeof(kHostLogs) / sizeof(kHostLogs[0]);

namespace {

constexpr const char* PAGER = "/bin/less";
// Clear before each page, open any file, and say how to leave.
constexpr const char* PAGER_OPTIONS = "-cfP<Q> Quit </> RegExp Search <H> Help";
// No shell escapes, no other files, no editor.
constexpr const char* PAGER_SECURE = "LESSSECURE=1";

// The console's own environment with the pager's secure mode switched on.
std::vector<std::string> PagerEnvironment()
{
    std::vector<std::string> env;
    for (char** e = environ; e && *e; ++e)
        if (std::strncmp(*e, "LESSSECURE=", 11) != 0) env.emplace_back(*e);
    env.emplace_back(PAGER_SECURE);
    return env;
}

// The process group of the pager while it has the terminal; ended if the
// console exits meanwhile (terminate signal, removed smart card).
pid_t g_pagerGroup = 0;

// tcsetpgrp from a background group raises SIGTTOU unless it is blocked.
void GiveTerminal(pid_t group)
{
    sigset_t ttou, old;
    sigemptyset(&ttou);
    sigaddset(&ttou, SIGTTOU);
    pthread_sigmask(SIG_BLOCK, &ttou, &old);
    tcsetpgrp(0, group);
    pthread_sigmask(SIG_SETMASK, &old, nullptr);
}

// Ends the pager's whole group: politely first, so it can put the terminal
// back, then for sure.
void EndPagerGroup(pid_t group, int pidfd)
{
    kill(-group, SIGTERM);
    kill(-group, SIGCONT);
    if (pidfd >= 0) {
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(pidfd, &readable);
        timeval grace{1, 0};
        if (select(pidfd + 1, &readable, nullptr, nullptr, &grace) <= 0) kill(-group, SIGKILL);
    } else {
        kill(-group, SIGKILL);
    }
}

void EndPagerAtExit()
{
    if (g_pagerGroup <= 0) return;
    kill(-g_pagerGroup, SIGKILL);
    GiveTerminal(getpgrp());
}

// The pager as a child in its own process group, in the terminal's
// foreground: Ctrl-C and Ctrl-\ typed into it reach it alone. The group is
// ended and the terminal taken back however the wait ends.
class Pager {
public:
    Pager(const std::string& pager, const char* const* argv, char* const* envp)
    {
        static const bool atExit = std::atexit(EndPagerAtExit) == 0;
        (void)atExit;
        _pid = fork();
        if (_pid < 0) {
            Log::Errno("fork() failed");
            return;
        }
        if (_pid == 0) {
            setpgid(0, 0);
            GiveTerminal(getpid());
            // The pager would stop itself on Ctrl-Z, and a stopped pager
            // never ends: the key is a plain character while it runs (the
            // console's own modes come back with the terminal).
            termios modes{};
            if (tcgetattr(0, &modes) == 0) {
                modes.c_cc[VSUSP] = _POSIX_VDISABLE;
                tcsetattr(0, TCSANOW, &modes);
            }
            // The console keeps its signals blocked for the signal thread;
            // the pager needs its own (Ctrl-C, window size).
            sigset_t none;
            sigemptyset(&none);
            sigprocmask(SIG_SETMASK, &none, nullptr);
            execve(pager.c_str(), const_cast<char* const*>(argv), envp);
            _exit(127);
        }
        // Both sides set the group, so neither order of running matters.
        setpgid(_pid, _pid);
        GiveTerminal(_pid);
        g_pagerGroup = _pid;
        _pidfd = OpenPidFd(_pid);
    }

    ~Pager()
    {
        if (_pid <= 0) return;
        if (!_reaped) {
            EndPagerGroup(_pid, _pidfd);
            Reap();
        }
        g_pagerGroup = 0;
        GiveTerminal(getpgrp());
        if (_pidfd >= 0) close(_pidfd);
    }

    Pager(const Pager&) = delete;
    Pager& operator=(const Pager&) = delete;

    // Waits for the pager's end; its exit status, or -1.
    int Wait()
    {
        if (_pid < 0) return -1;
        // Without a pidfd (an old kernel) the wait cannot watch the session.
        if (_pidfd >= 0) Frame::AwaitWhileAway(_pidfd);
        return Reap();
    }

private:
    int Reap()
    {
        int status = 0;
        _reaped = true;
        if (WaitChild(_pid, &status, 0) < 0) {
            Log::Errno("waitpid() failed");
            return -1;
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    pid_t _pid = -1;
    int _pidfd = -1;
    bool _reaped = false;
};

// Runs the pager on `file` and waits; its exit status, or -1.
int RunPager(const std::string& pager, const std::string& file)
{
    // Everything the child needs is built before the fork.
    const std::vector<std::string> envStrings = PagerEnvironment();
    std::vector<char*> envp;
    for (const std::string& s : envStrings) envp.push_back(const_cast<char*>(s.c_str()));
    envp.push_back(nullptr);
    const char* argv[] = {"less", PAGER_OPTIONS, file.c_str(), nullptr};

    TerminalLoan loan;
    Pager child(pager, argv, envp.data());
    return child.Wait();
}

}  // namespace

const HostLog* FindHostLog(int key)
{
    for (const HostLog& log : kHostLogs)
        if (log.key == key) return &log;
    return nullptr;
}

bool ViewHostLog(const HostLog& log)
{
    const std::string file = HostPath::Resolve(log.file);
    if (access(file.c_str(), R_OK) != 0) {
        Log::Write(LOG_ERR, "Cannot view log %s: %s", log.file, std::strerror(errno));
        return false;
    }
    const std::string pager = HostPath::Resolve(PAGER);
    if (access(pager.c_str(), X_OK) != 0) {
        Log::Write(LOG_ERR, "Could not run %s on %s: %s", PAGER, log.file, std::strerror(errno));
        return false;
    }
    const int status = RunPager(pager, file);
    if (status == 127 || status < 0) {
        Log::Write(LOG_ERR, "Could not run %s on %s", PAGER, log.file);
        return false;
    }
    return true;
}

}  // namespace Tolm

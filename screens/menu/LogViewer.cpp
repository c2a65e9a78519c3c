#include "screens/menu/LogViewer.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

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
    const pid_t pid = fork();
    if (pid < 0) {
        Log::Errno("fork() failed");
        return -1;
    }
    if (pid == 0) {
        // The console keeps its signals blocked for the signal thread; the
        // pager needs its own (Ctrl-C, window size).
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        execve(pager.c_str(), const_cast<char* const*>(argv), envp.data());
        _exit(127);
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) {
            Log::Errno("waitpid() failed");
            return -1;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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

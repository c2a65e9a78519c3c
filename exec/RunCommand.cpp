#include "exec/RunCommand.h"

#include "exec/PipePair.h"
#include "exec/ToolRun.h"
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

// The console blocks or redirects signals for its own signal thread; a tool
// must start with the default dispositions and nothing blocked, except that
// the stop key stays ignored: Ctrl-Z signals the console's group, and a tool
// caught by it before it has a group of its own would stop before its exec,
// with the console stuck inside posix_spawn for good.
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
        sigdelset(&all, SIGTSTP);
        // A process group of its own: the time limit kills everything the
        // tool started, and keys typed on the terminal signal only us.
        if (posix_spawnattr_setsigmask(&_attr, &none) != 0 ||
            posix_spawnattr_setsigdefault(&_attr, &all) != 0 ||
            posix_spawnattr_setpgroup(&_attr, 0) != 0 ||
            posix_spawnattr_setflags(&_attr, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                 POSIX_SPAWN_SETPGROUP) != 0)
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

// The program is a host path; so is the script the shell is handed as its
// first argument ("/bin/sh /etc/init.d/SSH status"). Both are resolved here,
// once, for every caller; `script` keeps the resolved script alive.
std::vector<const char*> HostArguments(const std::string& program, const char* const* argv, std::string& script)
{
    std::vector<const char*> args;
    for (const char* const* a = argv; a != nullptr && *a != nullptr; ++a)
        args.push_back(*a);
    if (HostPath::RunsScript(program) && args.size() > 1 && args[1][0] == '/') {
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
    if (input == nullptr)
        inPipe.CloseWrite();

    // Stays -1 (not a normal exit) unless the child is reaped.
    ToolRun run(pid, timeoutSeconds);
    run.Feed(inPipe, input, inputLength);
    run.Collect(outPipe.readEnd, out, outLength);
    run.Collect(errPipe.readEnd, err, errLength);
    const int status = run.Wait();

    if (WIFEXITED(status))
        return WEXITSTATUS(status);
    Log::Write(LOG_ERR, "Run Command did not terminate normally");
    return -1;
}

}  // namespace Tolm

#include "harness/Process.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <glob.h>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Tolm::E2E {

RunResult RunCapture(const std::vector<std::string>& argv)
{
    int out[2];
    if (pipe2(out, O_CLOEXEC) != 0)
        throw std::runtime_error("RunCapture: no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, out[1], 2);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    std::vector<char*> args;
    for (const auto& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    pid_t pid = -1;
    const int rc = posix_spawn(&pid, args[0], &actions, nullptr, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    RunResult result;
    char buf[4096];
    for (ssize_t n; (n = read(out[0], buf, sizeof buf)) != 0;) {
        if (n > 0)
            result.out.append(buf, static_cast<size_t>(n));
        else if (errno != EINTR)
            break;
    }
    close(out[0]);
    int status = 0;
    while (rc == 0 && waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.status = rc != 0 ? 127 : WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    if (rc != 0)
        result.out += "cannot start " + argv[0];
    return result;
}

std::string FakeTimeLibrary()
{
    glob_t g{};
    std::string found;
    if (glob("/usr/lib/*/faketime/libfaketimeMT.so.1", 0, nullptr, &g) == 0 && g.gl_pathc > 0)
        found = g.gl_pathv[0];
    globfree(&g);
    return found;
}

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

}  // namespace Tolm::E2E

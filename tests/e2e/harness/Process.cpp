#include "harness/Process.h"

#include <cerrno>
#include <fcntl.h>
#include <cstdlib>
#include <fstream>
#include <glob.h>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Tolm::E2E {

RunResult RunCapture(const std::vector<std::string>& argv)
{
    int outPipe[2], errPipe[2];
    if (pipe2(outPipe, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe2 failed");
    if (pipe2(errPipe, O_CLOEXEC) != 0) {
        close(outPipe[0]);
        close(outPipe[1]);
        throw std::runtime_error("pipe2 failed");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], 1);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], 2);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);

    std::vector<char*> args;
    for (const auto& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);

    pid_t pid = -1;
    const int rc = posix_spawn(&pid, args[0], &actions, nullptr, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(outPipe[1]);
    close(errPipe[1]);

    RunResult result;
    if (rc != 0) {
        close(outPipe[0]);
        close(errPipe[0]);
        result.status = 127;
        result.err = "cannot start " + argv[0];
        return result;
    }

    pollfd fds[2] = {{outPipe[0], POLLIN, 0}, {errPipe[0], POLLIN, 0}};
    std::string* sinks[2] = {&result.out, &result.err};
    int open = 2;
    while (open > 0) {
        if (poll(fds, 2, -1) < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                continue;
            char buf[4096];
            const ssize_t n = read(fds[i].fd, buf, sizeof buf);
            if (n > 0) {
                sinks[i]->append(buf, static_cast<size_t>(n));
            } else if (n == 0 || errno != EINTR) {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
    for (auto& f : fds)
        if (f.fd >= 0)
            close(f.fd);

    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

std::string FakeTimeLibrary()
{
    static const char* const patterns[] = {
        "/usr/lib/*/faketime/libfaketimeMT.so.1",
        "/usr/lib/faketime/libfaketimeMT.so.1",
        "/usr/local/lib/faketime/libfaketimeMT.so.1",
    };
    for (const char* pattern : patterns) {
        glob_t g{};
        if (glob(pattern, 0, nullptr, &g) == 0 && g.gl_pathc > 0) {
            std::string found = g.gl_pathv[0];
            globfree(&g);
            return found;
        }
        globfree(&g);
    }
    return "";
}

std::string ReadFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return "";
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

}  // namespace Tolm::E2E

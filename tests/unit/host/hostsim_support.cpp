#include "hostsim_support.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolm::HostSimTest {

Result RunProcess(const std::vector<std::string>& argv, const std::vector<std::string>& env)
{
    char outName[] = "/tmp/hostsim-out-XXXXXX";
    char errName[] = "/tmp/hostsim-err-XXXXXX";
    int outFd = ::mkstemp(outName);
    int errFd = ::mkstemp(errName);
    std::vector<char*> args, envp;
    for (const auto& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    for (const auto& e : env)
        envp.push_back(const_cast<char*>(e.c_str()));
    envp.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outFd, 1);
    posix_spawn_file_actions_adddup2(&actions, errFd, 2);
    Result result;
    pid_t pid = -1;
    if (::posix_spawn(&pid, args[0], &actions, nullptr, args.data(), envp.data()) == 0) {
        int status = 0;
        while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
        result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    ::close(outFd);
    ::close(errFd);
    result.out = ReadText(outName);
    result.err = ReadText(errName);
    ::unlink(outName);
    ::unlink(errName);
    return result;
}

std::string HostSimBinary()
{
    return std::string(TOLM_BIN_DIR) + "/tolm-hostsim";
}

std::string ReadText(const std::string& path)
{
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void HostRoot::SetUp()
{
    char name[] = "/tmp/hostsim-test-XXXXXX";
    ASSERT_NE(::mkdtemp(name), nullptr);
    _top = name;
    _root = _top + "/root";
    Init();
}

void HostRoot::TearDown()
{
    std::error_code ec;
    std::filesystem::remove_all(_top, ec);
}

void HostRoot::Init(const std::string& fixture)
{
    Result r = RunProcess({HostSimBinary(), "init", _root, "--fixture", fixture}, {"PATH=/usr/bin:/bin"});
    ASSERT_EQ(r.status, 0) << r.err;
}

Result HostRoot::Tool(const std::string& script, const std::vector<std::string>& args)
{
    std::vector<std::string> argv{Path(script)};
    argv.insert(argv.end(), args.begin(), args.end());
    return RunProcess(argv);
}

Result HostRoot::HostSim(const std::vector<std::string>& args)
{
    std::vector<std::string> argv{HostSimBinary(), "--root", _root};
    argv.insert(argv.end(), args.begin(), args.end());
    return RunProcess(argv);
}

nlohmann::json HostRoot::State() const
{
    return Tolm::HostSim::StateFile(Path("var/lib/hostsim/host.json")).Read();
}

void HostRoot::Change(const std::string& pointer, const nlohmann::json& value)
{
    Tolm::HostSim::StateFile(Path("var/lib/hostsim/host.json")).Update([&](nlohmann::json& state) {
        state[nlohmann::json::json_pointer(pointer)] = value;
    });
}

}  // namespace Tolm::HostSimTest

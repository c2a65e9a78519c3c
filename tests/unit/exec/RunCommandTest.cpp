#include "exec/RunCommand.h"
#include "exec/ToolRun.h"

#include "TestRoot.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolm {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Test::TempRootTest;

constexpr const char* kNotNormal = "user.err: Run Command did not terminate normally";

int OpenDescriptorCount()
{
    int count = 0;
    if (DIR* dir = ::opendir("/proc/self/fd")) {
        while (::readdir(dir) != nullptr)
            ++count;
        ::closedir(dir);
    }
    return count;
}

// Whether a process is still there (a zombie counts as gone).
bool Alive(pid_t pid)
{
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    const auto close = std::getline(stat, line) ? line.rfind(')') : std::string::npos;
    return close != std::string::npos && close + 2 < line.size() && line[close + 2] != 'Z';
}

class RunCommandTest : public TempRootTest {
protected:
    // Runs `script` as the tool "/bin/tool" in the root.
    int RunScript(const std::string& script, char* out = nullptr, unsigned int* outLength = nullptr,
                  char* err = nullptr, unsigned int* errLength = nullptr, const char* input = nullptr,
                  unsigned int inputLength = 0, int timeoutSeconds = 0)
    {
        WriteTool("/bin/tool", script);
        const char* argv[] = {"tool", nullptr};
        return RunCommand("/bin/tool", argv, out, outLength, err, errLength, input, inputLength,
                          timeoutSeconds);
    }
    // What `argv` run from the root's `path` prints; its status must be 0.
    std::string Output(const char* path, std::vector<const char*> argv)
    {
        argv.push_back(nullptr);
        char out[64];
        unsigned int outLength = sizeof out;
        EXPECT_EQ(RunCommand(path, argv.data(), out, &outLength, nullptr, nullptr, nullptr, 0, 0), 0) << path;
        return std::string(out, outLength);
    }
    pid_t HelperPid() const { return std::stoi(ReadFile("/helper.pid")); }
};

TEST_F(RunCommandTest, ExitStatusOutputsAndFailures)
{
    char out[64];
    char err[64];
    unsigned int outLength = sizeof out;
    unsigned int errLength = sizeof err;
    EXPECT_EQ(RunScript("printf 'to out'; printf 'to err' >&2; exit 3", out, &outLength, err, &errLength), 3);
    EXPECT_EQ(std::string(out, outLength), "to out");
    EXPECT_EQ(std::string(err, errLength), "to err");
    EXPECT_EQ(RunScript("exit 255"), 255);
    // Without buffers the lengths are left as they were.
    outLength = 77;
    errLength = 88;
    EXPECT_EQ(RunScript("echo out; echo err >&2; exit 2", nullptr, &outLength, nullptr, &errLength), 2);
    EXPECT_EQ(outLength, 77u);
    EXPECT_EQ(errLength, 88u);
    EXPECT_THAT(LogLines(), IsEmpty());

    // A missing program: errno, no log line, no descriptor left open.
    const int before = OpenDescriptorCount();
    const char* missing[] = {"missing", nullptr};
    errno = 0;
    EXPECT_EQ(RunCommand("/bin/missing", missing, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_THAT(LogLines(), IsEmpty());
    EXPECT_EQ(OpenDescriptorCount(), before);

    EXPECT_EQ(RunScript("kill -9 $$"), -1);
    EXPECT_THAT(LogLines(), ElementsAre(kNotNormal));
}

TEST_F(RunCommandTest, ResolvesPathInRootKeepsArgvAndClearsEnvironment)
{
    // Only the root has this tool; the argument vector arrives untouched.
    WriteTool("/sbin/only-in-root", "printf '%s|' \"$@\"");
    EXPECT_EQ(Output("/sbin/only-in-root", {"only-in-root", "-U", "alice", "a b"}), "-U|alice|a b|");

    std::filesystem::create_symlink("/usr/bin/env", Root() + "/bin/env");
    ::setenv("TOLM_EXEC_TEST_SECRET", "leaked", 1);
    EXPECT_EQ(Output("/bin/env", {"env"}), "PYTHONHOME=/\n");
    ::unsetenv("TOLM_EXEC_TEST_SECRET");

    // A script handed to the shell is the root's script, not the machine's.
    std::filesystem::create_symlink("/bin/sh", Root() + "/bin/sh");
    WriteTool("/etc/init.d/SSH", "printf 'root script %s' \"$1\"");
    EXPECT_EQ(Output("/bin/sh", {"sh", "/etc/init.d/SSH", "status"}), "root script status");

    // A descriptor of the caller without close-on-exec must not reach the tool.
    const int stray = ::open("/dev/null", O_RDONLY);
    const int before = OpenDescriptorCount();
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(Output("/bin/sh", {"sh", "-c", "ls /proc/$$/fd"}), "0\n1\n2\n");
    EXPECT_EQ(OpenDescriptorCount(), before);
    ::close(stray);
}

TEST_F(RunCommandTest, TimeLimitKillsEverythingTheToolStarted)
{
    // The helper the tool leaves behind holds none of our pipes; only the
    // process group reaches it. What the tool wrote before is still collected.
    char out[64];
    unsigned int outLength = sizeof out;
    EXPECT_EQ(RunScript("printf started; (exec sleep 60 </dev/null >/dev/null 2>&1) & echo $! > " + Root() +
                            "/helper.pid; exec sleep 60",
                        out, &outLength, nullptr, nullptr, nullptr, 0, 1),
              -1);
    EXPECT_EQ(std::string(out, outLength), "started");
    EXPECT_THAT(LogLines(),
                ElementsAre("user.warning: Killing process because 1 seconds timeout expired", kNotNormal));
    const pid_t helper = HelperPid();
    ASSERT_GT(helper, 0);
    for (int i = 0; i < 500 && Alive(helper); ++i)
        ::usleep(20000);
    EXPECT_FALSE(Alive(helper));
    if (Alive(helper))
        ::kill(helper, SIGKILL);
    // A child that ends in time returns its own status.
    EXPECT_EQ(RunScript("exit 7", nullptr, nullptr, nullptr, nullptr, nullptr, 0, 120), 7);
}

TEST_F(RunCommandTest, ToolThatEndedIsNotWaitedForThroughWhatItLeftBehind)
{
    // The helper keeps the output pipe open; the tool's own end decides.
    char out[64];
    unsigned int outLength = sizeof out;
    EXPECT_EQ(RunScript("sleep 30 & echo $! > " + Root() + "/helper.pid; printf done; exit 6", out, &outLength), 6);
    EXPECT_EQ(std::string(out, outLength), "done");
    const pid_t helper = HelperPid();
    ASSERT_GT(helper, 0);
    EXPECT_TRUE(Alive(helper));  // returned while the helper still held the pipe
    ::kill(helper, SIGKILL);
}

TEST_F(RunCommandTest, OutputBeyondCapacityIsReadWhileTheToolRunsAndDropped)
{
    char out[256];
    std::memset(out, '#', sizeof out);
    unsigned int outLength = 255;
    char err[16];
    unsigned int errLength = 4;
    // A megabyte on each output, far beyond a pipe; the limit only turns a
    // deadlock into a failure.
    EXPECT_EQ(RunScript("head -c 1000000 /dev/zero | tr '\\0' x; printf 123456 >&2; head -c 1000000 /dev/zero >&2; exit 5",
                        out, &outLength, err, &errLength, nullptr, 0, 20),
              5);
    EXPECT_EQ(outLength, 255u);
    EXPECT_EQ(std::string(out, 255), std::string(255, 'x'));
    EXPECT_EQ(out[255], '#');
    EXPECT_EQ(std::string(err, errLength), "1234");
}

TEST_F(RunCommandTest, FeedsInputAndClosesStdin)
{
    const std::string input = "line one\nline two";
    char out[64];
    unsigned int outLength = sizeof out;
    EXPECT_EQ(RunScript("cat", out, &outLength, nullptr, nullptr, input.data(), static_cast<unsigned int>(input.size())),
              0);
    EXPECT_EQ(std::string(out, outLength), input);
    // Without input the child reads end of file at once instead of hanging.
    outLength = sizeof out;
    EXPECT_EQ(RunScript("cat; printf done", out, &outLength), 0);
    EXPECT_EQ(std::string(out, outLength), "done");

    // More than a pipe holds, to a child that never reads: the write fails
    // with a broken pipe, which must not raise SIGPIPE in the console.
    const std::string large(1 << 20, 'i');
    EXPECT_EQ(RunScript("exit 4", nullptr, nullptr, nullptr, nullptr, large.data(),
                        static_cast<unsigned int>(large.size())),
              4);
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

// Ctrl-Z signals the terminal's whole foreground group, the console's. A
// tool that catches it before it has a group of its own must not stop: the
// console would wait on it for good.
TEST_F(RunCommandTest, StopKeysAimedAtTheConsoleNeverStopAStartingTool)
{
    WriteTool("/bin/tool", "exit 0");
    // Ignored from before the fork, as the console does.
    const auto previous = ::signal(SIGTSTP, SIG_IGN);
    const pid_t console = ::fork();
    ::signal(SIGTSTP, previous);
    ASSERT_GE(console, 0);
    if (console == 0) {
        ::signal(SIGTSTP, SIG_IGN);
        ::setpgid(0, 0);
        const char* argv[] = {"tool", nullptr};
        for (int i = 0; i < 300; ++i)
            if (RunCommand("/bin/tool", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0) != 0)
                ::_exit(1);
        ::_exit(0);
    }
    ::setpgid(console, console);
    int status = -1;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (::waitpid(console, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            ::kill(console, SIGKILL);
            ::waitpid(console, &status, 0);
            FAIL() << "a tool was stopped before it started";
        }
        ::kill(-console, SIGTSTP);
        ::usleep(50);
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

int g_wakes = 0;
int g_wakeFd = -1;

void WakeAndKill()
{
    char byte;
    if (::read(g_wakeFd, &byte, 1) == 1)
        ++g_wakes;
    KillRunningTool();
}

TEST_F(RunCommandTest, WakeDescriptorIsHeardWhileAToolRunsWithoutLimit)
{
    int wake[2];
    ASSERT_EQ(::pipe(wake), 0);
    g_wakeFd = wake[0];
    SetToolWaitHooks({nullptr, wake[0], &WakeAndKill});
    ASSERT_EQ(::write(wake[1], "t", 1), 1);
    EXPECT_EQ(RunScript("exec sleep 30"), -1);
    EXPECT_EQ(g_wakes, 1);
    SetToolWaitHooks({});
    ::close(wake[0]);
    ::close(wake[1]);
}

}  // namespace
}  // namespace Tolm

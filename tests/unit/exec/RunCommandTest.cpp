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
};

TEST_F(RunCommandTest, ReturnsExitStatusAndSeparatesOutputFromErrors)
{
    char out[64];
    char err[64];
    unsigned int outLength = sizeof out;
    unsigned int errLength = sizeof err;
    EXPECT_EQ(RunScript("printf 'to out'; printf 'to err' >&2; exit 3", out, &outLength, err,
                        &errLength),
              3);
    EXPECT_EQ(std::string(out, outLength), "to out");
    EXPECT_EQ(std::string(err, errLength), "to err");
    EXPECT_EQ(RunScript("exit 255"), 255);
    EXPECT_THAT(LogLines(), IsEmpty());

    // Without buffers the lengths are left as they were.
    outLength = 77;
    errLength = 88;
    EXPECT_EQ(RunScript("echo out; echo err >&2; exit 2", nullptr, &outLength, nullptr, &errLength), 2);
    EXPECT_EQ(outLength, 77u);
    EXPECT_EQ(errLength, 88u);
}

TEST_F(RunCommandTest, ResolvesPathInRootKeepsArgvAndClearsEnvironment)
{
    // Only the root has this tool; the argument vector arrives untouched.
    WriteTool("/sbin/only-in-root", "printf '%s|' \"$@\"");
    const char* argv[] = {"only-in-root", "-U", "alice", "a b", nullptr};
    char out[64];
    unsigned int outLength = sizeof out;
    EXPECT_EQ(RunCommand("/sbin/only-in-root", argv, out, &outLength, nullptr, nullptr, nullptr, 0, 0),
              0);
    EXPECT_EQ(std::string(out, outLength), "-U|alice|a b|");

    std::filesystem::create_symlink("/usr/bin/env", Root() + "/bin/env");
    const char* envArgv[] = {"env", nullptr};
    outLength = sizeof out;
    ::setenv("TOLM_EXEC_TEST_SECRET", "leaked", 1);
    EXPECT_EQ(RunCommand("/bin/env", envArgv, out, &outLength, nullptr, nullptr, nullptr, 0, 0), 0);
    ::unsetenv("TOLM_EXEC_TEST_SECRET");
    EXPECT_EQ(std::string(out, outLength), "PYTHONHOME=/\n");

    std::filesystem::create_symlink("/bin/sh", Root() + "/bin/sh");
    const char* shArgv[] = {"sh", "-c", "printf %s \"$0\"", nullptr};
    outLength = sizeof out;
    EXPECT_EQ(RunCommand("/bin/sh", shArgv, out, &outLength, nullptr, nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(std::string(out, outLength), "sh");

    // A script handed to the shell is the root's script, not the machine's.
    WriteTool("/etc/init.d/SSH", "printf 'root script %s' \"$1\"");
    const char* scriptArgv[] = {"sh", "/etc/init.d/SSH", "status", nullptr};
    outLength = sizeof out;
    EXPECT_EQ(RunCommand("/bin/sh", scriptArgv, out, &outLength, nullptr, nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(std::string(out, outLength), "root script status");
}

TEST_F(RunCommandTest, DeathBySignalIsAbnormal)
{
    EXPECT_EQ(RunScript("kill -9 $$"), -1);
    EXPECT_THAT(LogLines(), ElementsAre(kNotNormal));
}

TEST_F(RunCommandTest, TimeLimitKillsChildAndLogsBothLines)
{
    char out[64];
    unsigned int outLength = sizeof out;
    auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(RunScript("printf started; exec sleep 30", out, &outLength, nullptr, nullptr, nullptr, 0,
                        1),
              -1);
    auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(elapsed, std::chrono::milliseconds(950));
    EXPECT_LT(elapsed, std::chrono::seconds(10));
    // What the child wrote before it was killed is still collected.
    EXPECT_EQ(std::string(out, outLength), "started");
    EXPECT_THAT(LogLines(),
                ElementsAre("user.warning: Killing process because 1 seconds timeout expired", kNotNormal));

    // A child that ends in time returns its own status at once.
    start = std::chrono::steady_clock::now();
    EXPECT_EQ(RunScript("exit 7", nullptr, nullptr, nullptr, nullptr, nullptr, 0, 120), 7);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(LogLines().size(), 2u);
}

TEST_F(RunCommandTest, OutputBeyondCapacityIsCutAndDiscarded)
{
    char out[256];
    std::memset(out, '#', sizeof out);
    unsigned int outLength = 255;
    char err[16];
    unsigned int errLength = 4;
    EXPECT_EQ(RunScript("i=0; while [ $i -lt 300 ]; do printf x; i=$((i+1)); done; printf 123456 >&2",
                        out, &outLength, err, &errLength),
              0);
    EXPECT_EQ(outLength, 255u);
    EXPECT_EQ(std::string(out, 255), std::string(255, 'x'));
    EXPECT_EQ(out[255], '#');
    EXPECT_EQ(errLength, 4u);
    EXPECT_EQ(std::string(err, 4), "1234");
}

TEST_F(RunCommandTest, FeedsInputAndClosesStdin)
{
    const std::string input = "line one\nline two";
    char out[64];
    unsigned int outLength = sizeof out;
    EXPECT_EQ(RunScript("cat", out, &outLength, nullptr, nullptr, input.data(),
                        static_cast<unsigned int>(input.size())),
              0);
    EXPECT_EQ(std::string(out, outLength), input);

    // Without input the child reads end of file at once instead of hanging.
    outLength = sizeof out;
    EXPECT_EQ(RunScript("cat; printf done", out, &outLength), 0);
    EXPECT_EQ(std::string(out, outLength), "done");
}

TEST_F(RunCommandTest, ChildIgnoringLargeInputDoesNotKillCaller)
{
    // More than a pipe holds, to a child that never reads: the write fails
    // with a broken pipe, which must not raise SIGPIPE in the console.
    std::string input(1 << 20, 'i');
    EXPECT_EQ(RunScript("exit 4", nullptr, nullptr, nullptr, nullptr, input.data(),
                        static_cast<unsigned int>(input.size())),
              4);
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST_F(RunCommandTest, MissingExecutableFailsWithErrnoAndNoLogLine)
{
    int before = OpenDescriptorCount();
    const char* argv[] = {"missing", nullptr};
    errno = 0;
    EXPECT_EQ(RunCommand("/bin/missing", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_THAT(LogLines(), IsEmpty());
    EXPECT_EQ(OpenDescriptorCount(), before);
}

TEST_F(RunCommandTest, NoDescriptorLeaksIntoChildOrParent)
{
    // A descriptor of the caller without close-on-exec must not reach the tool.
    int stray = ::open("/dev/null", O_RDONLY);
    ASSERT_GE(stray, 0);
    int before = OpenDescriptorCount();
    std::filesystem::create_symlink("/bin/sh", Root() + "/bin/sh");
    const char* argv[] = {"sh", "-c", "ls /proc/$$/fd", nullptr};
    char out[128];
    unsigned int outLength = sizeof out;
    for (int i = 0; i < 20; ++i) {
        outLength = sizeof out;
        ASSERT_EQ(RunCommand("/bin/sh", argv, out, &outLength, nullptr, nullptr, nullptr, 0, 0), 0);
    }
    EXPECT_EQ(std::string(out, outLength), "0\n1\n2\n");
    EXPECT_EQ(OpenDescriptorCount(), before);
    ::close(stray);
}

// Whether a process is still there (a zombie counts as gone).
bool Alive(pid_t pid)
{
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line))
        return false;
    const auto close = line.rfind(')');
    return close != std::string::npos && close + 2 < line.size() && line[close + 2] != 'Z';
}

// The deadline is for the process to disappear, not a measure of speed.
bool GoneWithin(pid_t pid, std::chrono::seconds limit)
{
    const auto until = std::chrono::steady_clock::now() + limit;
    while (Alive(pid)) {
        if (std::chrono::steady_clock::now() > until)
            return false;
        ::usleep(20000);
    }
    return true;
}

pid_t ReadPid(const std::string& path)
{
    std::ifstream in(path);
    pid_t pid = -1;
    in >> pid;
    return pid;
}

TEST_F(RunCommandTest, TimeLimitKillsEverythingTheToolStarted)
{
    // The helper the tool leaves behind holds none of our pipes; only the
    // process group reaches it.
    const std::string pidFile = Root() + "/helper.pid";
    EXPECT_EQ(RunScript("(exec sleep 60 </dev/null >/dev/null 2>&1) & echo $! > " + pidFile + "; exec sleep 60",
                        nullptr, nullptr, nullptr, nullptr, nullptr, 0, 1),
              -1);
    const pid_t helper = ReadPid(pidFile);
    ASSERT_GT(helper, 0);
    EXPECT_TRUE(GoneWithin(helper, std::chrono::seconds(10)));
    if (Alive(helper))
        ::kill(helper, SIGKILL);
}

TEST_F(RunCommandTest, ToolThatEndedIsNotWaitedForThroughWhatItLeftBehind)
{
    // The helper keeps the output pipe open; the tool's own end decides.
    const std::string pidFile = Root() + "/helper.pid";
    char out[64];
    unsigned int outLength = sizeof out;
    EXPECT_EQ(RunScript("sleep 30 & echo $! > " + pidFile + "; printf done; exit 6", out, &outLength), 6);
    EXPECT_EQ(std::string(out, outLength), "done");
    const pid_t helper = ReadPid(pidFile);
    ASSERT_GT(helper, 0);
    EXPECT_TRUE(Alive(helper));  // returned while the helper still held the pipe
    ::kill(helper, SIGKILL);
}

TEST_F(RunCommandTest, ToolWritingMoreThanAPipeHoldsIsReadWhileItRuns)
{
    char out[256];
    unsigned int outLength = 255;
    unsigned int errLength = 0;
    char err[1];
    // A megabyte on each output, far beyond a pipe; the limit only turns a
    // deadlock into a failure.
    EXPECT_EQ(RunScript("head -c 1000000 /dev/zero; head -c 1000000 /dev/zero >&2; exit 5", out, &outLength, err,
                        &errLength, nullptr, 0, 20),
              5);
    EXPECT_EQ(outLength, 255u);
    EXPECT_EQ(errLength, 0u);
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
    g_wakes = 0;
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

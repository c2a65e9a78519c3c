// The virtual-terminal argument and the single-instance pid file.
#include <sys/wait.h>
#include <unistd.h>

#include "../host/HostRoot.h"
#include "frame/StartupChecks.h"

namespace Tolm {
namespace {

namespace fs = std::filesystem;

TEST(StartupChecks, VirtualTerminalArgument)
{
    EXPECT_EQ(Startup::ParseVt("1"), 1);
    EXPECT_EQ(Startup::ParseVt("63"), 63);
    for (const char* bad : {"0", "64", "-3", "abc", "12345678901234567890", "-12345678901234567890", "",
                            "7x", "9223372036854775807"}) {
        EXPECT_FALSE(Startup::ParseVt(bad).has_value()) << bad;
    }
}

class PidFileTest : public ::testing::Test {
protected:
    void SetUp() override { fs::create_directories(root.Root() + "/var/run"); }
    void WritePidFile(const std::string& text) { std::ofstream(pidFile) << text; }
    std::string Read(const std::string& path)
    {
        std::ifstream in(path);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    bool Claim() { return Startup::ClaimPidFile(pidFile, "/var/run/tolm.pid"); }

    Tolm::Test::HostRoot root;
    std::string pidFile = root.Root() + "/var/run/tolm.pid";
};

TEST_F(PidFileTest, StaleOrJunkContentIsOverwritten)
{
    pid_t dead = fork();
    if (dead == 0) _exit(0);
    waitpid(dead, nullptr, 0);

    for (std::string content : {std::string("0"), std::string("-42"), std::string("tolm"), std::to_string(dead)}) {
        SCOPED_TRACE(content);
        WritePidFile(content);
        EXPECT_TRUE(Claim());
        EXPECT_EQ(Read(pidFile), std::to_string(getpid()));
    }
    fs::remove(pidFile);
    EXPECT_TRUE(Claim());
    EXPECT_EQ(Read(pidFile), std::to_string(getpid()));
}

TEST_F(PidFileTest, LiveOwnerIsLeftAloneAndLogged)
{
    pid_t live = getppid();
    WritePidFile(std::to_string(live) + "\n");
    EXPECT_FALSE(Claim());
    EXPECT_EQ(Read(pidFile), std::to_string(live) + "\n");
    EXPECT_NE(Read(root.Root() + "/var/log/syslog.log")
                  .find("Attempt to run multiple Tolm instances, not updating /var/run/tolm.pid"),
              std::string::npos);
}

}  // namespace
}  // namespace Tolm

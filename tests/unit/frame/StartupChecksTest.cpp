// The virtual-terminal argument and the single-instance pid file.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

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
    void SetUp() override
    {
        char pattern[] = "/tmp/tolm-pidtest-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        root = pattern;
        fs::create_directories(root / "var/log");
        fs::create_directories(root / "var/run");
        setenv("TOLM_ROOT", root.c_str(), 1);
        pidFile = root / "var/run/tolm.pid";
    }
    void TearDown() override
    {
        unsetenv("TOLM_ROOT");
        fs::remove_all(root);
    }
    void WritePidFile(const std::string& text) { std::ofstream(pidFile) << text; }
    std::string Read(const fs::path& p)
    {
        std::ifstream in(p);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    bool Claim() { return Startup::ClaimPidFile(pidFile.string(), "/var/run/tolm.pid"); }

    fs::path root;
    fs::path pidFile;
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
    EXPECT_NE(Read(root / "var/log/syslog.log")
                  .find("Attempt to run multiple Tolm instances, not updating /var/run/tolm.pid"),
              std::string::npos);
}

}  // namespace
}  // namespace Tolm

// The virtual-terminal argument and the single-instance pid file.
#include <sys/wait.h>
#include <unistd.h>

#include "../host/HostRoot.h"
#include "frame/StartupChecks.h"

namespace Tolm {
namespace {

TEST(StartupChecks, VirtualTerminalArgument)
{
    EXPECT_EQ(Startup::ParseVt("1"), 1);
    EXPECT_EQ(Startup::ParseVt("63"), 63);
    for (const char* bad : {"0", "64", "-3", "abc", "12345678901234567890", "-12345678901234567890", "", "7x"})
        EXPECT_FALSE(Startup::ParseVt(bad).has_value()) << bad;
}

TEST(StartupChecks, PidFileOfADeadOrNoProcessIsClaimedALiveOwnerIsLeftAlone)
{
    Tolm::Test::HostRoot root;
    std::filesystem::create_directories(root.Root() + "/var/run");
    const std::string pidFile = root.Root() + "/var/run/tolm.pid";
    pid_t dead = fork();
    if (dead == 0) _exit(0);
    waitpid(dead, nullptr, 0);
    for (std::string content : {std::string("0"), std::string("-42"), std::string("tolm"), std::to_string(dead)}) {
        std::ofstream(pidFile) << content;
        EXPECT_TRUE(Startup::ClaimPidFile(pidFile, "/var/run/tolm.pid")) << content;
        EXPECT_EQ(root.File("/var/run/tolm.pid"), std::to_string(getpid()));
    }

    const std::string live = std::to_string(getppid()) + "\n";
    std::ofstream(pidFile) << live;
    EXPECT_FALSE(Startup::ClaimPidFile(pidFile, "/var/run/tolm.pid"));
    EXPECT_EQ(root.File("/var/run/tolm.pid"), live);
    EXPECT_NE(root.File("/var/log/syslog.log").find("Attempt to run multiple Tolm instances, not updating /var/run/tolm.pid"),
              std::string::npos);
}

}  // namespace
}  // namespace Tolm

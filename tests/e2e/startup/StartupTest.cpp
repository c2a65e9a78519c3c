// The console's process life: start-up side effects, the pid file, the VT
// argument, and the ways out through signals and the resize key.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <string>

#include "harness/Console.h"

namespace Tolm::E2E {
namespace {

// Start-up is done once the first screen is up; until then signals may
// arrive before the signal thread exists.
bool Started(Console& tolm)
{
    return tolm.WaitForLog("Starting Tolm") && tolm.WaitUntil([&] { return tolm.PidFile() == tolm.Pid(); },
                                                              "pid file names the console") &&
           tolm.WaitForQuiet();
}

TEST(Startup, LogsClaimsThePidFileAndIgnoresABadVt)
{
    for (const char* bad : {"0", "64", "-3", "abc", "12345678901234567890"}) {
        SCOPED_TRACE(bad);
        Console tolm;
        tolm.Start({bad});
        ASSERT_TRUE(Started(tolm));
        EXPECT_NE(tolm.Syslog().find(std::string("Invalid VT specified for Tolm: ") + bad), std::string::npos);
        EXPECT_TRUE(tolm.Running());
    }
}

TEST(Startup, SecondInstanceLeavesALivePidFileAlone)
{
    Console tolm;
    std::ofstream(tolm.RootPath("/var/run/tolm.pid")) << getpid();
    tolm.Start();
    ASSERT_TRUE(tolm.WaitForLog("Attempt to run multiple Tolm instances, not updating /var/run/tolm.pid"));
    EXPECT_EQ(tolm.PidFile(), getpid());
    EXPECT_TRUE(tolm.Running());
}

TEST(Startup, StalePidFileIsTakenOver)
{
    Console tolm;
    std::ofstream(tolm.RootPath("/var/run/tolm.pid")) << "not a pid";
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    EXPECT_EQ(tolm.Syslog().find("Attempt to run multiple"), std::string::npos);
}

TEST(Startup, TerminatingSignalsEndWithStatusZero)
{
    for (int sig : {SIGTERM, SIGINT, SIGQUIT}) {
        SCOPED_TRACE(sig);
        Console tolm;
        tolm.Start();
        ASSERT_TRUE(Started(tolm));
        tolm.Signal(sig);
        EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    }
}

TEST(Startup, RestartRequestWhileIdleEndsAtOnce)
{
    Console tolm;
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    tolm.Signal(SIGUSR2);
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
}

TEST(Startup, ResizeLogsTheNewSizeAndEnds)
{
    Console tolm;
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    tolm.Resize(100, 30);
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    EXPECT_NE(tolm.Syslog().find("Resized window to 100x30"), std::string::npos);
}

TEST(Startup, SerialResizeSequenceTakesTheResizePath)
{
    Console tolm;
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    tolm.SendBytes("\x1bR");
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    EXPECT_NE(tolm.Syslog().find("Resized window to 80x25"), std::string::npos);
}

TEST(Startup, LinuxConsoleGetsTheRedefinedPalette)
{
    ConsoleOptions options;
    options.term = "linux";
    Console tolm(options);
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    auto palette = tolm.Palette();
    ASSERT_TRUE(palette.count(6));
    // 333 of 1000 on a 0-255 scale.
    EXPECT_NEAR(palette[6].r, 85, 1);
}

}  // namespace
}  // namespace Tolm::E2E

// The console's process life: start-up side effects, the VT argument, and
// the ways out through signals and the resize key.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <string>

#include "Steps.h"

namespace Tolm::E2E {
namespace {

TEST(Startup, LogsClaimsThePidFileAndIgnoresABadVt)
{
    for (const char* bad : {"64", "abc"}) {
        SCOPED_TRACE(bad);
        Console tolm;
        tolm.Start({bad});
        ASSERT_TRUE(Started(tolm));
        EXPECT_NE(tolm.Syslog().find(std::string("Invalid VT specified for Tolm: ") + bad), std::string::npos);
        EXPECT_TRUE(tolm.Running());
    }
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

TEST(Startup, ResizeAndTheSerialResizeSequenceLogTheSizeAndEnd)
{
    for (bool serial : {false, true}) {
        Console tolm;
        tolm.Start();
        ASSERT_TRUE(Started(tolm));
        if (serial)
            tolm.SendBytes("\x1bR");
        else
            tolm.Resize(100, 30);
        EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
        EXPECT_NE(tolm.Syslog().find(serial ? "Resized window to 80x25" : "Resized window to 100x30"),
                  std::string::npos);
    }
}

}  // namespace
}  // namespace Tolm::E2E

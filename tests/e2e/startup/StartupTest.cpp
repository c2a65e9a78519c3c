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

TEST(Startup, ClaimsThePidFileIgnoresABadVtAndEndsOnTerminatingSignals)
{
    const std::pair<int, const char*> runs[] = {{SIGTERM, "64"}, {SIGINT, "abc"}, {SIGQUIT, nullptr}};
    for (auto [sig, vt] : runs) {
        SCOPED_TRACE(sig);
        Console tolm;
        tolm.Start(vt ? std::vector<std::string>{vt} : std::vector<std::string>{});
        ASSERT_TRUE(Started(tolm));  // the pid file names the console
        if (vt) {
            EXPECT_NE(tolm.Syslog().find(std::string("Invalid VT specified for Tolm: ") + vt), std::string::npos);
        }
        EXPECT_TRUE(tolm.Running());
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

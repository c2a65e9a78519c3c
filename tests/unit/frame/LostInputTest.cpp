// The console's input can go away (a terminal hung up while SIGHUP is
// ignored): that must end the process cleanly instead of spinning on a
// descriptor that is always readable; and a terminate signal must end it even
// while a host tool runs. End of input is met end to end in WelcomeKeysTest.
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "exec/RunCommand.h"
#include "frame/Frame.h"

namespace Tolm {
namespace {

// In the child of a death test: a hang would be the fault, so it ends in a
// signal after a while instead of blocking the suite.
void Watchdog()
{
    alarm(20);
}

TEST(LostInputDeathTest, HungUpTerminalEndsTheConsole)
{
    EXPECT_EXIT(
        {
            Watchdog();
            std::signal(SIGHUP, SIG_IGN);
            int master = -1;
            int slave = -1;
            if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) std::abort();
            dup2(slave, 0);
            close(slave);
            close(master);  // the terminal goes away
            Frame::GetKey(nullptr, false);
        },
        ::testing::ExitedWithCode(0), "");
}

void TerminateDuringATool()
{
    Watchdog();
    setenv("TOLM_ROOT", "/", 1);
    Frame::InitSignals();
    kill(getpid(), SIGTERM);  // blocked: the signal thread hears it
    const char* argv[] = {"sleep", "60", nullptr};
    RunCommand("/bin/sleep", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
    std::exit(3);  // the tool ran to its end: the signal was not served
}

TEST(LostInputDeathTest, TerminateEndsTheConsoleWhileAToolRunsWithoutLimit)
{
    EXPECT_EXIT(TerminateDuringATool(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Tolm

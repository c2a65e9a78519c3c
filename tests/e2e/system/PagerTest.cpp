// The log viewer's pager owns the terminal while it runs: its keys are its
// own, and the session still ends on the idle timeout or a removed card,
// taking the pager with it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Steps.h"

namespace Tolm::E2E {
namespace {

constexpr const char* PAGER_PROMPT = "<Q> Quit </> RegExp Search <H> Help";

// Whether a process shows the root's syslog (the pager started for it).
bool PagerRunning(const Console& tolm)
{
    const std::string root = tolm.Root().string();
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream in(entry.path() / "cmdline");
        const std::string cmdline{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
        if (cmdline.find(root) != std::string::npos && cmdline.find("syslog.log") != std::string::npos) return true;
    }
    return false;
}

// From the menu's first entry: the syslog in the pager.
bool OpenSyslog(Console& tolm)
{
    tolm.Press(Key::Down, 8);
    if (!ShowsEntry(tolm, "View System Logs") || !tolm.WaitForQuiet()) return false;
    tolm.Press(Key::F1);
    return tolm.WaitForText(PAGER_PROMPT) && tolm.WaitForQuiet();
}

TEST(Pager, CtrlCAndCtrlZReachThePagerAlone)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    ASSERT_TRUE(OpenSyslog(tolm));
    tolm.SendBytes("\x03");  // Ctrl-C
    tolm.SendBytes("\x1a");  // Ctrl-Z
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.Running());
    EXPECT_TRUE(PagerRunning(tolm));
    tolm.Type("q");
    EXPECT_TRUE(ShowsEntry(tolm, "View System Logs"));
    EXPECT_TRUE(tolm.WaitUntil([&] { return !PagerRunning(tolm); }, "pager gone"));
    // The menu has the terminal and its keys again.
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Up);
    EXPECT_TRUE(ShowsEntry(tolm, "Troubleshooting Options"));
    EXPECT_TRUE(tolm.Running());
}

TEST(Pager, IdleTimeoutEndsTheSessionAndThePager)
{
    Console tolm("typical");
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 60);
    tolm.UseFakeTime("+0 x10");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    ASSERT_TRUE(OpenSyslog(tolm));
    ASSERT_TRUE(tolm.WaitForLog("User root logged out."));
    EXPECT_TRUE(tolm.WaitUntil([&] { return !PagerRunning(tolm); }, "pager ended"));
    ASSERT_TRUE(tolm.WaitForText("Download tools to manage this host from:"));
    EXPECT_FALSE(tolm.HasText(PAGER_PROMPT));
    // The status screen has the terminal and its keys.
    ASSERT_TRUE(tolm.WaitForQuiet());
    std::filesystem::remove(tolm.RootPath(LOGIN_FLAG));
    tolm.Press(Key::F2);
    EXPECT_TRUE(tolm.WaitForText("Authentication Denied"));
}

TEST(Pager, RemovedSmartCardEndsTheSessionAndThePager)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    tolm.CardInsert("jdoe");
    ASSERT_TRUE(tolm.WaitForLog("Found smart card with user id 'jdoe'"));
    ASSERT_TRUE(OpenLogin(tolm));
    tolm.Press(Key::Enter);
    tolm.Type("1234");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("User jdoe logged in"));
    ASSERT_TRUE(ShowsEntry(tolm, "Configure Password") && tolm.WaitForQuiet());
    ASSERT_TRUE(OpenSyslog(tolm));

    tolm.CardRemove("jdoe");
    EXPECT_TRUE(tolm.WaitForLog("Logging out user id 'jdoe'"));
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    EXPECT_TRUE(tolm.WaitUntil([&] { return !PagerRunning(tolm); }, "pager ended"));
}

}  // namespace
}  // namespace Tolm::E2E

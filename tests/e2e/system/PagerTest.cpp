// The log viewer's pager owns the terminal while it runs: its keys are its
// own, and the session still ends on the idle timeout or a removed card
// (after a login with its PIN), taking the pager with it.

#include <iterator>

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
    return ShowsEntry(tolm, "View System Logs") && Settle(tolm) && PressFor(tolm, Key::F1, PAGER_PROMPT);
}

TEST(Pager, CtrlCAndCtrlZReachThePagerAlone)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    ASSERT_TRUE(OpenSyslog(tolm));
    EXPECT_TRUE(tolm.WaitForText("Starting Tolm"));  // the syslog itself
    EXPECT_FALSE(tolm.HasText("System Customization"));
    tolm.SendBytes("\x03\x1a");  // Ctrl-C, Ctrl-Z
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.Running());
    EXPECT_TRUE(PagerRunning(tolm));
    tolm.Type("q");
    EXPECT_TRUE(ShowsEntry(tolm, "View System Logs"));
    EXPECT_TRUE(tolm.WaitUntil([&] { return !PagerRunning(tolm); }, "pager gone"));
    // The menu has the terminal and its keys again.
    ASSERT_TRUE(tolm.WaitForText("Configure Password") && Settle(tolm));
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
    ASSERT_TRUE(tolm.WaitForText("Download tools to manage this host from:") && Settle(tolm));
    EXPECT_FALSE(tolm.HasText(PAGER_PROMPT));
    // The status screen has the terminal and its keys.
    std::filesystem::remove(tolm.RootPath(LOGIN_FLAG));
    EXPECT_TRUE(PressFor(tolm, Key::F2, "Authentication Denied"));
}

TEST(Pager, RemovedSmartCardEndsTheSessionAndThePager)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    tolm.CardInsert("jdoe");
    ASSERT_TRUE(tolm.WaitForLog("Found smart card with user id 'jdoe'"));

    // The login asks for the card's PIN; F3 switches to a password and back.
    ASSERT_TRUE(OpenLogin(tolm));
    EXPECT_TRUE(tolm.HasText("Enter the smart card login PIN for"));
    EXPECT_TRUE(tolm.HasText("<F3> Switch PIN/Password Login"));
    EXPECT_TRUE(NameShows(tolm, "jdoe"));
    ASSERT_TRUE(PressFor(tolm, Key::F3, "Enter an authorized login name and password for"));
    EXPECT_TRUE(NameShows(tolm, "root"));
    EXPECT_FALSE(tolm.HasText("<F3>"));
    ASSERT_TRUE(PressFor(tolm, Key::F3, "Enter the smart card login PIN for"));
    ASSERT_TRUE(NameShows(tolm, "jdoe"));
    tolm.Press(Key::Enter);
    tolm.Type("1234");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("User jdoe logged in"));
    ASSERT_TRUE(ShowsEntry(tolm, "Configure Password") && Settle(tolm) && OpenSyslog(tolm));

    tolm.CardRemove("jdoe");
    EXPECT_TRUE(tolm.WaitForLog("Logging out user id 'jdoe'"));
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    EXPECT_TRUE(tolm.WaitUntil([&] { return !PagerRunning(tolm); }, "pager ended"));
}

}  // namespace
}  // namespace Tolm::E2E

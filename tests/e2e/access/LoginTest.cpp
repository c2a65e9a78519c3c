// Login through real PAM calls on the simulated host: results in syslog and
// the event log, the two failure messages, focus rules and the serial line.
// PIN mode is met in the pager's tests.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

TEST(Login, FailuresKeepTheDialogUntilTheRightPasswordGetsIn)
{
    Console tolm;
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    ASSERT_TRUE(OpenLogin(tolm));
    EXPECT_TRUE(tolm.HasText("Authentication Required"));
    EXPECT_TRUE(tolm.HasText("Enter an authorized login name and password for"));
    EXPECT_TRUE(tolm.HasText("Configured Keyboard (US Default)"));
    EXPECT_TRUE(tolm.HasText("<Enter> OK  <Esc> Cancel"));

    // Wrong password; it is masked.
    tolm.Press(Key::Enter);
    tolm.Type("wrongpass");
    ASSERT_TRUE(tolm.WaitForText("*********"));
    EXPECT_FALSE(tolm.HasText("wrongpass"));
    tolm.Press(Key::Enter);
    EXPECT_TRUE(tolm.WaitForLog("auth.err Tolm["));
    EXPECT_TRUE(tolm.WaitForLog("Authentication of user root failed with authentication failure."));
    EXPECT_TRUE(tolm.WaitForEvent("@&!*@*@(evt.user.tolm.login.failed)Authentication for user root failed"));
    ASSERT_TRUE(Dismiss(tolm, "Authentication failed", "Invalid login or password."));
    EXPECT_TRUE(FieldReads(tolm, "Password:", R"( +\[ +\])"));
    EXPECT_TRUE(NameShows(tolm, "root"));

    // A valid account that PAM does not let in here.
    tolm.Press(Key::Up);
    tolm.Type("sshonly");
    tolm.Press(Key::Enter);
    tolm.Type("sshonly");
    tolm.Press(Key::Enter);
    EXPECT_TRUE(tolm.WaitForLog("Authorization of user sshonly failed with permission denied error."));
    EXPECT_TRUE(tolm.WaitForEvent("Authentication for user sshonly failed"));
    ASSERT_TRUE(Dismiss(tolm, "Authentication failed", "User does not have permission to login to Tolm."));
    ASSERT_TRUE(NameShows(tolm, "sshonly"));
    EXPECT_FALSE(tolm.HasText("*******"));

    // Still usable: the right password gets in, with no further event.
    tolm.Press(Key::Up);
    tolm.Type("root");
    tolm.Press(Key::Tab);
    tolm.Type(ROOT_PASSWORD);
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("System Customization") && Settle(tolm));
    const std::string log = tolm.Syslog();
    EXPECT_NE(log.find("auth.emerg Tolm["), std::string::npos);
    EXPECT_NE(log.find("Authentication of user root succeeded"), std::string::npos);
    EXPECT_NE(log.find("user.info Tolm[" + std::to_string(tolm.Pid()) + "]: User root logged in"), std::string::npos);
    EXPECT_EQ(log.find(ROOT_PASSWORD), std::string::npos);
    EXPECT_EQ(Count(tolm.EventLog(), "login.failed"), 2u);

    tolm.SendEsc();
    EXPECT_TRUE(tolm.WaitForLog("User root logged out."));
}

TEST(Login, TabWrapsToTheKeyboardLineWhichOpensTheLayoutChoice)
{
    Console tolm;
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    ASSERT_TRUE(OpenLogin(tolm));
    // Name, password, then back to the first item: the keyboard line.
    tolm.Press(Key::Tab, 2);
    ASSERT_TRUE(PressFor(tolm, Key::Enter, "Configure Keyboard"));
    tolm.Press(Key::Down);
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to "));
    const std::string layout = tolm.State("/system/keyboard/current").get<std::string>();
    EXPECT_NE(layout, "US Default");
    EXPECT_TRUE(tolm.WaitForText("Configured Keyboard (" + layout + ")") && Settle(tolm));
    // The focus stays on the keyboard line; Down reaches the name field.
    tolm.Press(Key::Down);
    tolm.Type("x");
    EXPECT_TRUE(NameShows(tolm, "x"));
    // Esc cancels back to the status screen.
    EXPECT_TRUE(PressGone(tolm, Key::Esc, "Login Name:"));
    EXPECT_TRUE(tolm.HasText("Download tools to manage this host from:"));
}

TEST(Login, SerialLineHasNoKeyboardLineAndStartsOnTheLoginName)
{
    Console tolm(OnTerm("vt100", ""));
    tolm.SetValue("/faults/GetHostname", "resolver down");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    tolm.PressSerial(Key::F2);
    ASSERT_TRUE(tolm.WaitForText("Login Name:") && Settle(tolm));
    EXPECT_FALSE(tolm.HasText("Configured Keyboard"));
    // The failed host-name query leaves its part of the prompt empty.
    EXPECT_TRUE(tolm.HasText(" .lab.example.com."));
    EXPECT_FALSE(tolm.HasText("tarnhost01"));
    // Tab on the password wraps to the login name, the first item here.
    tolm.Press(Key::Tab, 2);
    tolm.Type("admin");
    EXPECT_TRUE(NameShows(tolm, "admin"));
    // ESC "h" is Home, ESC "k" End; DEL arrives as Backspace.
    tolm.PressSerial(Key::Home);
    tolm.PressSerial(Key::End);
    tolm.Type("xy");
    tolm.SendBytes("\x7f");
    EXPECT_TRUE(NameShows(tolm, "adminx"));
}

}  // namespace
}  // namespace Tolm::E2E

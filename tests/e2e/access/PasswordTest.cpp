// Password change through real PAM calls: every refusal keeps the right
// fields, a change backs up the host and the new password is the one that
// logs in afterwards.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

// "Configure Password" is the menu's first entry.
bool OpenChangePassword(Console& tolm) { return LogInToMenu(tolm) && PressFor(tolm, Key::Enter, "Old Password:"); }

// Types into the fields from the focused one on, Tab between them, then Enter.
void Fill(Console& tolm, std::initializer_list<const char*> fields)
{
    bool first = true;
    for (const char* text : fields) {
        if (!first) tolm.Press(Key::Tab);
        tolm.Type(text);
        first = false;
    }
    tolm.Press(Key::Enter);
}

// The row of the field labelled `label` shows `stars` masked characters
// (0: an empty field).
bool FieldShows(Console& tolm, const std::string& label, int stars)
{
    return FieldReads(tolm, label, stars ? R"( +\[ \*{)" + std::to_string(stars) + R"(} *\])" : R"( +\[ +\])");
}

// Acknowledges the message box showing `text`.
bool Acknowledge(Console& tolm, const std::string& text)
{
    return tolm.WaitForText(text) && PressGone(tolm, Key::Enter, text);
}

TEST(ChangePassword, RefusalsEmptyTheRightFieldsUntilTheSamePasswordIsConfirmed)
{
    Console tolm;
    tolm.Start();
    ASSERT_TRUE(OpenChangePassword(tolm));
    const std::string passdb = tolm.ReadRootFile("/etc/pellor/passdb");

    // The old password is checked as the focus leaves it.
    tolm.Type("nope");
    tolm.Press(Key::Tab);
    ASSERT_TRUE(Acknowledge(tolm, "The old password you entered is incorrect"));
    EXPECT_TRUE(FieldShows(tolm, "Old Password:", 0));
    tolm.Type(ROOT_PASSWORD);
    tolm.Press(Key::Down);
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_FALSE(tolm.HasText("incorrect"));

    // Mismatch: both new fields emptied, the old one kept, focus on the new one.
    Fill(tolm, {"abc", "abd"});
    ASSERT_TRUE(Acknowledge(tolm, "The new password and the confirmed password do not match."));
    EXPECT_TRUE(FieldShows(tolm, "New Password:", 0));
    EXPECT_TRUE(FieldShows(tolm, "Confirm Password:", 0));
    EXPECT_TRUE(FieldShows(tolm, "Old Password:", 8));

    // An empty new password with a confirmation is a mismatch first.
    Fill(tolm, {"", "x"});
    ASSERT_TRUE(Acknowledge(tolm, "do not match"));
    Fill(tolm, {"", ""});
    ASSERT_TRUE(Acknowledge(tolm, "Empty passwords are not allowed."));

    // The host's password step refuses what its file cannot hold.
    Fill(tolm, {"a:b", "a:b"});
    ASSERT_TRUE(Acknowledge(tolm, "The password change operation failed."));
    EXPECT_TRUE(FieldShows(tolm, "New Password:", 0));
    EXPECT_TRUE(FieldShows(tolm, "Old Password:", 8));

    // The same password again asks first; Esc goes back with the fields as they were.
    Fill(tolm, {ROOT_PASSWORD, ROOT_PASSWORD});
    ASSERT_TRUE(tolm.WaitForText("New password is same as old password. Are you sure?") && Settle(tolm));
    ASSERT_TRUE(PressGone(tolm, Key::Esc, "Are you sure?"));
    EXPECT_TRUE(FieldShows(tolm, "Confirm Password:", 8));
    EXPECT_EQ(tolm.ReadRootFile("/etc/pellor/passdb"), passdb);
    EXPECT_EQ(tolm.Syslog().find("has changed"), std::string::npos);
    EXPECT_TRUE(tolm.State("/tools/counts/backup").is_null());

    // Confirmed, it is set, even though the backup fails.
    tolm.SetValue("/faults/backup.sh", "backup store unavailable");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Configure Password: Warning") && Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Login password for user root has changed"));
    EXPECT_TRUE(tolm.WaitForTextGone("Old Password:"));
    EXPECT_EQ(tolm.State("/tools/counts/refresh"), 1);
    EXPECT_TRUE(tolm.State("/tools/counts/backup").is_null());
    EXPECT_NE(tolm.ReadRootFile("/etc/pellor/passdb").find("root:tolmdemo:tolm\n"), std::string::npos);
    EXPECT_EQ(tolm.Syslog().find(ROOT_PASSWORD), std::string::npos);
}

TEST(ChangePassword, ChangesBacksUpAndOnlyTheNewPasswordLogsIn)
{
    Console tolm;
    tolm.Start();
    ASSERT_TRUE(OpenChangePassword(tolm));
    Fill(tolm, {ROOT_PASSWORD, "n3wpass", "n3wpass"});
    ASSERT_TRUE(tolm.WaitForLog("user.info Tolm[" + std::to_string(tolm.Pid()) +
                                "]: Login password for user root has changed"));
    EXPECT_TRUE(tolm.WaitForEvent("@&!*@*@(evt.user.tolm.login.passwd.changed)Login password for user root changed"));
    ASSERT_TRUE(tolm.WaitForTextGone("Old Password:") && Settle(tolm));
    EXPECT_EQ(tolm.State("/tools/counts/backup"), 1);
    EXPECT_EQ(tolm.State("/tools/counts/refresh"), 1);

    tolm.SendEsc();  // log out
    ASSERT_TRUE(tolm.WaitForLog("User root logged out.") && tolm.WaitForText("<F2>") && Settle(tolm));
    ASSERT_TRUE(OpenLogin(tolm));
    tolm.Press(Key::Enter);
    tolm.Type(ROOT_PASSWORD);
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Acknowledge(tolm, "Invalid login or password."));
    tolm.Type("n3wpass");
    tolm.Press(Key::Enter);
    EXPECT_TRUE(tolm.WaitForText("System Customization"));
}

}  // namespace
}  // namespace Tolm::E2E

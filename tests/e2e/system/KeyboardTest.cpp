// Choosing the keyboard layout: only the marked row is applied, and a host
// that refuses the change leaves the dialog usable.
#include <gtest/gtest.h>

#include <string>

#include "SystemCommon.h"

namespace Tolm::E2E {
namespace {

constexpr const char* LEAD = "If you are having difficulty using your keyboard";

bool OpenKeyboardDialog(Console& tolm)
{
    tolm.Press(Key::Down, 6);
    if (!ShowsEntry(tolm, "Configure Keyboard")) return false;
    tolm.Press(Key::Enter);
    return tolm.WaitForText(LEAD) && tolm.WaitForText("(o) US Default") && tolm.WaitForQuiet();
}

TEST(Keyboard, OnlyTheMarkedLayoutIsApplied)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    ASSERT_TRUE(OpenKeyboardDialog(tolm));

    // The cursor moves to US Dvorak, but nothing is marked there: Enter
    // re-applies the layout in use.
    tolm.Press(Key::Down);
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to US Default"));
    EXPECT_TRUE(tolm.WaitForTextGone(LEAD));
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Default");

    // Space marks the row under the cursor; Enter applies it.
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText(LEAD));
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Down);
    tolm.Type(" ");
    EXPECT_TRUE(tolm.WaitForText("(o) US Dvorak"));
    EXPECT_TRUE(tolm.WaitForText("( ) US Default"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to US Dvorak"));
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Dvorak");
    EXPECT_EQ(tolm.State("/system/keyboard/loadedMappings"), "US Dvorak");

    // Esc changes nothing.
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("(o) US Dvorak"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Up);
    tolm.Type(" ");
    EXPECT_TRUE(tolm.WaitForText("(o) US Default"));
    tolm.SendEsc();
    EXPECT_TRUE(tolm.WaitForTextGone(LEAD));
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Dvorak");
}

TEST(Keyboard, RefusedChangeIsShownAndTheDialogStays)
{
    Console tolm("typical");
    tolm.SetValue("/faults/SetKeyboardLayout", "keymap store is read-only");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    ASSERT_TRUE(OpenKeyboardDialog(tolm));
    tolm.Press(Key::Down);
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Changing the keyboard layout to US Dvorak failed:"));
    EXPECT_TRUE(tolm.WaitForText("is read-only"));
    EXPECT_TRUE(tolm.WaitForLog("Setting keyboard layout failed: keymap store is read-only"));
    EXPECT_EQ(tolm.Syslog().find("Keyboard Layout changed"), std::string::npos);
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Default");

    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Enter);  // dismiss the message
    ASSERT_TRUE(tolm.WaitForTextGone("Changing the keyboard layout"));
    EXPECT_TRUE(tolm.WaitForText("(o) US Dvorak"));  // the choice is kept

    // Once the host accepts, the same Enter applies it.
    tolm.HostSim({"set", "/faults", "{}"});
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to US Dvorak"));
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Dvorak");
}

TEST(Keyboard, UnknownCurrentLayoutMarksNothing)
{
    Console tolm("typical");
    tolm.SetValue("/system/keyboard/current", "Klingon");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    tolm.Press(Key::Down, 6);
    ASSERT_TRUE(ShowsEntry(tolm, "Configure Keyboard"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText(LEAD));
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_FALSE(tolm.HasText("(o)"));
    tolm.Press(Key::Enter);  // nothing to apply: the dialog waits
    EXPECT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.HasText(LEAD));
    tolm.Type(" ");  // marks the first layout
    EXPECT_TRUE(tolm.WaitForText("(o) Belgian"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to Belgian"));
}

}  // namespace
}  // namespace Tolm::E2E

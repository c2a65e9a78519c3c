// Choosing the keyboard layout: only the marked row is applied, a host that
// refuses the change leaves the dialog usable, an unknown layout marks nothing.
#include <gtest/gtest.h>

#include <string>

#include "Steps.h"

namespace Tolm::E2E {
namespace {

constexpr const char* LEAD = "If you are having difficulty using your keyboard";

// Opens the dialog from its menu entry, showing `marked` ("(o) US Default").
bool Open(Console& tolm, const std::string& marked)
{
    tolm.Press(Key::Enter);
    return tolm.WaitForText(LEAD) && (marked.empty() || tolm.WaitForText(marked)) && tolm.WaitForQuiet();
}

TEST(Keyboard, OnlyTheMarkedLayoutIsApplied)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    tolm.Press(Key::Down, 6);
    ASSERT_TRUE(ShowsEntry(tolm, "Configure Keyboard"));
    ASSERT_TRUE(Open(tolm, "(o) US Default"));

    // The cursor moves to US Dvorak, but nothing is marked there: Enter
    // re-applies the layout in use.
    tolm.Press(Key::Down);
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to US Default"));
    EXPECT_TRUE(tolm.WaitForTextGone(LEAD));
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Default");

    // Space marks the row under the cursor; Enter applies it.
    ASSERT_TRUE(tolm.WaitForQuiet());
    ASSERT_TRUE(Open(tolm, "(o) US Default"));
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
    ASSERT_TRUE(Open(tolm, "(o) US Dvorak"));
    tolm.Press(Key::Up);
    tolm.Type(" ");
    EXPECT_TRUE(tolm.WaitForText("(o) US Default"));
    tolm.SendEsc();
    EXPECT_TRUE(tolm.WaitForTextGone(LEAD));
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Dvorak");

    // A refused change is shown and logged; the choice stays, and once the
    // host accepts, the same Enter applies it.
    tolm.SetValue("/faults/SetKeyboardLayout", "keymap store is read-only");
    ASSERT_TRUE(tolm.WaitForQuiet());
    ASSERT_TRUE(Open(tolm, "(o) US Dvorak"));
    tolm.Press(Key::Up);
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Changing the keyboard layout to US Default failed:"));
    EXPECT_TRUE(tolm.WaitForText("is read-only"));
    EXPECT_TRUE(tolm.WaitForLog("Setting keyboard layout failed: keymap store is read-only"));
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Dvorak");
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Enter);  // dismiss the message
    ASSERT_TRUE(tolm.WaitForTextGone("Changing the keyboard layout"));
    EXPECT_TRUE(tolm.WaitForText("(o) US Default"));
    tolm.HostSim({"set", "/faults", "{}"});
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitUntil([&] { return tolm.State("/system/keyboard/current") == "US Default"; }, "applied"));

    // A key map that fails to load leaves the host as it was: the configured
    // layout still names the map that is loaded.
    tolm.SetValue("/faults/LoadKeyboardMappings", "keymap file is corrupt");
    ASSERT_TRUE(tolm.WaitForTextGone(LEAD) && tolm.WaitForQuiet());
    ASSERT_TRUE(Open(tolm, "(o) US Default"));
    tolm.Press(Key::Down);
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Changing the keyboard layout to US Dvorak failed:"));
    EXPECT_TRUE(tolm.WaitForLog("Setting keyboard layout failed: keymap file is corrupt"));
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Default");
    EXPECT_EQ(tolm.State("/system/keyboard/loadedMappings"), "US Default");
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Enter);  // dismiss the message
    ASSERT_TRUE(tolm.WaitForTextGone("Changing the keyboard layout") && tolm.WaitForQuiet());
    tolm.SendEsc();
    tolm.HostSim({"set", "/faults", "{}"});

    // A layout the host does not list marks nothing; Enter then waits.
    tolm.SetValue("/system/keyboard/current", "Klingon");
    ASSERT_TRUE(tolm.WaitForTextGone(LEAD) && tolm.WaitForQuiet());
    ASSERT_TRUE(Open(tolm, ""));
    EXPECT_FALSE(tolm.HasText("(o)"));
    tolm.Press(Key::Enter);
    EXPECT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.HasText(LEAD));
    tolm.Type(" ");  // marks the first layout
    EXPECT_TRUE(tolm.WaitForText("(o) Belgian"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to Belgian"));
}

}  // namespace
}  // namespace Tolm::E2E

// Choosing the keyboard layout: only the marked row is applied, a host that
// refuses the change leaves the dialog usable, an unknown layout marks nothing.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

constexpr const char* LEAD = "If you are having difficulty using your keyboard";

// Opens the dialog from its menu entry, showing `marked` ("(o) US Default").
bool Open(Console& tolm, const std::string& marked)
{
    return Settle(tolm) && PressFor(tolm, Key::Enter, LEAD) && (marked.empty() || tolm.WaitForText(marked));
}

// Opens the dialog, marks the row `move` away from the marked one, and Enter.
bool MarkAndApply(Console& tolm, const std::string& marked, Key move)
{
    if (!Open(tolm, marked)) return false;
    tolm.Press(move);
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    return true;
}

nlohmann::json Keyboard(const Console& tolm, const std::string& field)
{
    return tolm.State("/system/keyboard/" + field);
}

TEST(Keyboard, OnlyTheMarkedLayoutIsAppliedAndAFailureLeavesTheHostAsItWas)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    tolm.Press(Key::Down, 6);
    ASSERT_TRUE(ShowsEntry(tolm, "Configure Keyboard"));

    // The cursor moves to US Dvorak, but nothing is marked there: Enter
    // re-applies the layout in use.
    ASSERT_TRUE(Open(tolm, "(o) US Default"));
    tolm.Press(Key::Down);
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to US Default"));
    EXPECT_TRUE(tolm.WaitForTextGone(LEAD));

    ASSERT_TRUE(MarkAndApply(tolm, "(o) US Default", Key::Down));
    ASSERT_TRUE(tolm.WaitForLog("Keyboard Layout changed to US Dvorak"));
    EXPECT_EQ(Keyboard(tolm, "current"), "US Dvorak");
    EXPECT_EQ(Keyboard(tolm, "loadedMappings"), "US Dvorak");

    // A refused change is shown and logged; the choice stays, and once the
    // host accepts, the same Enter applies it.
    tolm.SetValue("/faults/SetKeyboardLayout", "keymap store is read-only");
    ASSERT_TRUE(MarkAndApply(tolm, "(o) US Dvorak", Key::Up));
    ASSERT_TRUE(tolm.WaitForText("Changing the keyboard layout to US Default failed:"));
    EXPECT_TRUE(tolm.WaitForText("is read-only"));
    EXPECT_TRUE(tolm.WaitForLog("Setting keyboard layout failed: keymap store is read-only"));
    EXPECT_EQ(Keyboard(tolm, "current"), "US Dvorak");
    ASSERT_TRUE(Settle(tolm) && PressGone(tolm, Key::Enter, "Changing the keyboard layout"));
    EXPECT_TRUE(tolm.WaitForText("(o) US Default"));
    tolm.HostSim({"set", "/faults", "{}"});
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitUntil([&] { return Keyboard(tolm, "current") == "US Default"; }, "applied"));

    // A key map that fails to load leaves the configured layout naming the
    // map that is loaded.
    tolm.SetValue("/faults/LoadKeyboardMappings", "keymap file is corrupt");
    ASSERT_TRUE(tolm.WaitForTextGone(LEAD));
    ASSERT_TRUE(MarkAndApply(tolm, "(o) US Default", Key::Down));
    ASSERT_TRUE(tolm.WaitForText("Changing the keyboard layout to US Dvorak failed:"));
    EXPECT_TRUE(tolm.WaitForLog("Setting keyboard layout failed: keymap file is corrupt"));
    EXPECT_EQ(Keyboard(tolm, "current"), "US Default");
    EXPECT_EQ(Keyboard(tolm, "loadedMappings"), "US Default");
    ASSERT_TRUE(Settle(tolm) && PressGone(tolm, Key::Enter, "Changing the keyboard layout"));
    ASSERT_TRUE(PressGone(tolm, Key::Esc, LEAD));

    // A layout the host does not list marks nothing; Enter then waits.
    tolm.HostSim({"set", "/faults", "{}"});
    tolm.SetValue("/system/keyboard/current", "Klingon");
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

// Lockdown mode through the management agent: entering and leaving, no
// request when nothing changed, a refused request.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

// Opens the dialog from its menu entry showing the box as `box` ("[ ]" or "[X]").
bool Open(Console& tolm, const std::string& box) { return PressFor(tolm, Key::Enter, box + " Enable lockdown mode"); }

bool Close(Console& tolm, Key key = Key::Enter) { return PressGone(tolm, key, "Enable lockdown mode"); }

TEST(Lockdown, EntersAndLeavesButRunsNothingWhenUnchanged)
{
    Console tolm;
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    tolm.Press(Key::Down);
    ASSERT_TRUE(Open(tolm, "[ ]"));
    EXPECT_TRUE(tolm.HasText("When enabled, lockdown mode prevents users from logging"));
    EXPECT_TRUE(tolm.HasText("<Space> Toggle Selected"));

    // Toggled twice, or toggled and cancelled: no request.
    tolm.Type("  ");
    ASSERT_TRUE(Close(tolm));
    ASSERT_TRUE(Open(tolm, "[ ]"));
    tolm.Type(" ");
    ASSERT_TRUE(tolm.WaitForText("[X] Enable lockdown mode"));
    ASSERT_TRUE(Close(tolm, Key::Esc));
    EXPECT_EQ(tolm.Syslog().find("Lockdown mode enabled"), std::string::npos);
    EXPECT_EQ(tolm.Syslog().find("lockdown mode failed"), std::string::npos);
    EXPECT_EQ(tolm.State("/system/lockdown/enabled"), false);

    ASSERT_TRUE(Open(tolm, "[ ]"));
    tolm.Type(" ");
    ASSERT_TRUE(Close(tolm));
    ASSERT_TRUE(tolm.WaitForLog("user.info Tolm[" + std::to_string(tolm.Pid()) + "]: Lockdown mode enabled"));
    EXPECT_EQ(tolm.State("/system/lockdown/enabled"), true);

    ASSERT_TRUE(Open(tolm, "[X]"));
    ASSERT_TRUE(Close(tolm));  // already on: nothing to do
    ASSERT_TRUE(Open(tolm, "[X]"));
    tolm.Type(" ");
    ASSERT_TRUE(Close(tolm));
    ASSERT_TRUE(tolm.WaitForLog("Lockdown mode disabled"));
    EXPECT_EQ(tolm.State("/system/lockdown/enabled"), false);
    EXPECT_EQ(Count(tolm.Syslog(), "Lockdown mode enabled"), 1u);

    // A refused request is logged with the agent's error and changes nothing.
    tolm.SetValue("/faults/orlasvc~1auth~1lockdown_mode_enter", "agent busy");
    ASSERT_TRUE(Open(tolm, "[ ]"));
    tolm.Type(" ");
    ASSERT_TRUE(Close(tolm));
    ASSERT_TRUE(tolm.WaitForLog("err Tolm["));
    EXPECT_TRUE(tolm.WaitForLog("Enabling lockdown mode failed with error: "));
    EXPECT_NE(tolm.Syslog().find("agent busy\n"), std::string::npos) << tolm.Syslog();
    // The tool's own newline does not become a blank line of its own.
    EXPECT_EQ(tolm.Syslog().find("\n\n"), std::string::npos) << tolm.Syslog();
    EXPECT_EQ(tolm.State("/system/lockdown/enabled"), false);
    EXPECT_EQ(Count(tolm.Syslog(), "Lockdown mode enabled"), 1u);
}

}  // namespace
}  // namespace Tolm::E2E

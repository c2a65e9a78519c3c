#pragma once
// Shared steps of the System Customization tests: the way in, and where
// the menu shows what.
#include <string>

#include "harness/Console.h"

namespace Tolm::E2E {

// The demo host's root password (tests/fixtures).
inline constexpr const char* ROOT_PASSWORD = "tolmdemo";
inline constexpr const char* STATUS_FOOTER = "<F2> Customize System/View Logs";

// From the status screen through the login dialog as root. `key` is F2 for
// the menu, F12 for the shut-down dialog.
inline bool LogIn(Console& tolm, Key key = Key::F2)
{
    if (!tolm.WaitForRow(-1, STATUS_FOOTER) || !tolm.WaitForLog("Starting Tolm") || !tolm.WaitForQuiet())
        return false;
    tolm.Press(key);
    // Drawing a window drops keys typed ahead: type once it is quiet.
    if (!tolm.WaitForText("Login Name:") || !tolm.WaitForQuiet()) return false;
    tolm.Press(Key::Tab);  // the name is "root" already
    tolm.Type(ROOT_PASSWORD);
    tolm.Press(Key::Enter);
    return tolm.WaitForLog("User root logged in");
}

// The menu is up with `entry` highlighted: its name heads the right pane.
inline bool ShowsEntry(Console& tolm, const std::string& entry)
{
    return tolm.WaitForRow(1, "System Customization +" + entry + "( \\(\\d/\\d\\))?  ");
}

inline bool LogInToMenu(Console& tolm)
{
    return LogIn(tolm) && ShowsEntry(tolm, "Configure Password") && tolm.WaitForQuiet();
}

}  // namespace Tolm::E2E

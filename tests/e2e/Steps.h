#pragma once
// Steps the console's end-to-end tests share: waiting for start-up, logging
// in, opening a menu entry, and reading and typing into input fields.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "harness/Console.h"

namespace Tolm::E2E {

// The flag file whose presence allows logging in on the console.
inline constexpr const char* LOGIN_FLAG = "/var/run/pellor/show-tolm-login";
// The demo host's root password (tests/fixtures).
inline constexpr const char* ROOT_PASSWORD = "tolmdemo";
inline constexpr const char* STATUS_FOOTER = "<F2> Customize System/View Logs";

inline size_t Count(const std::string& text, const std::string& what)
{
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

// Drawing a window discards type-ahead, so keys wait until the screen has
// settled after a window opened or closed.
inline bool Settle(Console& tolm) { return tolm.WaitForQuiet(); }

// Start-up is over once the status screen is up (its footer is drawn last)
// and the pid file names the console (signals sent earlier could arrive
// before the signal thread).
inline bool Started(Console& tolm)
{
    return tolm.WaitForRow(-1, STATUS_FOOTER) && tolm.WaitForLog("Starting Tolm") &&
           tolm.WaitUntil([&] { return tolm.PidFile() == tolm.Pid(); }, "pid file names the console") &&
           Settle(tolm);
}

inline ConsoleOptions OnTerm(std::string term, std::string fixture = "typical")
{
    ConsoleOptions o;
    o.fixture = std::move(fixture);
    o.term = std::move(term);
    return o;
}

// Presses `key` (Esc as a lone Escape); then `text` shows and the screen settles.
inline bool PressFor(Console& tolm, Key key, std::string_view text)
{
    tolm.Press(key);
    return tolm.WaitForText(text) && Settle(tolm);
}

// Presses `key`; then `text` leaves the screen and it settles.
inline bool PressGone(Console& tolm, Key key, std::string_view text)
{
    tolm.Press(key);
    return tolm.WaitForTextGone(text) && Settle(tolm);
}

// F2 (or F12) on the status screen opens the login dialog.
inline bool OpenLogin(Console& tolm, Key key = Key::F2) { return PressFor(tolm, key, "Login Name:"); }

// From the status screen through the login dialog as root: F2 leads to the
// menu, F12 to the shut-down dialog.
inline bool LogIn(Console& tolm, Key key = Key::F2)
{
    const size_t before = Count(tolm.Syslog(), "User root logged in");
    if (!Started(tolm) || !OpenLogin(tolm, key)) return false;
    tolm.Press(Key::Tab);  // the name is "root" already
    tolm.Type(ROOT_PASSWORD);
    tolm.Press(Key::Enter);
    return tolm.WaitUntil([&] { return Count(tolm.Syslog(), "User root logged in") > before; }, "root logged in") &&
           Settle(tolm);
}

// The menu is up with `entry` highlighted: its name heads the right pane.
inline bool ShowsEntry(Console& tolm, const std::string& entry)
{
    return tolm.WaitForRow(1, "System Customization +" + entry + "( \\(\\d/\\d\\))?  ");
}

inline bool LogInToMenu(Console& tolm)
{
    return LogIn(tolm) && ShowsEntry(tolm, "Configure Password") && Settle(tolm);
}

// The row on which `text` is shown, -1 if nowhere.
inline int RowOf(const Console& tolm, std::string_view text)
{
    auto pos = tolm.FindText(text);
    return pos ? pos->row : -1;
}

// The row of the field labelled `label` comes to match `regex` after the label.
inline bool FieldReads(Console& tolm, const std::string& label, const std::string& regex)
{
    const std::regex pattern(label + regex);
    return tolm.WaitUntil(
        [&] {
            auto at = tolm.FindText(label);
            return at && std::regex_search(tolm.Row(at->row), pattern);
        },
        "field " + label + " to read " + regex);
}

// Some row shows the field `label` holding `value`.
inline bool FieldShows(Console& tolm, std::string_view label, const std::string& value)
{
    return tolm.WaitUntil(
        [&] {
            for (int row = 0; row < tolm.Rows(); ++row) {
                const std::string line = tolm.Row(row);
                const size_t at = line.find(label);
                if (at != std::string::npos && line.find("[ " + value + " ", at) != std::string::npos) return true;
            }
            return false;
        },
        std::string(label) + " showing " + value);
}

// Down from the highlighted menu entry until `entry` is highlighted, then Enter.
inline bool OpenEntry(Console& tolm, const std::string& entry)
{
    const std::regex selected("System Customization +" + entry + "  ");
    for (int i = 0; i < 16 && !std::regex_search(tolm.Row(1), selected); ++i) {
        const std::string before = tolm.Row(1);
        tolm.Press(Key::Down);
        if (!tolm.WaitUntil([&] { return tolm.Row(1) != before; }, "the next entry")) return false;
    }
    if (!ShowsEntry(tolm, entry) || !Settle(tolm)) return false;
    tolm.Press(Key::Enter);
    return true;
}

// Replaces the text of the focused input row.
inline void Retype(Console& tolm, std::string_view text)
{
    tolm.Press(Key::Home);
    tolm.Press(Key::Delete, 48);
    tolm.Type(text);
}

// The message box titled `title` showing `text` came up; Enter dismisses it.
inline bool Dismiss(Console& tolm, std::string_view title, std::string_view text)
{
    return tolm.WaitForText(title) && tolm.WaitForText(text) && Settle(tolm) && PressGone(tolm, Key::Enter, title);
}

inline bool NameShows(Console& tolm, const std::string& name)
{
    return FieldReads(tolm, "Login Name:", R"( +\[ )" + name + " ");
}

}  // namespace Tolm::E2E

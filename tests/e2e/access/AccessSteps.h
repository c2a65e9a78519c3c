#pragma once
// Steps the access tests share: waiting for the console to be up and logging in.
#include <regex>
#include <string>

#include "harness/Console.h"

namespace Tolm::E2E {

inline constexpr const char* DEMO_USER = "root";
inline constexpr const char* DEMO_PASSWORD = "tolmdemo";

// Drawing a window discards type-ahead, so keys wait until the screen has
// settled after a window opened or closed.
inline bool Settle(Console& tolm) { return tolm.WaitForQuiet(); }

// Start-up is over once the welcome screen is up and the pid file names the
// console (signals sent earlier could arrive before the signal thread).
inline bool Started(Console& tolm)
{
    return tolm.WaitForText("<F2>") && tolm.WaitUntil([&] { return tolm.PidFile() == tolm.Pid(); },
                                                       "pid file names the console") &&
           Settle(tolm);
}

// F2, then the password for the pre-filled "root".
inline bool OpenLogin(Console& tolm)
{
    tolm.Press(Key::F2);
    return tolm.WaitForText("Login Name:") && Settle(tolm);
}

// Logs in as root and waits for the System Customization menu.
inline bool LogIn(Console& tolm, const std::string& password = DEMO_PASSWORD)
{
    if (!OpenLogin(tolm)) return false;
    tolm.Press(Key::Enter);
    tolm.Type(password);
    tolm.Press(Key::Enter);
    return tolm.WaitForText("System Customization") && Settle(tolm);
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

inline bool NameShows(Console& tolm, const std::string& name) { return FieldReads(tolm, "Login Name:", R"( +\[ )" + name + " "); }

inline size_t Count(const std::string& text, const std::string& what)
{
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

}  // namespace Tolm::E2E

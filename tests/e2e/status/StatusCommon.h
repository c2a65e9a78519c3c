#pragma once
// Shared steps of the status screen's end-to-end tests.
#include <string>

#include "harness/Console.h"

namespace Tolm::E2E {

// The flag file whose presence allows logging in on the console.
inline constexpr const char* LOGIN_FLAG = "/var/run/pellor/show-tolm-login";
// The demo host's root password (tests/fixtures).
inline constexpr const char* ROOT_PASSWORD = "tolmdemo";

// The status screen is up and start-up is over (the footer is drawn last).
inline bool StatusUp(Console& tolm)
{
    return tolm.WaitForRow(-1, "<F2> Customize System/View Logs") && tolm.WaitForLog("Starting Tolm") &&
           tolm.WaitForQuiet();
}

// The row on which `text` is shown, -1 if nowhere.
inline int RowOf(const Console& tolm, std::string_view text)
{
    auto pos = tolm.FindText(text);
    return pos ? pos->row : -1;
}

}  // namespace Tolm::E2E

#pragma once
// What the status screen shows, read afresh from the host: who the host is
// and where it can be managed. Kept apart from the window so the host
// queries and the line fitting can be exercised without a terminal.
#include <string>
#include <vector>

namespace Tolm {

class StringFactory;

struct WelcomeContent {
    // Product and version, hardware, processors, memory; a line whose query
    // failed is left out.
    std::vector<std::string> description;
    // The heading and one line per management address ("http://...").
    std::vector<std::string> addresses;
    // Warnings (no adapter, failed DHCP lookup, audit mode), one line each.
    std::vector<std::string> warnings;
    // The host has no physical network adapter.
    bool noAdapter = false;
};

// Queries the host; a host-library failure is logged and leaves its part
// out, it never escapes.
WelcomeContent ComposeWelcome(StringFactory* factory);

// `text` cut to `columns` columns, ending in "..." when it had to be cut.
std::string FitLine(const std::string& text, int columns);


// The short alert raised when the host has no network adapter.
inline constexpr const char* NO_ADAPTER_ALERT = "No compatible network adapter found.";

}  // namespace Tolm

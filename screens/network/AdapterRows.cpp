#include "screens/network/AdapterRows.h"

#include <algorithm>

#include "ui/Markup.h"

namespace Tolm {

const char* const ADAPTER_LIST_HEADER =
    "{align:padding:13}Device Name{/align}{align:padding:30}Hardware Label (MAC Address){/align}Status";

namespace {

constexpr const char* ELLIPSIS = "...";
// A name this long or longer is cut to its first 8 characters.
constexpr int NAME_LONGEST = 11;
constexpr int NAME_CUT = 8;
constexpr int LABEL_LONGEST = 14;
constexpr int LABEL_CUT = 11;
// Label plus MAC below this fits the column with " (" and ")".
constexpr int LABEL_MAC_FIT = 26;
constexpr int MAC_ROOM = 22;

std::string Cut(std::string_view text, int longest, int keep)
{
    if (Markup::Columns(text) <= longest) return std::string(text);
    return std::string(Markup::CutToColumns(text, keep)) + ELLIPSIS;
}

// The last `columns` characters of an ASCII text.
std::string_view Tail(std::string_view text, int columns)
{
    const size_t keep = static_cast<size_t>(std::max(columns, 0));
    return keep >= text.size() ? text : text.substr(text.size() - keep);
}

std::string Joined(const std::vector<std::string>& names)
{
    std::string text;
    for (const auto& name : names) text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::string SwitchUser(const std::string& name, const std::vector<HostCtl::Network::PortGroup>& portGroups)
{
    std::vector<std::string> groups;
    for (const auto& group : portGroups) groups.push_back(group.GetName());
    return groups.empty() ? name : name + " (" + Joined(groups) + ")";
}

}  // namespace

const char* AdapterStatusText(bool linkUp) { return linkUp ? "Connected" : "Disconnected"; }

std::string AdapterRowText(std::string_view name, std::string_view label, std::string_view mac, bool linkUp,
                           bool usedElsewhere)
{
    const std::string shownLabel = Cut(label, LABEL_LONGEST, LABEL_CUT);
    const int labelColumns = Markup::Columns(shownLabel);
    std::string shownMac(mac);
    if (labelColumns + Markup::Columns(mac) >= LABEL_MAC_FIT)
        shownMac = ELLIPSIS + std::string(Tail(mac, MAC_ROOM - labelColumns));
    std::string row = "{align:padding:13}" + Markup::Literal(Cut(name, NAME_LONGEST, NAME_CUT)) + "{/align}";
    row += "{align:padding:30}" + Markup::Literal(shownLabel) + " (" + Markup::Literal(shownMac) + "){/align}";
    row += AdapterStatusText(linkUp);
    row += " ";
    if (usedElsewhere) row += "(...)";
    return row;
}

std::map<std::string, std::string> AdapterUsers(const std::vector<HostCtl::Network::VirtualSwitch>& switches,
                                                const std::vector<HostCtl::Network::Dlswitch>& dlswitches,
                                                const std::string& ownSwitch)
{
    std::map<std::string, std::string> users;
    for (const auto& vswitch : switches) {
        if (vswitch.GetName() == ownSwitch) continue;
        for (const auto& adapter : vswitch.GetUplinks())
            users[adapter] = SwitchUser(vswitch.GetName(), vswitch.GetPortGroups());
    }
    for (const auto& dlswitch : dlswitches) {
        if (dlswitch.GetName() == ownSwitch) continue;
        for (const auto& port : dlswitch.GetUplinkPorts())
            if (!port.pnic.empty()) users[port.pnic] = SwitchUser(dlswitch.GetName(), dlswitch.GetPortGroups());
    }
    return users;
}

std::vector<std::string> NewAdapterOrder(const std::vector<std::string>& pending,
                                         const std::vector<std::string>& marked)
{
    const auto isMarked = [&](const std::string& name) {
        return std::find(marked.begin(), marked.end(), name) != marked.end();
    };
    std::vector<std::string> order;
    for (const auto& name : pending)
        if (isMarked(name) && std::find(order.begin(), order.end(), name) == order.end()) order.push_back(name);
    for (const auto& name : marked)
        if (std::find(order.begin(), order.end(), name) == order.end()) order.push_back(name);
    return order;
}

}  // namespace Tolm

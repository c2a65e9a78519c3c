#pragma once
// What the adapter list shows and decides, free of curses: the text of one
// row with its truncation rules, who else uses each adapter, and the list
// and teaming that follow from the marks.
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/HostCtlNetwork.h"

namespace Tolm {

// The column heads above the rows (markup).
extern const char* const ADAPTER_LIST_HEADER;

// "Connected" or "Disconnected".
const char* AdapterStatusText(bool linkUp);

// One row of the list (markup): name and label cut to their columns, the
// MAC cut from the front when label and MAC would not fit together, the
// status, and "(...)" when the adapter serves another connection.
std::string AdapterRowText(std::string_view name, std::string_view label, std::string_view mac,
                           bool linkUp, bool usedElsewhere);

// Adapter name to the text naming the switch (and its port groups) that
// uses it, for every adapter serving a switch other than `ownSwitch`.
std::map<std::string, std::string> AdapterUsers(const std::vector<HostCtl::Network::VirtualSwitch>& switches,
                                                const std::vector<HostCtl::Network::Dlswitch>& dlswitches,
                                                const std::string& ownSwitch);

// The new team order: the pending adapters still marked keep their order,
// newly marked ones follow in list order, so a screen that compares
// position by position sees only what the operator changed.
std::vector<std::string> NewAdapterOrder(const std::vector<std::string>& pending,
                                         const std::vector<std::string>& marked);

}  // namespace Tolm

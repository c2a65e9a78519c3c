#pragma once
// The switch behind the management interface: its name, uplinks, teaming and
// VLAN. Each operation logs its own failure at error level ("<prefix>
// <exception text>", or the refusal alone) and answers false; the failure is
// also handed back for callers that show it.
#include <string>
#include <vector>

#include "host/TarnNic.h"

namespace Tolm::Uplinks {

struct Failure {
    std::string prefix;   // empty for a refusal
    std::string message;  // the exception text, or the refusal
    // The text for a message box: the prefix and the detail of the exception,
    // or the refusal itself.
    std::string BoxText() const;
};

using HostCtl::Network::TarnNic;

// Whether the management interface sits on a distributed switch; no when
// that cannot be told (logged).
bool IsOnDistributedSwitch();

// The standard or distributed switch carrying the interface.
bool SwitchName(const TarnNic& nic, std::string& name, Failure* failure = nullptr);
// Uplink adapter names in team order.
bool GetUplinks(const TarnNic& nic, std::vector<std::string>& uplinks, Failure* failure = nullptr);
bool GetMaxActiveUplinks(const TarnNic& nic, int& count, Failure* failure = nullptr);
bool SetMaxActiveUplinks(const TarnNic& nic, int count, Failure* failure = nullptr);
// VLAN ID of the interface's port group.
bool GetVlanId(const TarnNic& nic, int& vlanId, Failure* failure = nullptr);
bool SetVlanId(const TarnNic& nic, int vlanId, Failure* failure = nullptr);
// Only a standard switch's uplinks can be changed from here.
bool AddUplink(const TarnNic& nic, const std::string& pnic, Failure* failure = nullptr);
bool RemoveUplink(const TarnNic& nic, const std::string& pnic, Failure* failure = nullptr);
// Takes `pnic` away from whichever standard switch other than the
// interface's own has it; nothing to do counts as success.
bool ReleaseFromOtherSwitch(const TarnNic& nic, const std::string& pnic, Failure* failure = nullptr);

}  // namespace Tolm::Uplinks

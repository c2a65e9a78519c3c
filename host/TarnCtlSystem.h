#pragma once
// System information: keyboard layouts, system alerts, firewall rulesets,
// virtual machines. Throws HostCtl::Lib::HostCtlException on failure.
#include "host/HostCtlSystem.h"

#include <memory>
#include <string>
#include <vector>

namespace HostCtl::System {

// A live handle on one firewall ruleset.
class FirewallRuleset {
public:
    explicit FirewallRuleset(std::string id) : _id(std::move(id)) {}
    const std::string& GetId() const { return _id; }
    bool IsEnabled() const;
    void SetEnabled(bool enabled);
    void Enable() { SetEnabled(true); }
    void Disable() { SetEnabled(false); }

private:
    std::string _id;
};

}  // namespace HostCtl::System

namespace TarnCtl::System {

class SystemInfoImpl {
public:
    std::string GetKeyboardLayout();
    std::vector<std::string> GetKeyboardLayouts();
    // Refused for a name not in GetKeyboardLayouts().
    void SetKeyboardLayout(const std::string& name);
    // Loads the console key map of that layout.
    void LoadKeyboardMappings(const std::string& name);

    void SetSystemAlert(const std::string& text);
    std::vector<std::string> GetSystemAlerts();

    // Refused for an unknown id ("sshServer" is one).
    std::unique_ptr<HostCtl::System::FirewallRuleset> GetFirewallRulesetById(const std::string& id);

    std::vector<HostCtl::System::VirtualMachine> GetVirtualMachines();
    // Names of the powered-on machines.
    std::vector<std::string> GetRunningVms();
    bool HasRunningVms();

    bool IsDriverVmSupported();
};

}  // namespace TarnCtl::System

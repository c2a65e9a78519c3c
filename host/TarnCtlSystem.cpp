#include "host/TarnCtlSystem.h"

#include "host/Backend.h"

namespace HostCtl::System {

bool FirewallRuleset::IsEnabled() const { return Tolm::Host::Use("IsEnabled")->GetFirewallRulesetEnabled(_id); }
void FirewallRuleset::SetEnabled(bool enabled)
{
    Tolm::Host::Use("SetEnabled")->SetFirewallRulesetEnabled(_id, enabled);
}

}  // namespace HostCtl::System

namespace TarnCtl::System {

using Tolm::Host::Use;

std::string SystemInfoImpl::GetKeyboardLayout() { return Use("GetKeyboardLayout")->GetKeyboardLayout(); }
std::vector<std::string> SystemInfoImpl::GetKeyboardLayouts() { return Use("GetKeyboardLayouts")->GetKeyboardLayouts(); }
void SystemInfoImpl::SetKeyboardLayout(const std::string& name) { Use("SetKeyboardLayout")->SetKeyboardLayout(name); }
void SystemInfoImpl::LoadKeyboardMappings(const std::string& name)
{
    Use("LoadKeyboardMappings")->LoadKeyboardMappings(name);
}
void SystemInfoImpl::SetSystemAlert(const std::string& text) { Use("SetSystemAlert")->AddSystemAlert(text); }
std::vector<std::string> SystemInfoImpl::GetSystemAlerts() { return Use("GetSystemAlerts")->GetSystemAlerts(); }

std::unique_ptr<HostCtl::System::FirewallRuleset> SystemInfoImpl::GetFirewallRulesetById(const std::string& id)
{
    // Asking for its state refuses an unknown id here rather than later.
    Use("GetFirewallRulesetById")->GetFirewallRulesetEnabled(id);
    return std::make_unique<HostCtl::System::FirewallRuleset>(id);
}

std::vector<HostCtl::System::VirtualMachine> SystemInfoImpl::GetVirtualMachines()
{
    return Use("GetVirtualMachines")->GetVirtualMachines();
}

std::vector<std::string> SystemInfoImpl::GetRunningVms()
{
    std::vector<std::string> out;
    for (const auto& vm : Use("GetRunningVms")->GetVirtualMachines())
        if (vm.IsRunning())
            out.push_back(vm.name);
    return out;
}

bool SystemInfoImpl::HasRunningVms()
{
    Tolm::Host::Operation operation("HasRunningVms");
    return !GetRunningVms().empty();
}

bool SystemInfoImpl::IsDriverVmSupported() { return Use("IsDriverVmSupported")->IsDriverVmSupported(); }

}  // namespace TarnCtl::System

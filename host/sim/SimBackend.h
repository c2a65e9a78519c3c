#pragma once
#ifndef TOLM_HOST_BACKEND_SIM
#error "Only the program that chooses the host backend, tolm-hostsim and tests use the simulated host directly"
#endif
// The simulated host: every query reads the state file afresh, every change
// is one StateFile::Update, so the console and the host tools (separate
// processes) always agree. The schema is in STATE.md.
//
// Every operation fails with the message planted under /faults for any
// facade operation being served (Host::Operation), and turns whatever else
// goes wrong inside it into HostCtlException (RethrowAsHostFailure).
#include "host/Backend.h"
#include "host/sim/SimJson.h"
#include "host/sim/StateFile.h"

#include <functional>

namespace Tolm::HostSim {

class SimBackend : public Host::Backend {
public:
    explicit SimBackend(std::string statePath) : _file(std::move(statePath)) {}
    const StateFile& File() const { return _file; }

    void UpdateManagementInterface() override;
    std::optional<std::string> GetManagementInterface() override;
    std::vector<std::string> GetKernelNicNames() override;
    std::vector<HostCtl::Network::Pnic> GetPnics() override;
    bool IsIpv6Enabled() override;
    bool IsIpv6EnabledAfterRestart() override;
    void SetIpv6Enabled(bool enabled) override;
    std::vector<HostCtl::Network::VirtualSwitch> GetVirtualSwitches() override;
    std::vector<HostCtl::Network::Dlswitch> GetDlswitches() override;

    Host::KernelNicInfo GetKernelNic(const std::string& nic) override;
    HostCtl::Network::IpConfig GetIpConfig(const std::string& nic) override;
    void SetIpConfig(const std::string& nic, const HostCtl::Network::IpConfig& config,
                     Host::IpFamilies families) override;
    void SetKernelNicMac(const std::string& nic, const HostCtl::Network::MacAddress& mac) override;
    void StopKernelNic(const std::string& nic) override;
    void StartKernelNic(const std::string& nic) override;
    void RenewDhcpLease(const std::string& nic) override;

    HostCtl::Network::Ipv4Address GetDefaultGateway(const std::string& stack) override;
    void SetDefaultGateway(const std::string& stack, const HostCtl::Network::Ipv4Address& gw) override;
    HostCtl::Network::Ipv6Address GetIpv6DefaultGateway(const std::string& stack) override;
    void SetIpv6DefaultGateway(const std::string& stack, const HostCtl::Network::Ipv6Address& gw) override;
    Host::DnsRecord GetDns(const std::string& stack) override;
    void SetHostname(const std::string& stack, const std::string& host, bool userSet,
                     const std::optional<std::string>& domain) override;
    void SetDomain(const std::string& stack, const std::string& domain) override;
    void RemoveNameServers(const std::string& stack) override;
    void AddNameServer(const std::string& stack, const HostCtl::Network::IpAddress& server) override;
    void SetSearchDomains(const std::string& stack, const std::vector<std::string>& domains) override;
    void AddSearchDomain(const std::string& stack, const std::string& domain) override;
    void SaveDnsConfig(const std::string& stack) override;
    // Answers from the model (SimResolve.cpp): never the machine's resolver.
    int ResolveHostname(const std::string& name) override;

    void AddUplink(const std::string& switchName, const std::string& pnic) override;
    void RemoveUplink(const std::string& switchName, const std::string& pnic) override;
    void SetMaxActiveUplinks(const std::string& switchName, int count) override;
    void SetVlanId(const std::string& sw, bool distributed, const std::string& portGroup, int vlanId) override;

    std::optional<Host::AdvancedOptionRecord> FindOption(const std::string& path) override;
    void SetIntegerOption(const std::string& path, int64_t value) override;
    void SetStringOption(const std::string& path, const std::string& value) override;
    std::optional<std::string> GetUserOption(const std::string& name) override;
    void SetUserOption(const std::string& name, const std::string& value) override;
    void RemoveUserOption(const std::string& name) override;

    Host::HardwareRecord GetHardware() override;
    std::vector<HostCtl::Hardware::SmartCardSlot> GetSmartCardSlots() override;

    std::string GetPowerState() override;
    std::string GetKeyboardLayout() override;
    std::vector<std::string> GetKeyboardLayouts() override;
    void SetKeyboardLayout(const std::string& name) override;
    void LoadKeyboardMappings(const std::string& name) override;
    void AddSystemAlert(const std::string& text) override;
    std::vector<std::string> GetSystemAlerts() override;
    bool GetFirewallRulesetEnabled(const std::string& id) override;
    void SetFirewallRulesetEnabled(const std::string& id, bool enabled) override;
    std::vector<HostCtl::System::VirtualMachine> GetVirtualMachines() override;
    bool IsDriverVmSupported() override;

    Host::SystemVersion GetSystemVersion() override;
    int32_t GetBootOption() override;

    bool IsEventFacilityAvailable() override;
    void AppendEvent(const std::string& record) override;

    int Exec(const std::string& commandLine) override;

private:
    // The current state; fails first with a planted fault of the operation.
    json Load() const;
    void Change(const std::function<void(json&)>& change) const;

    StateFile _file;
};

// Lookups inside a state object that refuse unknown names.
json& KernelNicIn(json& state, const std::string& name);
json& VirtualSwitchIn(json& state, const std::string& name);
json& DlswitchIn(json& state, const std::string& name);
json& PortGroupIn(json& sw, const std::string& name);
void CheckStack(const std::string& stack);

// Installs the simulated host over the state file at `statePath` as the
// process's backend.
void UseSimulatedState(const std::string& statePath = StateFile::DefaultPath());

}  // namespace Tolm::HostSim

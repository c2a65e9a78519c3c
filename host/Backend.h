#pragma once
// The one interface behind the host library. The TarnCtl classes are thin
// facades over the backend chosen once per process at start-up; only host/,
// the backends, the program that chooses one and tests include this header.
//
// Every operation throws HostCtl::Lib::HostCtlException on failure, whatever
// went wrong inside the backend.
#include "host/HostCtlHardware.h"
#include "host/HostCtlNetwork.h"
#include "host/HostCtlSystem.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tolm::Host {

struct KernelNicInfo {
    std::string name;
    HostCtl::Network::MacAddress mac;
    HostCtl::Network::ConnectionPoint connection;
    bool up = false;
    bool usable = false;
    bool dhcpFailed = false;
};

struct DnsRecord {
    std::string hostname;
    std::string domain;
    std::vector<HostCtl::Network::Ipv4Address> nameServers;
    std::vector<HostCtl::Network::Ipv6Address> ipv6NameServers;
    std::vector<std::string> searchDomains;
};

struct AdvancedOptionRecord {
    std::string path;
    std::string type;  // "integer" or "string"
    std::string description;
    int64_t intValue = 0, intDefault = 0, intMin = 0, intMax = 0;
    std::string stringValue, stringDefault;
};

struct HardwareRecord {
    std::string vendor, product, serialNumber;
    int cpuPackages = 0, cpuCores = 0, cpuThreads = 0;
    std::string cpuModel;
    uint64_t totalPages = 0, pageSize = 0;
};

struct SystemVersion {
    std::string product, version, kernelRelease, build;
};

// Which families SetIpConfig hands to the interface.
enum IpFamilies : int { IPV4_FAMILY = 1, IPV6_FAMILY = 2, BOTH_FAMILIES = 3 };

class Backend {
public:
    virtual ~Backend() = default;

    // Network information.
    virtual void UpdateManagementInterface() = 0;
    virtual std::optional<std::string> GetManagementInterface() = 0;
    virtual std::vector<std::string> GetKernelNicNames() = 0;
    virtual std::vector<HostCtl::Network::Pnic> GetPnics() = 0;
    virtual bool IsIpv6Enabled() = 0;
    virtual bool IsIpv6EnabledAfterRestart() = 0;
    virtual void SetIpv6Enabled(bool enabled) = 0;
    virtual std::vector<HostCtl::Network::VirtualSwitch> GetVirtualSwitches() = 0;
    virtual std::vector<HostCtl::Network::Dlswitch> GetDlswitches() = 0;

    // Kernel interfaces.
    virtual KernelNicInfo GetKernelNic(const std::string& nic) = 0;
    virtual HostCtl::Network::IpConfig GetIpConfig(const std::string& nic) = 0;
    virtual void SetIpConfig(const std::string& nic, const HostCtl::Network::IpConfig& config,
                             IpFamilies families) = 0;
    virtual void SetKernelNicMac(const std::string& nic, const HostCtl::Network::MacAddress& mac) = 0;
    virtual void StopKernelNic(const std::string& nic) = 0;
    virtual void StartKernelNic(const std::string& nic) = 0;
    virtual void RenewDhcpLease(const std::string& nic) = 0;

    // Routing and DNS of one network stack.
    virtual HostCtl::Network::Ipv4Address GetDefaultGateway(const std::string& stack) = 0;
    virtual void SetDefaultGateway(const std::string& stack, const HostCtl::Network::Ipv4Address& gw) = 0;
    virtual HostCtl::Network::Ipv6Address GetIpv6DefaultGateway(const std::string& stack) = 0;
    virtual void SetIpv6DefaultGateway(const std::string& stack, const HostCtl::Network::Ipv6Address& gw) = 0;
    virtual DnsRecord GetDns(const std::string& stack) = 0;
    virtual void SetHostname(const std::string& stack, const std::string& host, bool userSet,
                             const std::optional<std::string>& domain) = 0;
    virtual void SetDomain(const std::string& stack, const std::string& domain) = 0;
    virtual void RemoveNameServers(const std::string& stack) = 0;
    virtual void AddNameServer(const std::string& stack, const HostCtl::Network::IpAddress& server) = 0;
    virtual void SetSearchDomains(const std::string& stack, const std::vector<std::string>& domains) = 0;
    virtual void AddSearchDomain(const std::string& stack, const std::string& domain) = 0;
    virtual void SaveDnsConfig(const std::string& stack) = 0;
    // Looks `name` up as the host's resolver does (hosts file, then its DNS
    // servers): 0 when it resolves, else a getaddrinfo error code. Blocks for
    // as long as the lookup takes. The default asks the system's resolver,
    // which is what a real host does.
    virtual int ResolveHostname(const std::string& name);

    // Switches.
    virtual void AddUplink(const std::string& switchName, const std::string& pnic) = 0;
    virtual void RemoveUplink(const std::string& switchName, const std::string& pnic) = 0;
    virtual void SetMaxActiveUplinks(const std::string& switchName, int count) = 0;
    // `distributed` selects a distributed switch by that name.
    virtual void SetVlanId(const std::string& sw, bool distributed, const std::string& portGroup, int vlanId) = 0;

    // Advanced and user options.
    virtual std::optional<AdvancedOptionRecord> FindOption(const std::string& path) = 0;
    virtual void SetIntegerOption(const std::string& path, int64_t value) = 0;
    virtual void SetStringOption(const std::string& path, const std::string& value) = 0;
    virtual std::optional<std::string> GetUserOption(const std::string& name) = 0;
    virtual void SetUserOption(const std::string& name, const std::string& value) = 0;
    virtual void RemoveUserOption(const std::string& name) = 0;

    // Hardware.
    virtual HardwareRecord GetHardware() = 0;
    virtual std::vector<HostCtl::Hardware::SmartCardSlot> GetSmartCardSlots() = 0;

    // System.
    // "running", "poweredOff" or "restarting".
    virtual std::string GetPowerState() = 0;
    virtual std::string GetKeyboardLayout() = 0;
    virtual std::vector<std::string> GetKeyboardLayouts() = 0;
    virtual void SetKeyboardLayout(const std::string& name) = 0;
    virtual void LoadKeyboardMappings(const std::string& name) = 0;
    virtual void AddSystemAlert(const std::string& text) = 0;
    virtual std::vector<std::string> GetSystemAlerts() = 0;
    virtual bool GetFirewallRulesetEnabled(const std::string& id) = 0;  // throws for an unknown id
    virtual void SetFirewallRulesetEnabled(const std::string& id, bool enabled) = 0;
    virtual std::vector<HostCtl::System::VirtualMachine> GetVirtualMachines() = 0;
    virtual bool IsDriverVmSupported() = 0;

    // Sysinfo.
    virtual SystemVersion GetSystemVersion() = 0;
    virtual int32_t GetBootOption() = 0;

    // Event facility: whether it can be opened, and the record sink.
    virtual bool IsEventFacilityAvailable() = 0;
    virtual void AppendEvent(const std::string& record) = 0;

    // Runs a shell command line on the host; exit status or -1.
    virtual int Exec(const std::string& commandLine) = 0;
};

// The facade operations the calling thread is serving, outermost first
// (e.g. "GetMacAddress", then "GetPnic" for the read it makes). A backend may
// name them in its failures; the simulated one fails them on request.
class Operation {
public:
    explicit Operation(std::string_view name);
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    static const std::vector<std::string_view>& Active();
};

// The process's backend. Throws HostCtlException until one is installed.
Backend& Current();

// One facade call: serves operation `op` on the current backend for as long
// as the full expression lasts, so `Use("GetPnics")->GetPnics()`.
class Call {
public:
    explicit Call(std::string_view op) : _backend(Current()), _operation(op) {}
    Backend* operator->() const { return &_backend; }

private:
    Backend& _backend;
    Operation _operation;
};

inline Call Use(std::string_view op)
{
    return Call(op);
}

// Installs the backend chosen at start-up (or by a test); null removes it.
void SetBackend(std::unique_ptr<Backend> backend);

}  // namespace Tolm::Host

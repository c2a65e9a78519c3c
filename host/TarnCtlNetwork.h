#pragma once
// Network implementation classes of the host library. Each object is a cheap
// handle; every call reads or changes the host at once. Every operation
// throws HostCtl::Lib::HostCtlException on failure.
#include "host/HostCtlNetwork.h"
#include "host/TarnNic.h"

#include <memory>
#include <string>
#include <vector>

namespace TarnCtl::Network {

using namespace HostCtl::Network;

inline constexpr const char* DEFAULT_TCPIP_STACK = "defaultTcpipStack";

class NetworkInfoImpl {
public:
    // Re-selects the management interface (keeps the current one while it
    // exists, else the first interface tagged for management).
    void UpdateManagementInterface();
    // Null when the host has none.
    std::unique_ptr<TarnNic> GetManagementInterface();
    std::vector<std::unique_ptr<TarnNic>> GetTarnNics();

    // Physical adapters, sorted by name; empty when the host has none.
    std::vector<Pnic> GetPnics();

    // IPv6 in the kernel as running now.
    bool IsTarnIpv6Enabled();
    // The choice made for the next restart (equals the current state when
    // nothing was changed).
    bool IsTarnIpv6EnabledAfterRestart();
    // Takes effect only when the host restarts.
    void SetTarnIpv6Enabled(bool enabled);

    std::vector<VirtualSwitch> GetVirtualSwitches();
    std::vector<Dlswitch> GetDlswitches();
};

class RoutingInfoImpl {
public:
    explicit RoutingInfoImpl(std::string stack = DEFAULT_TCPIP_STACK) : _stack(std::move(stack)) {}
    Ipv4Address GetTarnDefaultGateway();
    // `persist` is kept for the library's shape; the host keeps every change.
    void SetTarnDefaultGateway(const Ipv4Address& gateway, bool persist = true);
    Ipv6Address GetIpv6TarnDefaultGateway();
    void SetIpv6TarnDefaultGateway(const Ipv6Address& gateway);

private:
    std::string _stack;
};

class DnsConfigImpl {
public:
    explicit DnsConfigImpl(std::string stack = DEFAULT_TCPIP_STACK) : _stack(std::move(stack)) {}
    std::string GetHostname();  // short name, no domain
    std::string GetDomain();
    // A name with dots is split: the first label becomes the host name, the
    // rest the domain. `userSet` marks the name as chosen by hand, so a
    // DHCP lease does not replace it.
    void SetHostname(const std::string& name, bool userSet = true);
    void SetFqdn(const std::string& name, bool userSet, const std::string& domain);
    void SetDomain(const std::string& domain);

    std::vector<Ipv4Address> GetNameServers();      // IPv4 servers, in order
    std::vector<Ipv6Address> GetIpv6NameServers();  // IPv6 servers, in order
    void RemoveNameServers();                      // both families
    void AddNameServer(const IpAddress& server);   // appended to its family

    std::vector<std::string> GetSearchDomains();
    // Replaces the list with the entries of `text` (split at commas and blanks).
    void SetSearchDomainsString(const std::string& text);
    // Appends when not yet listed.
    void AddSearchDomain(const std::string& domain);
    // Checks the configuration and stamps it saved; every change above is
    // already kept by the host.
    void SaveConfig();
    // Looks `name` up through the host's resolver: 0 when it resolves, else
    // a getaddrinfo error code. Blocks for as long as the lookup takes.
    int ResolveHostname(const std::string& name);

private:
    std::string _stack;
};

class PnicImpl {
public:
    explicit PnicImpl(std::string name) : _name(std::move(name)) {}
    const std::string& GetName() const { return _name; }
    Pnic Get();  // the whole record
    MacAddress GetMacAddress();
    std::optional<PciDevice> GetPciDevice();
    bool IsLinkUp();

private:
    std::string _name;
};

// A standard switch by name.
class VirtualSwitchImpl {
public:
    explicit VirtualSwitchImpl(std::string name) : _name(std::move(name)) {}
    VirtualSwitch Get();
    std::vector<std::string> GetUplinks();
    NicTeamingPolicy GetTeamingPolicy();
    // Adds the adapter to the switch and at the end of the team order.
    // Refused when the adapter is unknown or serves another switch.
    void AddUplink(const std::string& pnic);
    void RemoveUplink(const std::string& pnic);
    void SetMaxActiveUplinks(int count);
    int GetVlanId(const std::string& portGroup);
    void SetVlanId(const std::string& portGroup, int vlanId);  // 0-4095

private:
    std::string _name;
};

// A distributed switch by name.
class DlswitchImpl {
public:
    explicit DlswitchImpl(std::string name) : _name(std::move(name)) {}
    Dlswitch Get();
    std::vector<DlswitchUplinkPort> GetUplinkPorts();
    // Adapter names on the switch's uplink ports, in port order.
    std::vector<std::string> GetUsedUplinks();
    NicTeamingPolicy GetTeamingPolicy();
    int GetVlanId(const std::string& portGroup);
    void SetVlanId(const std::string& portGroup, int vlanId);

private:
    std::string _name;
};

}  // namespace TarnCtl::Network

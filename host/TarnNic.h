#pragma once
// A kernel network interface ("tarn0"): a live handle by name. Every getter
// asks the host afresh, so a read after Start() sees the new lease.
// Every operation throws HostCtl::Lib::HostCtlException on failure, also when
// the interface no longer exists.
#include "host/HostCtlNetwork.h"

#include <string>

namespace HostCtl::Network {

class TarnNic {
public:
    explicit TarnNic(std::string name) : _name(std::move(name)) {}

    const std::string& GetName() const { return _name; }

    // Both read the whole configuration (IPv4, IPv6, DNS-from-DHCP); the
    // IPv4 gateway is the stack's current default gateway, the IPv6 gateway
    // the IPv6 default gateway. With IPv6 off in the kernel no IPv6 network
    // is listed.
    IpConfig GetIpConfig() const;
    IpConfig GetIpv6Config() const;

    // Hands the IPv4 side (use-none / DHCP / address / netmask) and the
    // DNS-from-DHCP flag to the interface. Switching to DHCP asks the DHCP
    // server at once. Gateways are not taken from here.
    void SetIpConfig(const IpConfig& config);
    // Hands the IPv6 side (DHCPv6, router advertisement, static networks).
    // Accepted also while IPv6 is off; it applies once IPv6 is on.
    void SetIpv6Config(const IpConfig& config);
    // Both of the above in one change.
    void SetIpConfigs(const IpConfig& ipv4, const IpConfig& ipv6);

    MacAddress GetMacAddress() const;
    void SetMacAddress(const MacAddress& mac);

    ConnectionPoint GetConnectionPoint() const;
    // Shortcut: GetConnectionPoint().GetConnecteeType().
    int GetConnecteeType() const;
    // The port group name of the connection point.
    std::string GetPortGroup() const;

    bool IsUp() const;
    // Up, and carried by a switch that has at least one uplink adapter.
    bool IsUsable() const;
    // True when the interface is on DHCP and the last lookup failed.
    bool IsDhcpLookupFailed() const;

    void Stop();
    void Start();             // a DHCP interface asks for a lease again
    void Refresh();           // re-reads the object; throws if it vanished
    void RenewDhcpLease();    // throws if the interface is not on DHCP

private:
    std::string _name;
};

}  // namespace HostCtl::Network

#pragma once
// What the management network screen holds between entering and leaving: the
// values read from the host, as the dialogs changed them. Nothing here
// touches the host; the screen fills it and the apply step writes it.
#include <memory>
#include <string>
#include <vector>

#include "host/HostCtlNetwork.h"

namespace Tolm {

struct DnsPair {
    std::unique_ptr<HostCtl::Network::IpAddress> primary;
    std::unique_ptr<HostCtl::Network::IpAddress> alternate;
};

// The two servers the screen shows out of the host's lists: IPv4 servers
// first, an IPv6 server as alternate when both families are present.
DnsPair DeriveDnsServers(const std::vector<HostCtl::Network::Ipv4Address>& ipv4,
                         const std::vector<HostCtl::Network::Ipv6Address>& ipv6);

// The search domains as one editable line: "a.example, b.example".
std::string JoinSuffixes(const std::vector<std::string>& domains);

// The part of a host-library failure worth showing: from one past the first
// "=" to just before the last ";". No ";" gives nothing; no "=" starts at
// the beginning (the position after "not found" wraps round to zero).
std::string ExceptionDetail(const std::string& message);

// The static networks as the screen lists them: all of up to three, else the
// first two and "...".
std::vector<std::string> Ipv6AddressLines(const std::vector<HostCtl::Network::Ipv6Network>& networks);

// The networks the operator set by hand (the dialog shows and edits these).
bool IsStaticNetwork(const HostCtl::Network::Ipv6Network& network);

struct PendingNetwork {
    std::vector<std::string> _adapters;  // uplinks in team order
    int _maxActiveUplinks = 1;
    int _vlanId = 0;
    bool _onDistributedSwitch = false;   // adapters and VLAN are then left alone
    // Adapters the operator agreed to take away from the switch that has them.
    std::vector<std::string> _takenFromOtherSwitches;

    HostCtl::Network::IpConfig _ipConfig;      // IPv4 side, DNS from DHCP, both gateways
    HostCtl::Network::IpConfig _ipv6IpConfig;  // IPv6 side as the IPv6 dialog edits it
    bool _ipv6Enabled = true;
    bool _ipv6EnabledAtEntry = true;
    bool _ipv6GatewayChanged = false;

    std::string _hostname;
    std::vector<std::string> _searchDomains;
    std::unique_ptr<HostCtl::Network::IpAddress> _primaryDns;
    std::unique_ptr<HostCtl::Network::IpAddress> _alternateDns;
    std::string _suffixes;
    bool _changed = false;

    // Each takes one dialog's answer: stores it and sets _changed only when it
    // differs from what is pending; true when it did.
    bool TakeAdapters(const std::vector<std::string>& adapters, int maxActiveUplinks,
                      const std::vector<std::string>& takenFromOtherSwitches);
    bool TakeVlan(int vlanId);
    bool TakeIpv4(const HostCtl::Network::IpConfig& answer);
    bool TakeIpv6(bool enabled, const HostCtl::Network::IpConfig& answer);
    bool TakeDns(bool dhcpDns, const HostCtl::Network::IpAddress* primary,
                 const HostCtl::Network::IpAddress* alternate, const std::string& hostname);
    bool TakeSuffixes(const std::string& suffixes);

    bool Ipv6Switched() const { return _ipv6Enabled != _ipv6EnabledAtEntry; }
    // Leaving the screen asks before applying.
    bool NeedsConfirmation() const { return _changed || Ipv6Switched(); }
};

}  // namespace Tolm

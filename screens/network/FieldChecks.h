#pragma once
// The checks the network dialogs make on Enter, free of curses: each names
// the first bad field (counted from the dialog's first input row) and the
// message box that says why.
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/TextId.h"
#include "host/HostCtlNetwork.h"

namespace Tolm {

struct FieldError {
    int field;  // 0 is the dialog's first input row
    TextId title;
    TextId text;
};

// VLAN ID 4095 reaches every VLAN; it is accepted after a warning.
inline constexpr int VLAN_ALL = 4095;

// The VLAN ID typed into `text`: 0 for an empty row, nothing when it is no
// ID the host takes (1 to 4095).
std::optional<int> ParseVlanId(const std::string& text);

// Static IPv4 rows in order: address (0), netmask (1), gateway (2).
std::optional<FieldError> CheckIpv4Static(const std::string& address, const std::string& netmask,
                                          const std::string& gateway);

// Only the exact fe80 prefix counts here, not the whole link-local range.
bool HasLinkLocalPrefix(const HostCtl::Network::Ipv6Address& address);

// Static IPv6 rows: the three networks (0-2; empty rows are skipped) and the
// gateway (3; may be empty).
std::optional<FieldError> CheckIpv6Static(const std::array<std::string, 3>& networks, const std::string& gateway);

// The static, non-link-local networks of `config`, at most three, in "x:x:x/x"
// form; they are taken out of `config`, the rest stays there.
std::vector<std::string> TakeStaticNetworks(HostCtl::Network::IpConfig& config);

// The DNS server rows: primary (0), alternate (1); empty rows are allowed.
std::optional<FieldError> CheckDnsServers(const std::string& primary, const std::string& alternate);

// A server row as an address (IPv6 tried first); null for an empty row.
std::unique_ptr<HostCtl::Network::IpAddress> DnsServer(const std::string& text);

}  // namespace Tolm

#include "screens/network/FieldChecks.h"

#include <cstdlib>

namespace Tolm {

using HostCtl::Network::Ipv4Address;
using HostCtl::Network::Ipv6Address;
using HostCtl::Network::Ipv6Network;

std::optional<int> ParseVlanId(const std::string& text)
{
    if (text.empty()) return 0;
    const long value = std::strtol(text.c_str(), nullptr, 10);
    // 0 and everything above 4095 wrap to 4095 or more.
    if (static_cast<unsigned long>(value) - 1 >= VLAN_ALL) return std::nullopt;
    return static_cast<int>(value);
}

std::optional<FieldError> CheckIpv4Static(const std::string& address, const std::string& netmask,
                                          const std::string& gateway)
{
    if (!Ipv4Address::IsValidAddress(address))
        return FieldError{0, TextId::InvalidIPAddress, TextId::PleaseReenterValidIPv4Address};
    if (!Ipv4Address::IsValidNetmask(netmask))
        return FieldError{1, TextId::InvalidSubnet, TextId::PleaseReenterValidSubnet};
    if (!Ipv4Address::IsValidAddress(gateway))
        return FieldError{2, TextId::InvalidGatewayAddress, TextId::PleaseReenterValidGateway};
    return std::nullopt;
}

bool HasLinkLocalPrefix(const Ipv6Address& address)
{
    const auto& bytes = address.GetBinaryAddress();
    return bytes[0] == 0xfe && bytes[1] == 0x80;
}

std::optional<FieldError> CheckIpv6Static(const std::array<std::string, 3>& networks, const std::string& gateway)
{
    for (int row = 0; row < static_cast<int>(networks.size()); ++row) {
        const std::string& text = networks[static_cast<size_t>(row)];
        if (text.empty()) continue;
        if (!Ipv6Network::IsValidAddressAndNetmask(text))
            return FieldError{row, TextId::InvalidIPAddress, TextId::PleaseReenterValidIPv6Network};
        if (HasLinkLocalPrefix(Ipv6Network(text).GetAddress()))
            return FieldError{row, TextId::InvalidScope, TextId::CannotAddLinkLocal};
    }
    constexpr int GATEWAY = 3;
    if (gateway.empty()) return std::nullopt;
    if (!Ipv6Address::IsValidAddress(gateway))
        return FieldError{GATEWAY, TextId::InvalidGatewayAddress, TextId::PleaseReenterValidIPv6Gateway};
    // The host routes through a link-local gateway only with an interface
    // named, which this row cannot carry; say so now rather than at apply.
    if (HasLinkLocalPrefix(Ipv6Address(gateway)))
        return FieldError{GATEWAY, TextId::InvalidGatewayAddress, TextId::LinkLocalAddressesNot};
    return std::nullopt;
}

std::vector<std::string> TakeStaticNetworks(HostCtl::Network::IpConfig& config)
{
    constexpr size_t ROWS = 3;
    std::vector<std::string> rows;
    std::vector<Ipv6Network> rest;
    for (const Ipv6Network& network : config.GetIpv6Network()) {
        const bool shown = rows.size() < ROWS && network.GetIpv6AddressType() == HostCtl::Network::IPV6_TYPE_STATIC &&
                           network.GetIpv6Scope() != HostCtl::Network::IPV6_SCOPE_LINK_LOCAL;
        if (shown)
            rows.push_back(network.GetStringAddress());
        else
            rest.push_back(network);
    }
    // Rebuilt rather than removed by value: an address may be listed twice,
    // once of another type.
    config.ClearIpv6Networks();
    for (const Ipv6Network& network : rest) config.AddIpv6Network(network);
    return rows;
}

std::optional<FieldError> CheckDnsServers(const std::string& primary, const std::string& alternate)
{
    int field = 0;
    for (const std::string* text : {&primary, &alternate}) {
        if (!text->empty() && !DnsServer(*text))
            return FieldError{field, TextId::InvalidDNSServerAddress, TextId::PleaseReenterValidDNSServer};
        ++field;
    }
    return std::nullopt;
}

std::unique_ptr<HostCtl::Network::IpAddress> DnsServer(const std::string& text)
{
    return text.empty() ? nullptr : HostCtl::Network::ParseIpAddress(text);
}

}  // namespace Tolm

#include "screens/network/PendingNetwork.h"

#include <algorithm>

namespace Tolm {

using namespace HostCtl::Network;

DnsPair DeriveDnsServers(const std::vector<Ipv4Address>& ipv4, const std::vector<Ipv6Address>& ipv6)
{
    DnsPair pair;
    if (!ipv4.empty()) {
        pair.primary = ipv4[0].Clone();
        if (!ipv6.empty())
            pair.alternate = ipv6[0].Clone();
        else if (ipv4.size() >= 2)
            pair.alternate = ipv4[1].Clone();
    } else if (!ipv6.empty()) {
        pair.primary = ipv6[0].Clone();
        if (ipv6.size() >= 2)
            pair.alternate = ipv6[1].Clone();
    }
    return pair;
}

std::string JoinSuffixes(const std::vector<std::string>& domains)
{
    std::string out;
    for (const auto& domain : domains) {
        if (!out.empty())
            out += ", ";
        out += domain;
    }
    return out;
}

std::string ExceptionDetail(const std::string& message)
{
    // Host messages read "... name = text;": the detail is what lies between.
    // A message without "=" is read from its start, as the console always has.
    const std::string::size_type start = message.find('=') + 1;
    const std::string::size_type end = message.rfind(';');
    if (end == std::string::npos)
        return {};
    return message.substr(start, end - start);
}

bool IsStaticNetwork(const Ipv6Network& network)
{
    return network.GetIpv6AddressType() == IPV6_TYPE_STATIC && network.GetIpv6Scope() != IPV6_SCOPE_LINK_LOCAL;
}

std::vector<std::string> Ipv6AddressLines(const std::vector<Ipv6Network>& networks)
{
    std::vector<std::string> lines;
    for (const auto& n : networks)
        if (IsStaticNetwork(n))
            lines.push_back(n.GetStringAddress());
    if (lines.size() > 3) {
        lines.resize(2);
        lines.push_back("...");
    }
    return lines;
}

namespace {

// The static networks as a sorted list: the dialog hands back the networks it
// did not show ahead of the ones it did, so order alone is no change.
std::vector<std::string> StaticNetworks(const IpConfig& config)
{
    std::vector<std::string> out;
    for (const auto& n : config.GetIpv6Network())
        if (IsStaticNetwork(n))
            out.push_back(n.GetStringAddress());
    std::sort(out.begin(), out.end());
    return out;
}

bool SameServer(const IpAddress* a, const IpAddress* b)
{
    if (!a || !b)
        return a == b;
    return a->IsIpv6() == b->IsIpv6() && a->GetStringAddress() == b->GetStringAddress();
}

std::unique_ptr<IpAddress> Copy(const IpAddress* a) { return a ? a->Clone() : nullptr; }

}  // namespace

bool PendingNetwork::TakeAdapters(const std::vector<std::string>& adapters, int maxActiveUplinks,
                                  const std::vector<std::string>& takenFromOtherSwitches)
{
    // Only what is still chosen is taken from elsewhere.
    _takenFromOtherSwitches.clear();
    for (const auto& name : takenFromOtherSwitches)
        if (std::find(adapters.begin(), adapters.end(), name) != adapters.end())
            _takenFromOtherSwitches.push_back(name);
    if (adapters == _adapters && maxActiveUplinks == _maxActiveUplinks)
        return false;
    _adapters = adapters;
    _maxActiveUplinks = maxActiveUplinks;
    _changed = true;
    return true;
}

bool PendingNetwork::TakeVlan(int vlanId)
{
    if (vlanId == _vlanId)
        return false;
    _vlanId = vlanId;
    _changed = true;
    return true;
}

bool PendingNetwork::TakeIpv4(const IpConfig& answer)
{
    const IpConfig& now = _ipConfig;
    bool changed = answer.GetUseDhcp() != now.GetUseDhcp() || answer.GetIpv4UseNone() != now.GetIpv4UseNone();
    // The static values matter only while they are in use.
    if (!changed && !answer.GetUseDhcp() && !answer.GetIpv4UseNone())
        changed = !(answer.GetIpv4Address() == now.GetIpv4Address()) ||
                  !(answer.GetIpv4Netmask() == now.GetIpv4Netmask()) ||
                  !(answer.GetIpv4Gateway() == now.GetIpv4Gateway());
    if (!changed)
        return false;
    _ipConfig.SetUseDhcp(answer.GetUseDhcp());
    _ipConfig.SetIpv4UseNone(answer.GetIpv4UseNone());
    _ipConfig.SetIpv4Address(answer.GetIpv4Address());
    _ipConfig.SetIpv4Netmask(answer.GetIpv4Netmask());
    _ipConfig.SetIpv4Gateway(answer.GetIpv4Gateway());
    _changed = true;
    return true;
}

bool PendingNetwork::TakeIpv6(bool enabled, const IpConfig& answer)
{
    const IpConfig& now = _ipv6IpConfig;
    const bool flagChanged = enabled != _ipv6Enabled;
    const bool gatewayChanged = !(answer.GetIpv6Gateway() == now.GetIpv6Gateway());
    // Edited static addresses count too, or a new address typed alone would
    // be dropped without a word.
    const bool settingsChanged = answer.GetUseIpv6Dhcp() != now.GetUseIpv6Dhcp() ||
                                 answer.GetUseIpv6RouterAdvertised() != now.GetUseIpv6RouterAdvertised() ||
                                 gatewayChanged || StaticNetworks(answer) != StaticNetworks(now);
    if (!flagChanged && !settingsChanged)
        return false;
    _changed = true;
    _ipv6Enabled = enabled;
    if (enabled) {
        if (gatewayChanged)
            _ipv6GatewayChanged = true;
        _ipv6IpConfig.SetUseIpv6Dhcp(answer.GetUseIpv6Dhcp());
        _ipv6IpConfig.SetUseIpv6RouterAdvertised(answer.GetUseIpv6RouterAdvertised());
        _ipv6IpConfig.ClearIpv6Networks();
        for (const auto& n : answer.GetIpv6Network())
            _ipv6IpConfig.AddIpv6Network(n);
        _ipv6IpConfig.SetIpv6Gateway(answer.GetIpv6Gateway());
    }
    return true;
}

bool PendingNetwork::TakeDns(bool dhcpDns, const IpAddress* primary, const IpAddress* alternate,
                             const std::string& hostname)
{
    if (dhcpDns == _ipConfig.GetDhcpDns() && SameServer(primary, _primaryDns.get()) &&
        SameServer(alternate, _alternateDns.get()) && hostname == _hostname)
        return false;
    _ipConfig.SetDhcpDns(dhcpDns);
    _primaryDns = Copy(primary);
    _alternateDns = Copy(alternate);
    _hostname = hostname;
    _changed = true;
    return true;
}

bool PendingNetwork::TakeSuffixes(const std::string& suffixes)
{
    if (suffixes == _suffixes)
        return false;
    _suffixes = suffixes;
    _changed = true;
    return true;
}

}  // namespace Tolm

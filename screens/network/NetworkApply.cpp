#include "screens/network/NetworkApply.h"

#include <algorithm>
#include <sstream>

#include "exec/OrlaCmd.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "host/TarnCtlNetwork.h"
#include "screens/network/Uplinks.h"
#include "screens/system/RebootConfirmDialog.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"

namespace Tolm {

using namespace HostCtl::Network;
using TarnCtl::Network::DnsConfigImpl;
using TarnCtl::Network::NetworkInfoImpl;
using TarnCtl::Network::PnicImpl;
using TarnCtl::Network::RoutingInfoImpl;

namespace {

constexpr const char* DNS_FAILED = "Setting DNS failed: ";

bool Contains(const std::vector<std::string>& list, const std::string& name)
{
    return std::find(list.begin(), list.end(), name) != list.end();
}

std::string Joined(const std::vector<std::string>& names)
{
    std::string out;
    for (const auto& n : names)
        out += (out.empty() ? "" : " ") + n;
    return out;
}

std::vector<std::string> SuffixEntries(const std::string& text)
{
    std::string spaced = text;
    std::replace(spaced.begin(), spaced.end(), ',', ' ');
    std::istringstream in(spaced);
    std::vector<std::string> out;
    for (std::string word; in >> word;)
        out.push_back(word);
    return out;
}

}  // namespace

NetworkApply::NetworkApply(const PendingNetwork& pending, const TarnNic& nic, Report report)
    : _pending(pending), _nic(nic), _report(std::move(report))
{
}

void NetworkApply::Failed(const std::string& text)
{
    Log::Write(LOG_ERR, "%s", text.c_str());
    if (_report)
        _report(text);
}

// Not HostCall: here the line logged is the one shown, prefix and detail.
template <typename Body>
bool NetworkApply::Group(const char* prefix, Body body)
{
    try {
        body();
        return true;
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Failed(prefix + ExceptionDetail(e.what()));
        return false;
    }
}

void NetworkApply::WriteToHost()
{
    Adapters();
    IpSettings();
    Gateways();
    Vlan();
    RenewLease();
    Hostname();
    NameServers();
    Suffixes();
}

void NetworkApply::Adapters()
{
    // A distributed switch is managed from outside the host.
    if (_pending._onDistributedSwitch || Uplinks::IsOnDistributedSwitch())
        return;
    Log::Write(LOG_INFO, "Setting adapters to %s", Joined(_pending._adapters).c_str());
    Uplinks::Failure failure;
    // The uplink operations have logged their failure already.
    auto fail = [&] {
        if (_report)
            _report(failure.BoxText());
    };
    // Taken from their old switch here, not when chosen, so that nothing
    // reaches the host before the operator confirms.
    for (const auto& pnic : _pending._takenFromOtherSwitches)
        if (!Uplinks::ReleaseFromOtherSwitch(_nic, pnic, &failure))
            fail();
    std::vector<std::string> current;
    if (!Uplinks::GetUplinks(_nic, current, &failure))
        return fail();
    // New uplinks go in before old ones come out, and the old ones stay when
    // an addition failed: the management network is never left without the
    // adapters that carried it.
    for (const auto& pnic : _pending._adapters)
        if (!Contains(current, pnic) && !Uplinks::AddUplink(_nic, pnic, &failure))
            return fail();
    for (const auto& pnic : current)
        if (!Contains(_pending._adapters, pnic) && !Uplinks::RemoveUplink(_nic, pnic, &failure))
            fail();
    int maxActive = 0;
    if (!Uplinks::GetMaxActiveUplinks(_nic, maxActive, &failure))
        fail();
    else if (maxActive != _pending._maxActiveUplinks &&
             !Uplinks::SetMaxActiveUplinks(_nic, _pending._maxActiveUplinks, &failure))
        fail();
    // The interface takes the address of its first adapter, when that changed.
    if (_pending._adapters.empty() || (!current.empty() && current.front() == _pending._adapters.front()))
        return;
    Group("Setting mac address of hwnic failed: ",
          [&] { _nic.SetMacAddress(PnicImpl(_pending._adapters.front()).GetMacAddress()); });
}

void NetworkApply::IpSettings()
{
    const std::string& name = _nic.GetName();
    IpConfig config = _pending._ipConfig;
    config.SetUseDhcp(config.GetUseDhcp(), config.GetDhcpDns());
    if (config.GetIpv4UseNone())
        Log::Write(LOG_INFO, "Setting ipv4 configuration to none on %s", name.c_str());
    else if (config.GetUseDhcp())
        Log::Write(LOG_INFO, "Switching to DHCP on %s", name.c_str());
    else
        Log::Write(LOG_INFO, "Setting ipv4 configuration to %s %s on %s",
                   config.GetIpv4Address().GetStringAddress().c_str(),
                   config.GetIpv4Netmask().GetStringAddress().c_str(), name.c_str());
    // With IPv6 kept on, both families go over in one change below.
    if (!_pending._ipv6Enabled)
        Group("Setting ip configuration failed: ", [&] { _nic.SetIpConfig(config); });
    Group("Setting ipv6 configuration failed: ", [&] { NetworkInfoImpl().SetTarnIpv6Enabled(_pending._ipv6Enabled); });
    if (!_pending._ipv6Enabled)
        return;
    Log::Write(LOG_INFO, "Setting ipv6 configuration");
    IpConfig ipv6 = _pending._ipv6IpConfig;
    ipv6.SetUseIpv6Dhcp(_pending._ipv6IpConfig.GetUseIpv6Dhcp());
    ipv6.SetUseIpv6RouterAdvertised(_pending._ipv6IpConfig.GetUseIpv6RouterAdvertised());
    Group("Setting ip/ipv6 configuration failed: ", [&] { _nic.SetIpConfigs(config, ipv6); });
}

void NetworkApply::Gateways()
{
    const IpConfig& config = _pending._ipConfig;
    // A lease brings its own gateway; only a static address keeps the one set here.
    if (!config.GetUseDhcp() && !config.GetIpv4UseNone())
        Group("Setting default gateway failed: ", [&] {
            RoutingInfoImpl routing;
            const Ipv4Address& gateway = config.GetIpv4Gateway();
            if (routing.GetTarnDefaultGateway().GetBinaryAddress() == gateway.GetBinaryAddress())
                return;
            Log::Write(LOG_INFO, "Setting default gateway to %s", gateway.GetStringAddress().c_str());
            routing.SetTarnDefaultGateway(gateway, true);
        });
    if (_pending._ipv6Enabled && _pending._ipv6GatewayChanged)
        Group("Setting default ipv6 gateway failed: ", [&] {
            const Ipv6Address& gateway = _pending._ipv6IpConfig.GetIpv6Gateway();
            Log::Write(LOG_INFO, "Setting default ipv6 gateway to %s", gateway.GetStringAddress().c_str());
            RoutingInfoImpl().SetIpv6TarnDefaultGateway(gateway);
        });
}

void NetworkApply::Vlan()
{
    if (_pending._onDistributedSwitch)
        return;
    Uplinks::Failure failure;
    int current = 0;
    if (Uplinks::GetVlanId(_nic, current, &failure) && current == _pending._vlanId)
        return;
    if (failure.message.empty() && Uplinks::SetVlanId(_nic, _pending._vlanId, &failure)) {
        Log::Write(LOG_INFO, "Changed vlan, restarting management interface");
        _pathChanged = true;
        return;
    }
    if (_report)
        _report(failure.BoxText());
}

void NetworkApply::RenewLease()
{
    // Renewed after the VLAN changed, not before: a lease asked for on the
    // old VLAN would be for a network the interface no longer sits on.
    // Handing a DHCP configuration over above already asked for a lease.
    if (!_pending._ipConfig.GetUseDhcp() || !_pathChanged)
        return;
    Log::Write(LOG_INFO, "Renew DHCP lease on %s", _nic.GetName().c_str());
    Group("Setting ip configuration failed: ", [&] { _nic.RenewDhcpLease(); });
}

bool NetworkApply::DnsFromDhcp() const
{
    return _pending._ipConfig.GetUseDhcp() && _pending._ipConfig.GetDhcpDns();
}

void NetworkApply::Hostname()
{
    // With DNS from DHCP the lease names the host; pinning the old name by
    // hand would stop the lease from doing so.
    if (DnsFromDhcp())
        return;
    Log::Write(LOG_INFO, "Setting hostname to %s", _pending._hostname.c_str());
    Group(DNS_FAILED, [&] {
        DnsConfigImpl dns;
        // A full name brings its domain; a short one keeps the host's domain
        // rather than losing it.
        if (_pending._hostname.find('.') != std::string::npos)
            dns.SetHostname(_pending._hostname, true);
        else
            dns.SetFqdn(_pending._hostname, true, dns.GetDomain());
    });
}

void NetworkApply::NameServers()
{
    if (DnsFromDhcp())
        return;
    std::vector<const IpAddress*> servers;
    for (const IpAddress* s : {_pending._primaryDns.get(), _pending._alternateDns.get()})
        if (s && (s->IsIpv6() || static_cast<const Ipv4Address*>(s)->GetBinaryAddress() != 0))
            servers.push_back(s);
    std::string text;
    for (const IpAddress* s : servers)
        text += (text.empty() ? "" : " ") + s->GetStringAddress();
    Log::Write(LOG_INFO, "Setting nameservers to %s", text.c_str());
    Group(DNS_FAILED, [&] {
        DnsConfigImpl dns;
        dns.RemoveNameServers();
        for (const IpAddress* s : servers)
            dns.AddNameServer(*s);
    });
}

void NetworkApply::Suffixes()
{
    Log::Write(LOG_INFO, "Setting suffixes to %s", _pending._suffixes.c_str());
    Group(DNS_FAILED, [&] {
        DnsConfigImpl dns;
        dns.SetSearchDomainsString(_pending._suffixes);
        for (const auto& entry : SuffixEntries(_pending._suffixes))
            dns.AddSearchDomain(entry);
        dns.SaveConfig();
    });
}

void ApplyNetworkChanges(Frame* parent, const PendingNetwork& pending, const TarnNic& nic)
{
    NetworkApply apply(pending, nic, [parent](const std::string& text) {
        MessageDialog box(parent, TextId::EnableManagementNetworkError, Markup::Literal(text));
        Frame::Run(&box);
    });
    apply.WriteToHost();
    if (pending.Ipv6Switched()) {
        RebootConfirmDialog reboot(parent, true);
        Frame::Run(&reboot);
    }
    RefreshInternalServices();
}

}  // namespace Tolm

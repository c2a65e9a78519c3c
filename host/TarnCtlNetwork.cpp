#include "host/TarnCtlNetwork.h"

#include "host/Backend.h"
#include "host/HostCtlException.h"

#include <sstream>

namespace TarnCtl::Network {

using HostCtl::Lib::HostCtlException;
using Tolm::Host::Use;

void NetworkInfoImpl::UpdateManagementInterface() { Use("UpdateManagementInterface")->UpdateManagementInterface(); }

std::unique_ptr<TarnNic> NetworkInfoImpl::GetManagementInterface()
{
    auto name = Use("GetManagementInterface")->GetManagementInterface();
    return name ? std::make_unique<TarnNic>(*name) : nullptr;
}

std::vector<std::unique_ptr<TarnNic>> NetworkInfoImpl::GetTarnNics()
{
    std::vector<std::unique_ptr<TarnNic>> out;
    for (const auto& name : Use("GetTarnNics")->GetKernelNicNames())
        out.push_back(std::make_unique<TarnNic>(name));
    return out;
}

std::vector<Pnic> NetworkInfoImpl::GetPnics() { return Use("GetPnics")->GetPnics(); }
bool NetworkInfoImpl::IsTarnIpv6Enabled() { return Use("IsTarnIpv6Enabled")->IsIpv6Enabled(); }
bool NetworkInfoImpl::IsTarnIpv6EnabledAfterRestart()
{
    return Use("IsTarnIpv6EnabledAfterRestart")->IsIpv6EnabledAfterRestart();
}
void NetworkInfoImpl::SetTarnIpv6Enabled(bool enabled) { Use("SetTarnIpv6Enabled")->SetIpv6Enabled(enabled); }
std::vector<VirtualSwitch> NetworkInfoImpl::GetVirtualSwitches() { return Use("GetVirtualSwitches")->GetVirtualSwitches(); }
std::vector<Dlswitch> NetworkInfoImpl::GetDlswitches() { return Use("GetDlswitches")->GetDlswitches(); }

Ipv4Address RoutingInfoImpl::GetTarnDefaultGateway() { return Use("GetTarnDefaultGateway")->GetDefaultGateway(_stack); }
void RoutingInfoImpl::SetTarnDefaultGateway(const Ipv4Address& gateway, bool)
{
    Use("SetTarnDefaultGateway")->SetDefaultGateway(_stack, gateway);
}
Ipv6Address RoutingInfoImpl::GetIpv6TarnDefaultGateway()
{
    return Use("GetIpv6TarnDefaultGateway")->GetIpv6DefaultGateway(_stack);
}
void RoutingInfoImpl::SetIpv6TarnDefaultGateway(const Ipv6Address& gateway)
{
    Use("SetIpv6TarnDefaultGateway")->SetIpv6DefaultGateway(_stack, gateway);
}

std::string DnsConfigImpl::GetHostname() { return Use("GetHostname")->GetDns(_stack).hostname; }
std::string DnsConfigImpl::GetDomain() { return Use("GetDomain")->GetDns(_stack).domain; }

void DnsConfigImpl::SetHostname(const std::string& name, bool userSet)
{
    auto call = Use("SetHostname");
    auto dot = name.find('.');
    if (dot == std::string::npos)
        call->SetHostname(_stack, name, userSet, std::nullopt);
    else
        call->SetHostname(_stack, name.substr(0, dot), userSet, name.substr(dot + 1));
}

void DnsConfigImpl::SetFqdn(const std::string& name, bool userSet, const std::string& domain)
{
    auto dot = name.find('.');
    Use("SetFqdn")->SetHostname(_stack, name.substr(0, dot), userSet, domain);
}

void DnsConfigImpl::SetDomain(const std::string& domain) { Use("SetDomain")->SetDomain(_stack, domain); }
std::vector<Ipv4Address> DnsConfigImpl::GetNameServers() { return Use("GetNameServers")->GetDns(_stack).nameServers; }
std::vector<Ipv6Address> DnsConfigImpl::GetIpv6NameServers()
{
    return Use("GetIpv6NameServers")->GetDns(_stack).ipv6NameServers;
}
void DnsConfigImpl::RemoveNameServers() { Use("RemoveNameServers")->RemoveNameServers(_stack); }
void DnsConfigImpl::AddNameServer(const IpAddress& server) { Use("AddNameServer")->AddNameServer(_stack, server); }
std::vector<std::string> DnsConfigImpl::GetSearchDomains() { return Use("GetSearchDomains")->GetDns(_stack).searchDomains; }

void DnsConfigImpl::SetSearchDomainsString(const std::string& text)
{
    std::string spaced = text;
    for (char& c : spaced)
        if (c == ',' || c == '\t')
            c = ' ';
    std::istringstream in(spaced);
    std::vector<std::string> domains;
    for (std::string word; in >> word;)
        domains.push_back(word);
    Use("SetSearchDomainsString")->SetSearchDomains(_stack, domains);
}

void DnsConfigImpl::AddSearchDomain(const std::string& domain) { Use("AddSearchDomain")->AddSearchDomain(_stack, domain); }
void DnsConfigImpl::SaveConfig() { Use("SaveConfig")->SaveDnsConfig(_stack); }
int DnsConfigImpl::ResolveHostname(const std::string& name) { return Use("ResolveHostname")->ResolveHostname(name); }

Pnic PnicImpl::Get()
{
    for (auto& p : Use("GetPnic")->GetPnics())
        if (p.name == _name)
            return p;
    throw HostCtlException("Physical nic " + _name + " not found");
}

MacAddress PnicImpl::GetMacAddress()
{
    Tolm::Host::Operation operation("GetMacAddress");
    return Get().mac;
}

std::optional<PciDevice> PnicImpl::GetPciDevice()
{
    Tolm::Host::Operation operation("GetPciDevice");
    return Get().pci;
}

bool PnicImpl::IsLinkUp()
{
    Tolm::Host::Operation operation("IsLinkUp");
    return Get().linkUp;
}

VirtualSwitch VirtualSwitchImpl::Get()
{
    for (auto& s : Use("GetVirtualSwitch")->GetVirtualSwitches())
        if (s.name == _name)
            return s;
    throw HostCtlException("Virtual switch " + _name + " not found");
}

std::vector<std::string> VirtualSwitchImpl::GetUplinks()
{
    Tolm::Host::Operation operation("GetUplinks");
    return Get().uplinks;
}

NicTeamingPolicy VirtualSwitchImpl::GetTeamingPolicy()
{
    Tolm::Host::Operation operation("GetTeamingPolicy");
    return Get().teaming;
}

void VirtualSwitchImpl::AddUplink(const std::string& pnic) { Use("AddUplink")->AddUplink(_name, pnic); }
void VirtualSwitchImpl::RemoveUplink(const std::string& pnic) { Use("RemoveUplink")->RemoveUplink(_name, pnic); }
void VirtualSwitchImpl::SetMaxActiveUplinks(int count) { Use("SetMaxActiveUplinks")->SetMaxActiveUplinks(_name, count); }

int VirtualSwitchImpl::GetVlanId(const std::string& portGroup)
{
    Tolm::Host::Operation operation("GetVlanId");
    for (const auto& pg : Get().portGroups)
        if (pg.name == portGroup)
            return pg.vlanId;
    throw HostCtlException("Port group " + portGroup + " not found on " + _name);
}

void VirtualSwitchImpl::SetVlanId(const std::string& portGroup, int vlanId)
{
    Use("SetVlanId")->SetVlanId(_name, false, portGroup, vlanId);
}

Dlswitch DlswitchImpl::Get()
{
    for (auto& d : Use("GetDlswitch")->GetDlswitches())
        if (d.name == _name)
            return d;
    throw HostCtlException("Dlswitch " + _name + " not found");
}

std::vector<DlswitchUplinkPort> DlswitchImpl::GetUplinkPorts()
{
    Tolm::Host::Operation operation("GetUplinkPorts");
    return Get().uplinkPorts;
}

std::vector<std::string> DlswitchImpl::GetUsedUplinks()
{
    Tolm::Host::Operation operation("GetUsedUplinks");
    std::vector<std::string> out;
    for (const auto& port : Get().uplinkPorts)
        if (!port.pnic.empty())
            out.push_back(port.pnic);
    return out;
}

NicTeamingPolicy DlswitchImpl::GetTeamingPolicy()
{
    Tolm::Host::Operation operation("GetTeamingPolicy");
    return Get().teaming;
}

int DlswitchImpl::GetVlanId(const std::string& portGroup)
{
    Tolm::Host::Operation operation("GetVlanId");
    for (const auto& pg : Get().portGroups)
        if (pg.name == portGroup)
            return pg.vlanId;
    throw HostCtlException("Port group " + portGroup + " not found on " + _name);
}

void DlswitchImpl::SetVlanId(const std::string& portGroup, int vlanId)
{
    Use("SetVlanId")->SetVlanId(_name, true, portGroup, vlanId);
}

}  // namespace TarnCtl::Network

#include "host/TarnNic.h"

#include "host/Backend.h"

namespace HostCtl::Network {

using Tolm::Host::Use;

IpConfig TarnNic::GetIpConfig() const { return Use("GetIpConfig")->GetIpConfig(_name); }
IpConfig TarnNic::GetIpv6Config() const { return Use("GetIpv6Config")->GetIpConfig(_name); }

void TarnNic::SetIpConfig(const IpConfig& config)
{
    Use("SetIpConfig")->SetIpConfig(_name, config, Tolm::Host::IPV4_FAMILY);
}

void TarnNic::SetIpv6Config(const IpConfig& config)
{
    Use("SetIpv6Config")->SetIpConfig(_name, config, Tolm::Host::IPV6_FAMILY);
}

void TarnNic::SetIpConfigs(const IpConfig& ipv4, const IpConfig& ipv6)
{
    // One configuration carrying each family's side, handed over at once.
    IpConfig both = ipv4;
    both.SetUseIpv6Dhcp(ipv6.GetUseIpv6Dhcp());
    both.SetUseIpv6RouterAdvertised(ipv6.GetUseIpv6RouterAdvertised());
    both.ClearIpv6Networks();
    for (const auto& n : ipv6.GetIpv6Network())
        both.AddIpv6Network(n);
    Use("SetIpConfigs")->SetIpConfig(_name, both, Tolm::Host::BOTH_FAMILIES);
}

MacAddress TarnNic::GetMacAddress() const { return Use("GetMacAddress")->GetKernelNic(_name).mac; }
void TarnNic::SetMacAddress(const MacAddress& mac) { Use("SetMacAddress")->SetKernelNicMac(_name, mac); }

ConnectionPoint TarnNic::GetConnectionPoint() const
{
    return Use("GetConnectionPoint")->GetKernelNic(_name).connection;
}

int TarnNic::GetConnecteeType() const { return Use("GetConnecteeType")->GetKernelNic(_name).connection.connecteeType; }
std::string TarnNic::GetPortGroup() const { return Use("GetPortGroup")->GetKernelNic(_name).connection.portGroup; }
bool TarnNic::IsUp() const { return Use("IsUp")->GetKernelNic(_name).up; }
bool TarnNic::IsUsable() const { return Use("IsUsable")->GetKernelNic(_name).usable; }
bool TarnNic::IsDhcpLookupFailed() const { return Use("IsDhcpLookupFailed")->GetKernelNic(_name).dhcpFailed; }

void TarnNic::Stop() { Use("Stop")->StopKernelNic(_name); }
void TarnNic::Start() { Use("Start")->StartKernelNic(_name); }
void TarnNic::Refresh() { Use("Refresh")->GetKernelNic(_name); }
void TarnNic::RenewDhcpLease() { Use("RenewDhcpLease")->RenewDhcpLease(_name); }

}  // namespace HostCtl::Network

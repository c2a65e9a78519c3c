// Rules the simulated host enforces on its network. DHCP leases and the IPv6
// switch taking effect at the restart are read end to end in NetworkTest.
#include "HostRoot.h"

#include "host/HostCtlException.h"
#include "host/TarnCtl.h"

namespace Tolm::Test {
namespace {

using namespace TarnCtl::Network;
using HostCtl::Lib::HostCtlException;

std::unique_ptr<TarnNic> Management()
{
    NetworkInfoImpl info;
    info.UpdateManagementInterface();
    auto nic = info.GetManagementInterface();
    EXPECT_TRUE(nic);
    return nic;
}

TEST(ManagementInterface, FollowsTheTaggedInterfaceWhenItsNameIsGone)
{
    HostRoot root;
    root.State().Update([](nlohmann::json& s) {
        auto nic = s["network"]["kernelNics"][0];
        nic["name"] = "tarn1";
        s["network"]["kernelNics"].push_back(nic);
        s["network"]["kernelNics"][0]["management"] = false;
        s["network"]["managementInterface"] = "tarn7";
    });
    NetworkInfoImpl info;
    EXPECT_FALSE(info.GetManagementInterface());  // names a missing interface
    info.UpdateManagementInterface();
    auto nic = info.GetManagementInterface();
    ASSERT_TRUE(nic);
    EXPECT_EQ("tarn1", nic->GetName());

    root.Set("/network/kernelNics", nlohmann::json::array());
    info.UpdateManagementInterface();
    EXPECT_FALSE(info.GetManagementInterface());
    EXPECT_THROW(nic->Refresh(), HostCtl::Lib::HostCtlException);
}

TEST(NetworkRules, StaticConfigurationIsCheckedAndKept)
{
    HostRoot root;
    auto nic = Management();
    IpConfig c;
    c.SetIpv4Address(Ipv4Address("10.0.0.5"));
    c.SetIpv4Netmask(Ipv4Address("255.0.255.0"));
    EXPECT_THROW(nic->SetIpConfig(c), HostCtlException);
    c.SetIpv4Netmask(Ipv4Address("255.255.0.0"));
    nic->SetIpConfig(c);
    IpConfig got = nic->GetIpConfig();
    EXPECT_FALSE(got.GetUseDhcp());
    EXPECT_EQ("10.0.0.5", got.GetIpv4Address().GetStringAddress());
    EXPECT_THROW(nic->RenewDhcpLease(), HostCtlException);
    EXPECT_THROW(TarnNic("tarn9").GetIpConfig(), HostCtlException);
}

TEST(NetworkRules, Ipv6StaticAndDynamicAddresses)
{
    HostRoot root;
    auto nic = Management();
    IpConfig c = nic->GetIpv6Config();
    c.AddIpv6Network(Ipv6Network("fe80::5/64"));
    EXPECT_THROW(nic->SetIpv6Config(c), HostCtlException);

    c = nic->GetIpv6Config();
    c.AddIpv6Network(Ipv6Network("2001:db8::10/64"));
    c.SetUseIpv6RouterAdvertised(true);
    nic->SetIpv6Config(c);
    int statics = 0, autoconf = 0, linkLocal = 0;
    for (const auto& n : nic->GetIpConfig().GetIpv6Network()) {
        statics += n.GetIpv6AddressType() == IPV6_TYPE_STATIC;
        autoconf += n.GetIpv6AddressType() == IPV6_TYPE_AUTOCONF && n.GetIpv6Scope() == IPV6_SCOPE_GLOBAL;
        linkLocal += n.GetIpv6Scope() == IPV6_SCOPE_LINK_LOCAL;
    }
    EXPECT_EQ(1, statics);
    EXPECT_EQ(1, autoconf);  // prefix plus the interface identifier
    EXPECT_EQ(1, linkLocal);
}

TEST(NetworkRules, AnAdapterServesOneSwitch)
{
    HostRoot root;
    VirtualSwitchImpl sw("switch0");
    EXPECT_THROW(sw.AddUplink("hwnic2"), HostCtlException);  // on switch1
    EXPECT_THROW(sw.AddUplink("hwnic7"), HostCtlException);  // no such adapter
    sw.AddUplink("hwnic3");
    sw.RemoveUplink("hwnic0");
    EXPECT_EQ((std::vector<std::string>{"hwnic1", "hwnic3"}), sw.GetTeamingPolicy().GetUplinkOrder());
    EXPECT_THROW(sw.RemoveUplink("hwnic0"), HostCtlException);

    EXPECT_THROW(sw.SetVlanId("Management Network", 4096), HostCtlException);
    sw.SetVlanId("Management Network", 4095);
    EXPECT_EQ(4095, sw.GetVlanId("Management Network"));
    EXPECT_TRUE(Management()->IsUsable());
}

TEST(NetworkRules, DnsSettings)
{
    HostRoot root;
    DnsConfigImpl dns;
    dns.SetSearchDomainsString("a.example, b.example  c.example,");
    dns.AddSearchDomain("b.example");
    dns.AddSearchDomain("d.example");
    dns.SaveConfig();
    EXPECT_EQ((std::vector<std::string>{"a.example", "b.example", "c.example", "d.example"}), dns.GetSearchDomains());

    dns.RemoveNameServers();
    dns.AddNameServer(Ipv6Address("2001:db8::53"));
    dns.AddNameServer(Ipv4Address("10.1.1.1"));
    EXPECT_EQ(1u, dns.GetNameServers().size());
    EXPECT_EQ("2001:db8::53", dns.GetIpv6NameServers().at(0).GetStringAddress());

    dns.SetHostname("node9.corp.example");
    EXPECT_EQ("node9", dns.GetHostname());
    EXPECT_EQ("corp.example", dns.GetDomain());
    EXPECT_EQ("node9", root.Read()["network"]["dns"]["hostname"]);
    EXPECT_THROW(DnsConfigImpl("otherStack").GetHostname(), HostCtlException);
}

}  // namespace
}  // namespace Tolm::Test

// Rules the simulated host enforces on its network. DHCP leases, the IPv6
// switch taking effect at the restart and the DNS settings are read end to
// end in NetworkTest, host names with a domain in NetworkApplyTest.
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

}  // namespace
}  // namespace Tolm::Test

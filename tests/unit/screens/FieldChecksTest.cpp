// What the network dialogs accept on Enter, and which field they blame.
#include "screens/network/FieldChecks.h"

#include <gtest/gtest.h>

using namespace Tolm;
using HostCtl::Network::IpConfig;
using HostCtl::Network::Ipv6Network;

namespace {

// The field a check blamed, -1 when it passed.
int Blamed(const std::optional<FieldError>& error) { return error ? error->field : -1; }

}  // namespace

TEST(FieldChecksTest, VlanIdRangeAndEmptyRow)
{
    EXPECT_EQ(ParseVlanId(""), 0);
    EXPECT_EQ(ParseVlanId("1"), 1);
    EXPECT_EQ(ParseVlanId("0042"), 42);
    EXPECT_EQ(ParseVlanId("4094"), 4094);
    EXPECT_EQ(ParseVlanId("4095"), VLAN_ALL);
    for (const char* refused : {"0", "00000", "4096", "99999", "99999999999999999999999", "-1"})
        EXPECT_EQ(ParseVlanId(refused), std::nullopt) << refused;
}

TEST(FieldChecksTest, Ipv4StaticBlamesTheFirstBadRowInOrder)
{
    EXPECT_EQ(Blamed(CheckIpv4Static("10.0.0.5", "255.255.255.0", "10.0.0.1")), -1);
    // Everything bad: the address is named first.
    const auto all = CheckIpv4Static("10.0.0", "255.0.255.0", "");
    ASSERT_TRUE(all);
    EXPECT_EQ(all->field, 0);
    EXPECT_EQ(all->title, TextId::InvalidIPAddress);
    // A well-formed address that is no netmask, and the zero mask.
    for (const char* mask : {"255.0.255.0", "0.0.0.0", "255.255.255.256", "255.255"}) {
        const auto error = CheckIpv4Static("10.0.0.5", mask, "10.0.0.1");
        ASSERT_TRUE(error) << mask;
        EXPECT_EQ(error->field, 1);
        EXPECT_EQ(error->text, TextId::PleaseReenterValidSubnet);
    }
    // The gateway is required.
    const auto gateway = CheckIpv4Static("10.0.0.5", "255.255.255.0", "");
    ASSERT_TRUE(gateway);
    EXPECT_EQ(gateway->field, 2);
    EXPECT_EQ(gateway->text, TextId::PleaseReenterValidGateway);
    EXPECT_EQ(Blamed(CheckIpv4Static("10.0.0.5", "255.255.255.0", "10.0.0.1.")), 2);
}

TEST(FieldChecksTest, Ipv6StaticNetworksAndOnlyTheExactFe80Prefix)
{
    EXPECT_EQ(Blamed(CheckIpv6Static({"", "", ""}, "")), -1);
    EXPECT_EQ(Blamed(CheckIpv6Static({"2001:db8::5/64", "", "fe81::1/64"}, "2001:db8::1")), -1);
    // fe80::/10 reaches beyond fe80, but only fe80 itself is refused.
    EXPECT_EQ(Blamed(CheckIpv6Static({"febf::1/64", "", ""}, "")), -1);
    const auto linkLocal = CheckIpv6Static({"2001:db8::5/64", "fe80::1/64", ""}, "");
    ASSERT_TRUE(linkLocal);
    EXPECT_EQ(linkLocal->field, 1);
    EXPECT_EQ(linkLocal->title, TextId::InvalidScope);
    // Rows are checked in order; an empty one in between is skipped.
    for (const char* bad : {"2001:db8::5", "2001:db8::5/0", "2001:db8::5/129", "2001:db8::5%1/64", "zz::1/64"}) {
        const auto error = CheckIpv6Static({"", "2001:db8::7/64", bad}, "fe80::1");
        ASSERT_TRUE(error) << bad;
        EXPECT_EQ(error->field, 2) << bad;
        EXPECT_EQ(error->text, TextId::PleaseReenterValidIPv6Network);
    }
    // The gateway comes last: a bad one, and a link-local one.
    const auto gateway = CheckIpv6Static({"2001:db8::5/64", "", ""}, "2001:db8::/64");
    ASSERT_TRUE(gateway);
    EXPECT_EQ(gateway->field, 3);
    EXPECT_EQ(gateway->text, TextId::PleaseReenterValidIPv6Gateway);
    const auto localGateway = CheckIpv6Static({"", "", ""}, "fe80::1%vmk0");
    ASSERT_TRUE(localGateway);
    EXPECT_EQ(localGateway->text, TextId::LinkLocalAddressesNot);
}

TEST(FieldChecksTest, StaticNetworksFillThreeRowsAndKeepTheRest)
{
    IpConfig config;
    config.AddIpv6Network(Ipv6Network("fe80::2/64", HostCtl::Network::IPV6_TYPE_STATIC,
                                      HostCtl::Network::IPV6_SCOPE_LINK_LOCAL));
    config.AddIpv6Network(Ipv6Network("2001:db8::1/64"));
    config.AddIpv6Network(Ipv6Network("2001:db8::99/64", HostCtl::Network::IPV6_TYPE_DHCP));
    config.AddIpv6Network(Ipv6Network("2001:db8::2/64"));
    config.AddIpv6Network(Ipv6Network("2001:db8::3/48"));
    config.AddIpv6Network(Ipv6Network("2001:db8::4/64"));

    EXPECT_EQ(TakeStaticNetworks(config),
              (std::vector<std::string>{"2001:db8::1/64", "2001:db8::2/64", "2001:db8::3/48"}));
    std::vector<std::string> kept;
    for (const auto& network : config.GetIpv6Network()) kept.push_back(network.GetStringAddress());
    EXPECT_EQ(kept, (std::vector<std::string>{"fe80::2/64", "2001:db8::99/64", "2001:db8::4/64"}));
}

TEST(FieldChecksTest, DnsServersEitherFamilyIpv6First)
{
    EXPECT_EQ(Blamed(CheckDnsServers("", "")), -1);
    EXPECT_EQ(Blamed(CheckDnsServers("10.0.0.53", "2001:db8::53")), -1);
    EXPECT_EQ(Blamed(CheckDnsServers("10.0.0.530", "")), 0);
    const auto alternate = CheckDnsServers("", "1.2.3");
    ASSERT_TRUE(alternate);
    EXPECT_EQ(alternate->field, 1);
    EXPECT_EQ(alternate->title, TextId::InvalidDNSServerAddress);

    EXPECT_EQ(DnsServer(""), nullptr);
    const auto v4 = DnsServer("10.0.0.53");
    ASSERT_TRUE(v4);
    EXPECT_FALSE(v4->IsIpv6());
    EXPECT_EQ(v4->GetStringAddress(), "10.0.0.53");
    // Mapped IPv4 text is valid IPv6 and kept as such.
    const auto mapped = DnsServer("::ffff:10.0.0.53");
    ASSERT_TRUE(mapped);
    EXPECT_TRUE(mapped->IsIpv6());
}

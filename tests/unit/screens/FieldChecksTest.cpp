// What the network dialogs accept on Enter, and which field they blame.
#include "screens/network/FieldChecks.h"

#include <gtest/gtest.h>

using namespace Tolm;
using namespace HostCtl::Network;

namespace {

// The field and message of a refusal; {-1, 0} when the check passed.
std::pair<int, TextId> Blamed(const std::optional<FieldError>& error)
{
    return error ? std::pair{error->field, error->text} : std::pair{-1, TextId{}};
}

}  // namespace

TEST(FieldChecksTest, VlanIdRangeAndEmptyRow)
{
    EXPECT_EQ(ParseVlanId(""), 0);
    EXPECT_EQ(ParseVlanId("0042"), 42);
    EXPECT_EQ(ParseVlanId("4095"), VLAN_ALL);
    for (const char* refused : {"0", "00000", "4096", "99999999999999999999999", "-1"})
        EXPECT_EQ(ParseVlanId(refused), std::nullopt) << refused;
}

TEST(FieldChecksTest, Ipv4StaticBlamesTheFirstBadRowInOrder)
{
    EXPECT_EQ(Blamed(CheckIpv4Static("10.0.0.5", "255.255.255.0", "10.0.0.1")).first, -1);
    EXPECT_EQ(Blamed(CheckIpv4Static("10.0.0", "255.0.255.0", "")),
              std::pair(0, TextId::PleaseReenterValidIPv4Address));
    for (const char* mask : {"255.0.255.0", "0.0.0.0", "255.255.255.256", "255.255"})
        EXPECT_EQ(Blamed(CheckIpv4Static("10.0.0.5", mask, "")), std::pair(1, TextId::PleaseReenterValidSubnet))
            << mask;
    // The gateway is required.
    EXPECT_EQ(Blamed(CheckIpv4Static("10.0.0.5", "255.255.255.0", "")),
              std::pair(2, TextId::PleaseReenterValidGateway));
}

TEST(FieldChecksTest, Ipv6StaticNetworksAndOnlyTheExactFe80Prefix)
{
    EXPECT_EQ(Blamed(CheckIpv6Static({"", "", ""}, "")).first, -1);
    // fe80::/10 reaches up to febf, but only fe80 itself is refused.
    EXPECT_EQ(Blamed(CheckIpv6Static({"2001:db8::5/64", "febf::1/64", "fe81::1/64"}, "2001:db8::1")).first, -1);
    EXPECT_EQ(Blamed(CheckIpv6Static({"2001:db8::5/64", "fe80::1/64", ""}, "")),
              std::pair(1, TextId::CannotAddLinkLocal));
    // Rows in order, an empty one skipped, the gateway last.
    for (const char* bad : {"2001:db8::5", "2001:db8::5/0", "2001:db8::5/129", "2001:db8::5%1/64", "zz::1/64"})
        EXPECT_EQ(Blamed(CheckIpv6Static({"", "2001:db8::7/64", bad}, "x")),
                  std::pair(2, TextId::PleaseReenterValidIPv6Network))
            << bad;
    EXPECT_EQ(Blamed(CheckIpv6Static({"2001:db8::5/64", "", ""}, "2001:db8::/64")),
              std::pair(3, TextId::PleaseReenterValidIPv6Gateway));
    EXPECT_EQ(Blamed(CheckIpv6Static({"", "", ""}, "fe80::1%vmk0")), std::pair(3, TextId::LinkLocalAddressesNot));
}

TEST(FieldChecksTest, StaticNetworksFillThreeRowsAndKeepTheRest)
{
    IpConfig config;
    config.AddIpv6Network(Ipv6Network("fe80::2/64", IPV6_TYPE_STATIC, IPV6_SCOPE_LINK_LOCAL));
    // The same address also autoconfigured: that entry stays.
    config.AddIpv6Network(Ipv6Network("2001:db8::1/64", IPV6_TYPE_AUTOCONF));
    for (const char* network : {"2001:db8::1/64", "2001:db8::2/64", "2001:db8::3/48", "2001:db8::4/64"})
        config.AddIpv6Network(Ipv6Network(network));
    config.AddIpv6Network(Ipv6Network("2001:db8::99/64", IPV6_TYPE_DHCP));

    EXPECT_EQ(TakeStaticNetworks(config),
              (std::vector<std::string>{"2001:db8::1/64", "2001:db8::2/64", "2001:db8::3/48"}));
    std::vector<std::string> kept;
    for (const auto& network : config.GetIpv6Network()) kept.push_back(network.GetStringAddress());
    EXPECT_EQ(kept, (std::vector<std::string>{"fe80::2/64", "2001:db8::1/64", "2001:db8::4/64", "2001:db8::99/64"}));
}

TEST(FieldChecksTest, DnsServersEitherFamilyIpv6First)
{
    EXPECT_EQ(Blamed(CheckDnsServers("", "")).first, -1);
    EXPECT_EQ(Blamed(CheckDnsServers("10.0.0.53", "2001:db8::53")).first, -1);
    EXPECT_EQ(Blamed(CheckDnsServers("10.0.0.530", "")).first, 0);
    EXPECT_EQ(Blamed(CheckDnsServers("", "1.2.3")), std::pair(1, TextId::PleaseReenterValidDNSServer));
    EXPECT_EQ(DnsServer(""), nullptr);
    EXPECT_FALSE(DnsServer("10.0.0.53")->IsIpv6());
    EXPECT_TRUE(DnsServer("::ffff:10.0.0.53")->IsIpv6());
}

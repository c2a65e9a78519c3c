// The management network screen's rules: which DNS servers it shows, how it
// tells a dialog's answer from what is pending, and what it shows of a host
// failure. The panels' IPv6 list and suffixes are read in NetworkTest.
#include <gtest/gtest.h>

#include "screens/network/PendingNetwork.h"

namespace Tolm {
namespace {

using namespace HostCtl::Network;

std::string Shown(const std::unique_ptr<IpAddress>& a)
{
    return a ? (a->IsIpv6() ? "v6 " : "v4 ") + a->GetStringAddress() : "none";
}

TEST(NetworkRules, DnsPairComesFromBothFamilies)
{
    const Ipv4Address a("10.0.0.1"), b("10.0.0.2");
    const Ipv6Address x("fd00::1"), y("fd00::2");
    struct Case {
        std::vector<Ipv4Address> v4;
        std::vector<Ipv6Address> v6;
        const char* primary;
        const char* alternate;
    } cases[] = {
        {{}, {}, "none", "none"},
        {{a}, {}, "v4 10.0.0.1", "none"},
        {{a, b}, {}, "v4 10.0.0.1", "v4 10.0.0.2"},
        {{a, b}, {x}, "v4 10.0.0.1", "v6 fd00::1"},
        {{a}, {x, y}, "v4 10.0.0.1", "v6 fd00::1"},
        {{}, {x}, "v6 fd00::1", "none"},
        {{}, {x, y}, "v6 fd00::1", "v6 fd00::2"},
    };
    for (const auto& c : cases) {
        DnsPair pair = DeriveDnsServers(c.v4, c.v6);
        EXPECT_EQ(c.primary, Shown(pair.primary)) << c.v4.size() << " IPv4, " << c.v6.size() << " IPv6";
        EXPECT_EQ(c.alternate, Shown(pair.alternate)) << c.v4.size() << " IPv4, " << c.v6.size() << " IPv6";
    }
}

TEST(NetworkRules, DetailOfAHostFailure)
{
    EXPECT_EQ(" Address in use", ExceptionDetail("vim.fault.PlatformConfigFault: text = Address in use;"));
    // First "=", last ";".
    EXPECT_EQ(" a=b; c", ExceptionDetail("x = a=b; c;"));
    EXPECT_EQ("", ExceptionDetail("Physical nic hwnic9 not found"));
    EXPECT_EQ("", ExceptionDetail("key = value"));
    // Without "=" the detail starts at the beginning of the message.
    EXPECT_EQ("Disk full", ExceptionDetail("Disk full;"));
}

IpConfig Static(const char* address)
{
    IpConfig c;
    c.SetIpv4Address(Ipv4Address(address));
    c.SetIpv4Netmask(Ipv4Address("255.255.255.0"));
    c.SetIpv4Gateway(Ipv4Address("10.0.0.254"));
    return c;
}

TEST(PendingNetwork, Ipv4AnswersCountOnlyWhatIsInUse)
{
    PendingNetwork p;
    p._ipConfig = Static("10.0.0.5");
    EXPECT_FALSE(p.TakeIpv4(Static("10.0.0.5")));  // typed back to the old value
    EXPECT_FALSE(p._changed);

    IpConfig dhcp = Static("1.2.3.4");
    dhcp.SetUseDhcp(true);
    EXPECT_TRUE(p.TakeIpv4(dhcp));
    // Static values left in the rows do not matter while DHCP is chosen.
    dhcp.SetIpv4Address(Ipv4Address("9.9.9.9"));
    EXPECT_FALSE(p.TakeIpv4(dhcp));
    // Back to the values read: still a change from the first visit.
    EXPECT_TRUE(p.TakeIpv4(Static("10.0.0.5")));
    EXPECT_TRUE(p._changed);
    EXPECT_TRUE(p.TakeIpv4(Static("10.0.0.6")));
    EXPECT_EQ("10.0.0.6", p._ipConfig.GetIpv4Address().GetStringAddress());
}

TEST(PendingNetwork, Ipv6AnswersAndTheRestartQuestion)
{
    PendingNetwork p;
    p._ipv6IpConfig.AddIpv6Network(Ipv6Network(Ipv6Address("fe80::1"), 64, IPV6_TYPE_AUTOCONF, IPV6_SCOPE_LINK_LOCAL));
    p._ipv6IpConfig.AddIpv6Network(Ipv6Network(Ipv6Address("fd00::1"), 64));
    p._ipv6IpConfig.AddIpv6Network(Ipv6Network(Ipv6Address("fd00::2"), 64));

    // The dialog hands the networks back in another order: no change.
    IpConfig answer;
    answer.AddIpv6Network(Ipv6Network(Ipv6Address("fe80::1"), 64, IPV6_TYPE_AUTOCONF, IPV6_SCOPE_LINK_LOCAL));
    answer.AddIpv6Network(Ipv6Network(Ipv6Address("fd00::2"), 64));
    answer.AddIpv6Network(Ipv6Network(Ipv6Address("fd00::1"), 64));
    EXPECT_FALSE(p.TakeIpv6(true, answer));
    EXPECT_FALSE(p.NeedsConfirmation());

    // A static address edited alone is a change.
    answer.ClearIpv6Networks();
    answer.AddIpv6Network(Ipv6Network(Ipv6Address("fd00::9"), 64));
    EXPECT_TRUE(p.TakeIpv6(true, answer));
    EXPECT_FALSE(p._ipv6GatewayChanged);
    EXPECT_FALSE(p.Ipv6Switched());

    answer.SetIpv6Gateway(Ipv6Address("fd00::fe"));
    EXPECT_TRUE(p.TakeIpv6(true, answer));
    EXPECT_TRUE(p._ipv6GatewayChanged);
    EXPECT_EQ("fd00::fe", p._ipv6IpConfig.GetIpv6Gateway().GetStringAddress());

    // Switching off keeps the settings as they were and asks for a restart.
    PendingNetwork off;
    off._ipv6IpConfig.SetUseIpv6RouterAdvertised(true);
    IpConfig other;
    EXPECT_TRUE(off.TakeIpv6(false, other));
    EXPECT_TRUE(off.Ipv6Switched());
    EXPECT_TRUE(off._ipv6IpConfig.GetUseIpv6RouterAdvertised());
    EXPECT_TRUE(off.TakeIpv6(true, other));  // back on: no restart needed any more
    EXPECT_FALSE(off.Ipv6Switched());
}

TEST(PendingNetwork, AdaptersDnsAndSuffixes)
{
    PendingNetwork p;
    p._adapters = {"hwnic0", "hwnic1"};
    EXPECT_FALSE(p.TakeAdapters({"hwnic0", "hwnic1"}, 1, {}));
    EXPECT_TRUE(p.TakeAdapters({"hwnic1", "hwnic0"}, 1, {}));  // order matters
    EXPECT_TRUE(p.TakeAdapters({"hwnic1", "hwnic0"}, 2, {}));
    // Only adapters still chosen are taken from their switch.
    EXPECT_TRUE(p.TakeAdapters({"hwnic1", "hwnic2"}, 2, {"hwnic2", "hwnic3"}));
    EXPECT_EQ(std::vector<std::string>{"hwnic2"}, p._takenFromOtherSwitches);

    PendingNetwork d;
    d._primaryDns = std::make_unique<Ipv4Address>("10.0.0.1");
    d._hostname = "host1.example";
    const Ipv4Address same("10.0.0.1");
    const Ipv6Address v6("fd00::1");
    EXPECT_FALSE(d.TakeDns(false, &same, nullptr, "host1.example"));
    EXPECT_TRUE(d.TakeDns(false, &same, &v6, "host1.example"));
    EXPECT_TRUE(d._alternateDns->IsIpv6());
    EXPECT_TRUE(d.TakeDns(true, &same, &v6, "host1.example"));
    EXPECT_TRUE(d._ipConfig.GetDhcpDns());
    EXPECT_TRUE(d.TakeDns(true, &same, &v6, "host2"));

    PendingNetwork s;
    s._suffixes = "a.example, b.example";
    EXPECT_FALSE(s.TakeSuffixes("a.example, b.example"));
    EXPECT_TRUE(s.TakeSuffixes("a.example,b.example"));
}

}  // namespace
}  // namespace Tolm

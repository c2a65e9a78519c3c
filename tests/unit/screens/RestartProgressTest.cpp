// Which IPv6 networks the restart progress lists: static, not link-local, at
// most two and "   ..." unless the list holds exactly three.
#include <gtest/gtest.h>

#include "screens/netops/DoRestartNetworkDialog.h"
#include "host/HostCtlNetwork.h"

namespace Tolm {
namespace {

using namespace HostCtl::Network;

Ipv6Network Static(const std::string& address) { return Ipv6Network(address + "/64"); }
const Ipv6Network LINK_LOCAL("fe80::1/64", IPV6_TYPE_AUTOCONF, IPV6_SCOPE_LINK_LOCAL);
const Ipv6Network FROM_DHCP("2001:db8::99/128", IPV6_TYPE_DHCP);

std::string Lines(const std::vector<Ipv6Network>& networks)
{
    return DoRestartNetworkDialog::Ipv6Lines(networks, "IP:");
}

TEST(RestartProgress, Ipv6LinesFitTheBox)
{
    EXPECT_EQ(Lines({}), "");
    // Exactly three are shown whole, even when all are static.
    EXPECT_EQ(Lines({Static("2001:db8::1"), Static("2001:db8::2"), Static("2001:db8::3")}),
              "   IP: 2001:db8::1/64\n   IP: 2001:db8::2/64\n   IP: 2001:db8::3/64\n");
    // Link-local and dynamic networks neither show nor count.
    EXPECT_EQ(Lines({LINK_LOCAL, FROM_DHCP, Static("2001:db8::1"), Static("2001:db8::2")}),
              "   IP: 2001:db8::1/64\n   IP: 2001:db8::2/64\n");
    // Two shown and more listed: the line that says so, even if the rest
    // would not have been shown.
    EXPECT_EQ(Lines({Static("2001:db8::1"), Static("2001:db8::2"), LINK_LOCAL, FROM_DHCP}),
              "   IP: 2001:db8::1/64\n   IP: 2001:db8::2/64\n   ...\n");
    // Three with two link-local: only the static one.
    EXPECT_EQ(Lines({LINK_LOCAL, Static("2001:db8::1"), LINK_LOCAL}), "   IP: 2001:db8::1/64\n");
}

}  // namespace
}  // namespace Tolm

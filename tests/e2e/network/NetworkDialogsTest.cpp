// The management network's dialogs as an operator meets them: what each
// refuses on Enter, which field the message names and keeps, and the adapter
// list's marks (its row text and cuts are in AdapterRowsTest). Nothing
// reaches the host before the screen's confirmation.
#include <gtest/gtest.h>

#include <string>

#include "Steps.h"

namespace Tolm::E2E {
namespace {

constexpr const char* VLAN_LABEL = "VLAN ID (1-4094, or 4095 to access all VLANs):";
constexpr const char* IPV4_LEAD = "DHCP server. If it does not, the following";

// Logged in, on the management network screen.
bool OpenNetworkScreen(Console& tolm)
{
    return LogInToMenu(tolm) && OpenEntry(tolm, "Configure Management Network") && tolm.WaitForText("<Esc> Exit") &&
           Settle(tolm);
}

// Opens the dialog of the screen's `downs`-th selectable row, which shows `mark`.
bool OpenDialog(Console& tolm, int downs, std::string_view mark)
{
    // The screen redraws once a dialog has closed; keys sent before that are dropped.
    Settle(tolm);
    tolm.Press(Key::Up, 6);
    tolm.Press(Key::Down, downs);
    Settle(tolm);
    tolm.Press(Key::Enter);
    return tolm.WaitForText(mark) && Settle(tolm);
}

TEST(NetworkDialogs, VlanIdRefusedAcceptedAfterTheWarningOrCleared)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetworkScreen(tolm));
    ASSERT_TRUE(OpenDialog(tolm, 1, VLAN_LABEL));

    // Letters never enter; 0 is refused and stays as typed.
    tolm.Type("ab0x");
    ASSERT_TRUE(FieldShows(tolm, VLAN_LABEL, "0"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Dismiss(tolm, "Invalid VLAN ID", "Please reenter a valid VLAN ID (1-4095)."));
    EXPECT_TRUE(FieldShows(tolm, VLAN_LABEL, "0"));

    tolm.Press(Key::Backspace);
    tolm.Type("4096");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Dismiss(tolm, "Invalid VLAN ID", "(1-4095)"));
    EXPECT_TRUE(FieldShows(tolm, VLAN_LABEL, "4096"));

    // 4095 passes once the warning is read.
    tolm.Press(Key::Backspace);
    tolm.Type("5");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Dismiss(tolm, "Warning", "You entered a VLAN ID of 4095."));
    ASSERT_TRUE(tolm.WaitForTextGone(VLAN_LABEL));
    EXPECT_TRUE(tolm.WaitForText("4095"));

    // An emptied row is no VLAN.
    ASSERT_TRUE(OpenDialog(tolm, 1, VLAN_LABEL));
    EXPECT_TRUE(FieldShows(tolm, VLAN_LABEL, "4095"));
    tolm.Press(Key::Delete);
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone(VLAN_LABEL));
    EXPECT_TRUE(tolm.WaitForText("Not set"));
    EXPECT_EQ(tolm.State("/network/virtualSwitches/0/portGroups/0/vlanId"), 0);
}

TEST(NetworkDialogs, Ipv4StaticNamesTheBadNetmaskDynamicIgnoresTheRows)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetworkScreen(tolm));
    ASSERT_TRUE(OpenDialog(tolm, 2, IPV4_LEAD));

    // Subnet mask: a mask with a hole, and letters that do not enter.
    tolm.Press(Key::Down, 4);
    tolm.Type("255.0.255.0xyz");
    ASSERT_TRUE(FieldShows(tolm, "Subnet Mask", "255.0.255.0"));
    tolm.Press(Key::Down);  // Enter from the gateway row
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Dismiss(tolm, "Invalid subnet", "Please reenter a valid subnet (x.x.x.x)."));
    EXPECT_TRUE(FieldShows(tolm, "Subnet Mask", "255.0.255.0"));
    // The focus is on the mask: what is typed now replaces it.
    tolm.Type("255.255.0.0");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone(IPV4_LEAD));
    EXPECT_TRUE(tolm.WaitForText("Subnet Mask: 255.255.0.0"));

    // Dynamic: whatever the static rows hold is not checked.
    ASSERT_TRUE(OpenDialog(tolm, 2, IPV4_LEAD));
    tolm.Press(Key::Down, 3);
    tolm.Type("1.2");
    tolm.Press(Key::Up, 2);
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone(IPV4_LEAD));
    EXPECT_TRUE(tolm.WaitForText("Automatic"));
    EXPECT_FALSE(tolm.HasText("Invalid"));
    EXPECT_EQ(tolm.State("/network/kernelNics/0/ipv4/netmask"), "255.255.255.0");
}

TEST(NetworkDialogs, Ipv6RefusesOnlyTheExactLinkLocalPrefixDnsChecksOnlyTypedServers)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetworkScreen(tolm));
    ASSERT_TRUE(OpenDialog(tolm, 3, "Stateless Address Autoconfiguration"));
    tolm.Press(Key::Down, 4);
    tolm.Type("fe80::1/64");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Dismiss(tolm, "Invalid scope", "Cannot add a link-local address as static address."));
    EXPECT_TRUE(FieldShows(tolm, "Static address #1", "fe80::1/64"));
    tolm.Press(Key::Up);
    tolm.Press(Key::Down);
    tolm.Type("fe81::1/64");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone("Stateless Address Autoconfiguration"));
    EXPECT_TRUE(tolm.WaitForText("fe81::1/64"));

    // DNS server rows take hexadecimal digits, ":" and "." only; a bad
    // server is named unless DNS comes from DHCP.
    ASSERT_TRUE(OpenDialog(tolm, 4, "Obtain DNS server addresses"));
    tolm.Press(Key::Down, 3);
    tolm.Type("1.2.g3x");
    ASSERT_TRUE(FieldShows(tolm, "Alternate DNS Server", "1.2.3"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Dismiss(tolm, "Invalid DNS server address", "Please reenter a valid DNS server address (IP or IPv6)."));
    EXPECT_TRUE(FieldShows(tolm, "Alternate DNS Server", "1.2.3"));
    tolm.Press(Key::Up, 3);
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone("Obtain DNS server addresses"));
    EXPECT_TRUE(tolm.WaitForText("Automatic"));
    EXPECT_FALSE(tolm.HasText("Invalid"));
}

TEST(NetworkDialogs, AdapterListAsksBeforeTakingUsedAdapters)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetworkScreen(tolm));
    ASSERT_TRUE(OpenDialog(tolm, 0, "Hardware Label (MAC Address)"));

    const int used = RowOf(tolm, "hwnic2 ");
    ASSERT_GT(used, RowOf(tolm, "hwnic0 "));
    EXPECT_NE(tolm.Row(used).find("Connected (...)"), std::string::npos);

    // hwnic2 serves another switch: the warning first, Esc goes back with
    // the mark kept, the details name its switch.
    tolm.Press(Key::Down, used - RowOf(tolm, "hwnic0 "));
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Network Adapters: Warning") && Settle(tolm));
    tolm.SendEsc();
    ASSERT_TRUE(tolm.WaitForTextGone("Network Adapters: Warning"));
    EXPECT_TRUE(tolm.WaitForText("[X] hwnic2") && Settle(tolm));
    tolm.Type("d");
    ASSERT_TRUE(Dismiss(tolm, "Adapter Details", "Used By: switch1 (Storage Network)"));

    tolm.Press(Key::Enter);
    ASSERT_TRUE(Dismiss(tolm, "Network Adapters: Warning", "Remove these adapters from their current connections?"));
    ASSERT_TRUE(tolm.WaitForTextGone("Hardware Label (MAC Address)"));
    EXPECT_TRUE(tolm.WaitForText("hwnic2 (00:0c:29:3a:5b:12)"));
    EXPECT_EQ(tolm.State("/network/virtualSwitches/1/uplinks"), nlohmann::json::array({"hwnic2"}));
}

}  // namespace
}  // namespace Tolm::E2E

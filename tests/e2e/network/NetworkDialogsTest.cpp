// The management network's dialogs as an operator meets them: what each
// refuses on Enter, which field the message names and keeps, and the adapter
// list's cut names and marks. Nothing reaches the host before the screen's
// confirmation.
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
    if (!LogInToMenu(tolm)) return false;
    tolm.Press(Key::Down, 2);
    if (!ShowsEntry(tolm, "Configure Management Network")) return false;
    tolm.Press(Key::Enter);
    return tolm.WaitForText("<Esc> Exit") && Settle(tolm);
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

// The input row labelled `label` shows `value`.
bool Shows(Console& tolm, std::string_view label, const std::string& value)
{
    return tolm.WaitUntil(
        [&] {
            const auto at = tolm.FindText(label);
            return at && tolm.Row(at->row).find("[ " + value + " ") != std::string::npos;
        },
        std::string(label) + " showing " + value);
}

// A message box titled `title` came up; Enter dismisses it.
bool Refused(Console& tolm, std::string_view title, std::string_view text)
{
    if (!tolm.WaitForText(title) || !tolm.WaitForText(text) || !Settle(tolm)) return false;
    tolm.Press(Key::Enter);
    return tolm.WaitForTextGone(title) && Settle(tolm);
}

TEST(NetworkDialogs, VlanIdRefusedAcceptedAfterTheWarningOrCleared)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetworkScreen(tolm));
    ASSERT_TRUE(OpenDialog(tolm, 1, VLAN_LABEL));

    // Letters never enter; 0 is refused and stays as typed.
    tolm.Type("ab0x");
    ASSERT_TRUE(Shows(tolm, VLAN_LABEL, "0"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Refused(tolm, "Invalid VLAN ID", "Please reenter a valid VLAN ID (1-4095)."));
    EXPECT_TRUE(Shows(tolm, VLAN_LABEL, "0"));

    tolm.Press(Key::Backspace);
    tolm.Type("4096");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Refused(tolm, "Invalid VLAN ID", "(1-4095)"));
    EXPECT_TRUE(Shows(tolm, VLAN_LABEL, "4096"));

    // 4095 passes once the warning is read.
    tolm.Press(Key::Backspace);
    tolm.Type("5");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Refused(tolm, "Warning", "You entered a VLAN ID of 4095."));
    ASSERT_TRUE(tolm.WaitForTextGone(VLAN_LABEL));
    EXPECT_TRUE(tolm.WaitForText("4095"));

    // An emptied row is no VLAN.
    ASSERT_TRUE(OpenDialog(tolm, 1, VLAN_LABEL));
    EXPECT_TRUE(Shows(tolm, VLAN_LABEL, "4095"));
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
    ASSERT_TRUE(Shows(tolm, "Subnet Mask", "255.0.255.0"));
    tolm.Press(Key::Down);  // Enter from the gateway row
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Refused(tolm, "Invalid subnet", "Please reenter a valid subnet (x.x.x.x)."));
    EXPECT_TRUE(Shows(tolm, "Subnet Mask", "255.0.255.0"));
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
    ASSERT_TRUE(Refused(tolm, "Invalid scope", "Cannot add a link-local address as static address."));
    EXPECT_TRUE(Shows(tolm, "Static address #1", "fe80::1/64"));
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
    ASSERT_TRUE(Shows(tolm, "Alternate DNS Server", "1.2.3"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Refused(tolm, "Invalid DNS server address", "Please reenter a valid DNS server address (IP or IPv6)."));
    EXPECT_TRUE(Shows(tolm, "Alternate DNS Server", "1.2.3"));
    tolm.Press(Key::Up, 3);
    tolm.Type(" ");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone("Obtain DNS server addresses"));
    EXPECT_TRUE(tolm.WaitForText("Automatic"));
    EXPECT_FALSE(tolm.HasText("Invalid"));
}

TEST(NetworkDialogs, AdapterRowsCutLongNamesAndAskBeforeTakingUsedAdapters)
{
    Console tolm("typical");
    auto pnics = tolm.State("/network/pnics");
    auto longOne = pnics[3];
    longOne["name"] = "hwnic1000000";
    longOne["mac"] = "00:0c:29:3a:5b:20";
    longOne["pci"]["hardwareLabel"] = "Embedded.NIC.01";
    auto shorter = longOne;
    shorter["name"] = "hwnic100000";
    shorter["mac"] = "00:0c:29:3a:5b:21";
    pnics.push_back(longOne);
    pnics.push_back(shorter);
    tolm.SetValue("/network/pnics", pnics);
    tolm.Start();
    ASSERT_TRUE(OpenNetworkScreen(tolm));
    ASSERT_TRUE(OpenDialog(tolm, 0, "Hardware Label (MAC Address)"));

    // 12 characters keep 8, 11 stay whole; a 15-character label keeps 11.
    EXPECT_TRUE(tolm.HasText("hwnic100...  Embedded.NI... (...3a:5b:20)"));
    EXPECT_TRUE(tolm.HasText("hwnic100000  Embedded.NI... (...3a:5b:21)"));
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
    ASSERT_TRUE(Refused(tolm, "Adapter Details", "Used By: switch1 (Storage Network)"));

    tolm.Press(Key::Enter);
    ASSERT_TRUE(Refused(tolm, "Network Adapters: Warning", "Remove these adapters from their current connections?"));
    ASSERT_TRUE(tolm.WaitForTextGone("Hardware Label (MAC Address)"));
    EXPECT_TRUE(tolm.WaitForText("hwnic2 (00:0c:29:3a:5b:12)"));
    EXPECT_EQ(tolm.State("/network/virtualSwitches/1/uplinks"), nlohmann::json::array({"hwnic2"}));
}

}  // namespace
}  // namespace Tolm::E2E

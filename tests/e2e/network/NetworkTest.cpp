// The operator's stories on the Configure Management Network screen: change
// the settings in its dialogs (what each refuses on Enter, which field the
// message names and keeps), apply or discard them, and find the result on the
// host and on the status screen. Nothing reaches the host before the
// confirmation.

#include <algorithm>

#include "Steps.h"

namespace Tolm::E2E {
namespace {

using nlohmann::json;

constexpr const char* SCREEN = "Configure Management Network";
constexpr const char* CONFIRM = "Configure Management Network: Confirm";
constexpr const char* ERROR_TITLE = "Enable Management Network: Error";
constexpr const char* VLAN_LABEL = "VLAN ID (1-4094, or 4095 to access all VLANs):";
constexpr const char* IPV4_LEAD = "DHCP server. If it does not, the following";

// The screen is up with `entry` highlighted: its name heads the right pane.
bool ScreenShows(Console& tolm, const std::string& entry)
{
    const std::string title = std::string("  ") + SCREEN + "  ";
    return tolm.WaitUntil([&] { return tolm.Row(1).find(title) < 4 && tolm.Row(1).find("  " + entry) != std::string::npos; },
                          "the screen to show " + entry);
}

// From the status screen to the menu entry, and Enter on it; to the network screen.
bool EnterNetwork(Console& tolm) { return LogInToMenu(tolm) && OpenEntry(tolm, SCREEN); }
bool OpenNetwork(Console& tolm) { return EnterNetwork(tolm) && ScreenShows(tolm, "") && Settle(tolm); }

// Highlights `entry` (a row's name): up to the first row, then down to it.
bool GoTo(Console& tolm, const std::string& entry)
{
    static const std::vector<std::string> rows = {"Network Adapters", "VLAN (optional)", "IPv4 Configuration",
                                                  "IPv6 Configuration", "DNS Configuration", "Custom DNS Suffixes"};
    Settle(tolm);  // keys sent before the screen is redrawn are dropped
    tolm.Press(Key::Up, 6);
    tolm.Press(Key::Down, static_cast<int>(std::find(rows.begin(), rows.end(), entry) - rows.begin()));
    return ScreenShows(tolm, entry) && Settle(tolm);
}

// Opens the dialog of `entry`; it is up once `shows` is on screen.
bool Edit(Console& tolm, const std::string& entry, std::string_view shows)
{
    return GoTo(tolm, entry) && PressFor(tolm, Key::Enter, shows);
}

// Enter on the dialog showing `shows`, back on the screen with `entry` highlighted.
bool Accept(Console& tolm, const std::string& entry, std::string_view shows)
{
    return PressGone(tolm, Key::Enter, shows) && ScreenShows(tolm, entry) && Settle(tolm);
}

// Esc on the screen opens the confirmation with `question`.
bool AskToApply(Console& tolm, const std::string& question)
{
    return PressFor(tolm, Key::Esc, question) && tolm.HasText(CONFIRM);
}

// Y, and the menu is back.
bool ApplyYes(Console& tolm)
{
    tolm.Type("y");
    return tolm.WaitForLog("Network settings changed.") && ShowsEntry(tolm, SCREEN) && Settle(tolm);
}

constexpr const char* RESTART_NETWORK = "Apply changes and restart management network?";

TEST(NetworkScreen, NewStaticAddressShowsOnTheStatusScreen)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    ASSERT_TRUE(Edit(tolm, "IPv4 Configuration", "Set static IPv4 address"));
    tolm.Press(Key::Down, 3);
    Retype(tolm, "192.168.10.77");
    ASSERT_TRUE(Accept(tolm, "IPv4 Configuration", "Set static IPv4 address"));
    EXPECT_TRUE(tolm.WaitForText("IPv4 Address: 192.168.10.77"));
    EXPECT_EQ("192.168.10.21", tolm.State("/network/kernelNics/0/ipv4/address"));  // nothing applied yet

    ASSERT_TRUE(AskToApply(tolm, RESTART_NETWORK));
    ASSERT_TRUE(ApplyYes(tolm));
    EXPECT_TRUE(tolm.WaitForLog("Setting ipv4 configuration to 192.168.10.77 255.255.255.0 on tarn0"));
    EXPECT_EQ("192.168.10.77", tolm.State("/network/kernelNics/0/ipv4/address"));
    EXPECT_EQ(1, tolm.State("/tools/counts/refresh"));
    tolm.SendEsc();
    EXPECT_TRUE(tolm.WaitForText("http://192.168.10.77/"));
}

class DhcpTest : public ::testing::TestWithParam<bool> {};

TEST_P(DhcpTest, SwitchToDhcpTakesTheLeaseOrShowsTheFailedLookup)
{
    const bool serverUp = GetParam();
    Console tolm("typical");
    tolm.SetValue("/network/dhcpServer/available", serverUp);
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    ASSERT_TRUE(Edit(tolm, "IPv4 Configuration", "Use dynamic IPv4 address"));
    tolm.Press(Key::Down);
    tolm.Type(" ");
    ASSERT_TRUE(Accept(tolm, "IPv4 Configuration", "Use dynamic IPv4 address"));
    EXPECT_TRUE(tolm.WaitForText("Automatic"));
    ASSERT_TRUE(AskToApply(tolm, RESTART_NETWORK));
    ASSERT_TRUE(ApplyYes(tolm));
    EXPECT_TRUE(tolm.WaitForLog("Switching to DHCP on tarn0"));
    EXPECT_EQ("dhcp", tolm.State("/network/kernelNics/0/ipv4/mode"));
    EXPECT_EQ(serverUp ? "192.168.10.57" : "0.0.0.0", tolm.State("/network/kernelNics/0/ipv4/address"));
    EXPECT_EQ(!serverUp, tolm.State("/network/kernelNics/0/ipv4/dhcpFailed"));
    tolm.SendEsc();
    if (serverUp)
        EXPECT_TRUE(tolm.WaitForText("http://192.168.10.57/"));
    else
        EXPECT_TRUE(tolm.WaitForRow(-1, STATUS_FOOTER));
    EXPECT_TRUE(tolm.Running());
}

INSTANTIATE_TEST_SUITE_P(NetworkScreen, DhcpTest, ::testing::Values(true, false),
                         [](const auto& info) { return info.param ? "ServerUp" : "ServerDown"; });

TEST(NetworkScreen, AdaptersVlanDnsAndSuffixesReachTheHost)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    EXPECT_TRUE(tolm.WaitForText("hwnic1 (NIC.Slot.1-2)"));

    // hwnic1 out; hwnic2, which serves another switch, in: the warning
    // first, Esc goes back with the mark kept, the details name its switch.
    ASSERT_TRUE(Edit(tolm, "Network Adapters", "Select the adapters"));
    EXPECT_NE(tolm.Row(RowOf(tolm, "hwnic2 ")).find("Connected (...)"), std::string::npos);
    tolm.Press(Key::Down);
    tolm.Type(" ");
    tolm.Press(Key::Down);
    tolm.Type(" ");
    ASSERT_TRUE(Settle(tolm) && PressFor(tolm, Key::Enter, "Network Adapters: Warning"));
    ASSERT_TRUE(PressGone(tolm, Key::Esc, "Network Adapters: Warning"));
    EXPECT_TRUE(tolm.HasText("[X] hwnic2"));
    tolm.Type("d");
    ASSERT_TRUE(Dismiss(tolm, "Adapter Details", "Used By: switch1 (Storage Network)"));
    ASSERT_TRUE(PressFor(tolm, Key::Enter, "Remove these adapters from their current connections?"));
    ASSERT_TRUE(Accept(tolm, "Network Adapters", "Network Adapters: Warning"));
    ASSERT_TRUE(tolm.WaitForTextGone("Select the adapters"));
    EXPECT_TRUE(tolm.WaitForText("hwnic2 (00:0c:29:3a:5b:12)"));
    EXPECT_TRUE(tolm.WaitForTextGone("hwnic1 ("));

    ASSERT_TRUE(Edit(tolm, "VLAN (optional)", "VLAN ID (1-4094"));
    tolm.Type("5");
    ASSERT_TRUE(Accept(tolm, "VLAN (optional)", "VLAN ID (1-4094"));

    ASSERT_TRUE(Edit(tolm, "DNS Configuration", "Use the following DNS server"));
    tolm.Press(Key::Down, 2);
    Retype(tolm, "10.1.1.1");
    tolm.Press(Key::Down);
    Retype(tolm, "fd00::53");
    tolm.Press(Key::Down);
    Retype(tolm, "lab7");
    ASSERT_TRUE(Accept(tolm, "DNS Configuration", "Use the following DNS server"));
    EXPECT_TRUE(tolm.WaitForText("IPv6 DNS Server: fd00::53"));

    ASSERT_TRUE(Edit(tolm, "Custom DNS Suffixes", "Suffixes:"));
    Retype(tolm, "corp.example, lab.example dev.example");
    ASSERT_TRUE(Accept(tolm, "Custom DNS Suffixes", "Suffixes:"));

    // Esc in the confirmation keeps every pending value.
    ASSERT_TRUE(AskToApply(tolm, RESTART_NETWORK));
    ASSERT_TRUE(PressGone(tolm, Key::Esc, CONFIRM));
    EXPECT_TRUE(tolm.HasText("corp.example, lab.example"));
    EXPECT_EQ(json({"hwnic0", "hwnic1"}), tolm.State("/network/virtualSwitches/0/uplinks"));

    ASSERT_TRUE(AskToApply(tolm, RESTART_NETWORK));
    ASSERT_TRUE(ApplyYes(tolm));
    EXPECT_EQ(json({"hwnic0", "hwnic2"}), tolm.State("/network/virtualSwitches/0/uplinks"));
    EXPECT_EQ(json::array(), tolm.State("/network/virtualSwitches/1/uplinks"));
    EXPECT_EQ(5, tolm.State("/network/virtualSwitches/0/portGroups/0/vlanId"));
    EXPECT_EQ(json({"10.1.1.1"}), tolm.State("/network/dns/nameServers"));
    EXPECT_EQ(json({"fd00::53"}), tolm.State("/network/dns/ipv6NameServers"));
    EXPECT_EQ("lab7", tolm.State("/network/dns/hostname"));
    EXPECT_EQ("lab.example.com", tolm.State("/network/dns/domain"));
    EXPECT_EQ(json({"corp.example", "lab.example", "dev.example"}), tolm.State("/network/dns/searchDomains"));

    // A new visit reads the host again.
    tolm.Press(Key::Enter);
    ASSERT_TRUE(ScreenShows(tolm, "Network Adapters"));
    EXPECT_TRUE(tolm.WaitForText("hwnic2 (00:0c:29:3a:5b:12)"));
}

TEST(NetworkScreen, Ipv6OffAsksToRebootAndTakesEffectAfterTheRestart)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    ASSERT_TRUE(Edit(tolm, "IPv6 Configuration", "Disable IPv6 (restart required)"));
    tolm.Type(" ");
    ASSERT_TRUE(Accept(tolm, "IPv6 Configuration", "Disable IPv6 (restart required)"));
    EXPECT_TRUE(tolm.WaitForText("IPv6 is disabled."));
    ASSERT_TRUE(AskToApply(tolm, "Apply changes and reboot host?"));
    tolm.Type("y");
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    EXPECT_EQ("restarting", tolm.State("/power/state"));
    EXPECT_EQ(false, tolm.State("/network/ipv6/pendingEnabled"));
    EXPECT_EQ(true, tolm.State("/network/ipv6/enabled"));
    tolm.HostSim({"boot"});
    EXPECT_EQ(false, tolm.State("/network/ipv6/enabled"));
}

TEST(NetworkScreen, NoDiscardsAndNothingReachesTheHostBeforeYes)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    const json before = tolm.State("/network");
    ASSERT_TRUE(Edit(tolm, "VLAN (optional)", "VLAN ID (1-4094"));
    tolm.Type("9");
    ASSERT_TRUE(Accept(tolm, "VLAN (optional)", "VLAN ID (1-4094"));
    ASSERT_TRUE(AskToApply(tolm, RESTART_NETWORK));
    EXPECT_EQ(before, tolm.State("/network"));
    tolm.Type("n");
    ASSERT_TRUE(ShowsEntry(tolm, SCREEN));
    EXPECT_EQ(before, tolm.State("/network"));
    EXPECT_EQ(std::string::npos, tolm.Syslog().find("Network settings changed."));

    // The next visit starts from the host: nothing pending, Esc just leaves.
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(ScreenShows(tolm, "Network Adapters"));
    ASSERT_TRUE(GoTo(tolm, "VLAN (optional)"));
    EXPECT_TRUE(tolm.WaitForText("Not set"));
    tolm.SendEsc();
    EXPECT_TRUE(ShowsEntry(tolm, SCREEN));
    EXPECT_FALSE(tolm.HasText(CONFIRM));
}

TEST(NetworkScreen, DistributedSwitchGreysOutAdaptersAndVlan)
{
    Console tolm("dvs");
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    ASSERT_TRUE(ScreenShows(tolm, "IPv4 Configuration"));
    tolm.Press(Key::Up);
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(ScreenShows(tolm, "IPv4 Configuration"));
    EXPECT_TRUE(tolm.HasText("Network Adapters"));
    EXPECT_EQ(std::string::npos, tolm.Syslog().find("uplinks failed"));
}

TEST(NetworkScreen, PanelsCutTheIpv6ListAndLabelIpv6Servers)
{
    Console tolm("typical");
    json addresses = json::array({{{"address", "fe80::20c:29ff:fe3a:5b10"}, {"prefixLength", 64}, {"type", "autoconf"},
                                   {"scope", "linkLocal"}}});
    for (int i = 1; i <= 4; ++i)
        addresses.push_back({{"address", "fd00:" + std::to_string(i) + "::1"}, {"prefixLength", 64},
                             {"type", "static"}, {"scope", "global"}});
    tolm.SetValue("/network/kernelNics/0/ipv6/addresses", addresses);
    tolm.SetValue("/network/dns/nameServers", json::array());
    tolm.SetValue("/network/dns/ipv6NameServers", json({"fd00::53", "fd00::54"}));
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    ASSERT_TRUE(GoTo(tolm, "IPv6 Configuration"));
    EXPECT_TRUE(tolm.WaitForText("fd00:2::1/64"));
    EXPECT_TRUE(tolm.HasText("..."));
    EXPECT_FALSE(tolm.HasText("fd00:3::1/64"));
    ASSERT_TRUE(GoTo(tolm, "DNS Configuration"));
    EXPECT_TRUE(tolm.WaitForText("IPv6 DNS Server: fd00::53"));
    EXPECT_TRUE(tolm.HasText("IPv6 DNS Server: fd00::54"));
}

TEST(NetworkScreen, HostFailuresShowTheirBox)
{
    {
        // A failure reading the names is not the screen's to show: the
        // console logs it and ends in order.
        Console tolm("typical");
        tolm.SetValue("/faults/GetSearchDomains", "Fault: msg = resolver down;");
        tolm.Start();
        ASSERT_TRUE(EnterNetwork(tolm));
        EXPECT_TRUE(tolm.WaitForLog("Tolm aborted by exception: "));
        EXPECT_TRUE(tolm.WaitForLog("resolver down"));
        EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    }
    Console tolm("typical");
    tolm.SetValue("/faults/SetVlanId", "PlatformConfigFault: msg = VLAN busy;");
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));

    // A failed group while applying: its box, and the groups after it still run.
    ASSERT_TRUE(Edit(tolm, "VLAN (optional)", "VLAN ID (1-4094"));
    tolm.Type("9");
    ASSERT_TRUE(Accept(tolm, "VLAN (optional)", "VLAN ID (1-4094"));
    ASSERT_TRUE(Edit(tolm, "Custom DNS Suffixes", "Suffixes:"));
    Retype(tolm, "new.example");
    ASSERT_TRUE(Accept(tolm, "Custom DNS Suffixes", "Suffixes:"));
    ASSERT_TRUE(AskToApply(tolm, RESTART_NETWORK));
    tolm.Type("y");
    EXPECT_TRUE(tolm.WaitForLog("Setting VlanID failed: PlatformConfigFault: msg = VLAN busy;"));
    ASSERT_TRUE(Dismiss(tolm, ERROR_TITLE, "Setting VlanID failed: VLAN busy"));
    ASSERT_TRUE(tolm.WaitForLog("Network settings changed."));
    EXPECT_EQ(0, tolm.State("/network/virtualSwitches/0/portGroups/0/vlanId"));
    EXPECT_EQ(json({"new.example"}), tolm.State("/network/dns/searchDomains"));
    EXPECT_TRUE(ShowsEntry(tolm, SCREEN));
}

TEST(NetworkScreen, VlanIdRefusedAcceptedAfterTheWarningOrCleared)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    ASSERT_TRUE(Edit(tolm, "VLAN (optional)", VLAN_LABEL));

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
    ASSERT_TRUE(Edit(tolm, "VLAN (optional)", VLAN_LABEL));
    EXPECT_TRUE(FieldShows(tolm, VLAN_LABEL, "4095"));
    tolm.Press(Key::Delete);
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone(VLAN_LABEL));
    EXPECT_TRUE(tolm.WaitForText("Not set"));
    EXPECT_EQ(tolm.State("/network/virtualSwitches/0/portGroups/0/vlanId"), 0);
}

TEST(NetworkScreen, Ipv4StaticNamesTheBadNetmaskDynamicIgnoresTheRows)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenNetwork(tolm));
    ASSERT_TRUE(Edit(tolm, "IPv4 Configuration", IPV4_LEAD));

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
    ASSERT_TRUE(Edit(tolm, "IPv4 Configuration", IPV4_LEAD));
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

}  // namespace
}  // namespace Tolm::E2E

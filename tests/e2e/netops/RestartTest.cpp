// Restarting the management network from the menu: the confirmation, the
// progress with the addresses the interface came back with, and a failing
// host.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

// `count` lines of the dialog's text from the row where `first` starts,
// `width` columns each, trailing blanks dropped.
std::vector<std::string> LinesFrom(const Console& tolm, const std::string& first, int count, int width)
{
    std::vector<std::string> lines;
    const auto at = tolm.FindText(first);
    if (!at) return lines;
    for (int row = at->row; row < at->row + count && row < tolm.Rows(); ++row) {
        std::string line;
        for (int col = at->col; col < at->col + width && col < tolm.Cols(); ++col) line += tolm.CellAt(col, row).text;
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(line);
    }
    return lines;
}

constexpr const char* ENTRY = "Restart Management Network";
constexpr const char* CONFIRM = "Restart Management Network: Confirm";
constexpr const char* FIRST_LINE = "Stopping management network. Done.";
// The progress dialog's text area is 56 columns wide.
constexpr int WIDTH = 56;

// From the menu through the confirmation (Enter there does nothing) until
// the restart is over and only Enter is left.
bool Restart(Console& tolm)
{
    if (!OpenEntry(tolm, ENTRY) || !tolm.WaitForText(CONFIRM) || !Settle(tolm)) return false;
    tolm.Press(Key::Enter);
    if (!Settle(tolm) || !tolm.HasText(CONFIRM)) return false;
    return PressFor(tolm, Key::F11, FIRST_LINE) && tolm.WaitForText("<Enter> OK") && Settle(tolm);
}

bool Close(Console& tolm)
{
    tolm.Press(Key::F11);  // ignored, like every key but Enter
    return Settle(tolm) && tolm.HasText(FIRST_LINE) && PressGone(tolm, Key::Enter, FIRST_LINE) &&
           ShowsEntry(tolm, ENTRY) && Settle(tolm);
}

nlohmann::json StaticNetworks(int count)
{
    auto list = nlohmann::json::array({{{"address", "fe80::20c:29ff:fe3a:5b10"}, {"prefixLength", 64},
                                        {"type", "autoconf"}, {"scope", "linkLocal"}}});
    for (int i = 1; i <= count; ++i)
        list.push_back({{"address", "2001:db8::" + std::to_string(i)}, {"prefixLength", 64}, {"type", "static"},
                        {"scope", "global"}});
    return list;
}

TEST(RestartNetwork, StaticShowsItsAddressesAndFailuresReachTheMenu)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));

    // Esc cancels: nothing is restarted.
    ASSERT_TRUE(OpenEntry(tolm, ENTRY));
    ASSERT_TRUE(tolm.WaitForText(CONFIRM) && Settle(tolm) && PressGone(tolm, Key::Esc, CONFIRM));
    EXPECT_EQ(tolm.Syslog().find("Restarting tarn0"), std::string::npos);

    // A static interface with only a link-local IPv6 address: four lines.
    ASSERT_TRUE(Restart(tolm));
    EXPECT_EQ(LinesFrom(tolm, FIRST_LINE, 5, WIDTH),
              (std::vector<std::string>{FIRST_LINE, "Starting management network.",
                                        "   IP address is  192.168.10.21", "Done.", ""}));
    EXPECT_TRUE(tolm.WaitForLog("Restarting tarn0"));
    EXPECT_TRUE(tolm.WaitForEvent("Restarting tarn0"));
    EXPECT_EQ(tolm.State("/network/kernelNics/0/up"), true);
    ASSERT_TRUE(Close(tolm));

    // Five static networks: two lines and a line that says there are more.
    tolm.SetValue("/network/kernelNics/0/ipv6/addresses", StaticNetworks(5));
    ASSERT_TRUE(Restart(tolm));
    EXPECT_EQ(LinesFrom(tolm, FIRST_LINE, 7, WIDTH),
              (std::vector<std::string>{FIRST_LINE, "Starting management network.",
                                        "   IP address is  192.168.10.21", "   IP address is  2001:db8::1/64",
                                        "   IP address is  2001:db8::2/64", "   ...", "Done."}));
    ASSERT_TRUE(Close(tolm));

    // The host library fails: the menu says so and stays usable.
    tolm.SetValue("/faults/Start", "interface did not come up");
    ASSERT_TRUE(OpenEntry(tolm, ENTRY));
    ASSERT_TRUE(tolm.WaitForText(CONFIRM) && Settle(tolm));
    tolm.Press(Key::F11);
    EXPECT_TRUE(tolm.WaitForLog("interface did not come up"));
    ASSERT_TRUE(Dismiss(tolm, "Restart Management Network: Error", "Operation on the management network interface failed."));
    tolm.Press(Key::Up);
    EXPECT_TRUE(ShowsEntry(tolm, "Configure Management Network"));
}

TEST(RestartNetwork, DhcpShowsTheLeaseOutcome)
{
    Console tolm("typical");
    tolm.SetValue("/network/kernelNics/0/ipv4/mode", "dhcp");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));

    // The lease is not known while the dialog shows, so no IPv4 line; the
    // interface came back with the lease, as the menu's pane shows.
    ASSERT_TRUE(Restart(tolm));
    EXPECT_EQ(LinesFrom(tolm, FIRST_LINE, 4, WIDTH),
              (std::vector<std::string>{FIRST_LINE, "Starting management network.", "Done.", ""}));
    EXPECT_EQ(tolm.State("/network/kernelNics/0/ipv4/address"), "192.168.10.57");
    ASSERT_TRUE(Close(tolm));
    tolm.Press(Key::Up);
    EXPECT_TRUE(ShowsEntry(tolm, "Configure Management Network"));
    EXPECT_TRUE(tolm.WaitForText("192.168.10.57") && Settle(tolm));

    // Without a DHCP server the interface is left without an address.
    tolm.SetValue("/network/dhcpServer/available", false);
    ASSERT_TRUE(Restart(tolm));
    EXPECT_EQ(tolm.State("/network/kernelNics/0/ipv4/address"), "0.0.0.0");
    EXPECT_EQ(tolm.State("/network/kernelNics/0/ipv4/dhcpFailed"), true);
    ASSERT_TRUE(Close(tolm));
    tolm.Press(Key::Up);
    EXPECT_TRUE(ShowsEntry(tolm, "Configure Management Network"));
    EXPECT_TRUE(tolm.WaitForTextGone("192.168.10.57"));
}

}  // namespace
}  // namespace Tolm::E2E

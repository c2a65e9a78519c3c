// What the status screen shows for different hosts, how it copes with a host
// that fails to answer, and its colours.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

constexpr const char* NO_ADAPTER_ALERT = "No compatible network adapter found.";

TEST(StatusScreen, TypicalHostShowsWhoAndWhereItIs)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));

    // Host description in the upper half, addresses in the lower half; the
    // footer's F12 against the right margin.
    EXPECT_EQ(tolm.Grid(0, 17),
              "                                                                                |\n"
              "                                                                                |\n"
              "                                                                                |\n"
              "  Tarn Hypervisor 8.0.2 (Tarn 8.0.2 Build 22380479)                             |\n"
              "  Dell Inc. PowerEdge R740                                                      |\n"
              "                                                                                |\n"
              "  2 x Intel(R) Xeon(R) Gold 6136 CPU @ 3.00GHz                                  |\n"
              "  128 GiB Memory                                                                |\n"
              "                                                                                |\n"
              "                                                                                |\n"
              "                                                                                |\n"
              "                                                                                |\n"
              "                                                                                |\n"
              "  Download tools to manage this host from:                                      |\n"
              "  http://tarnhost01/                                                            |\n"
              "  http://192.168.10.21/ (STATIC)                                                |\n"
              "  http://[fe80::20c:29ff:fe3a:5b10]/ (AUTOCONF)                                 |\n"
              "                                                                                |\n");
    EXPECT_EQ(tolm.Grid(-1, -1), "  <F2> Customize System/View Logs                      <F12> Shut Down/Restart  |\n");
    EXPECT_EQ(tolm.Grid(18, -2).find_first_not_of(" |\n"), std::string::npos);  // the rest is blank
    const int heading = 13;
    EXPECT_TRUE(tolm.State("/system/alerts").empty());

    // TERM=xterm cannot redefine colours: dark bars in standout, and F4
    // only repaints.
    EXPECT_TRUE(tolm.CellAt(0, 0).reverse);
    EXPECT_FALSE(tolm.CellAt(0, heading).reverse);
    EXPECT_EQ(tolm.RawOutput().find("\x1b]"), std::string::npos);
    tolm.Press(Key::F4);
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.CellAt(0, 0).reverse);
    EXPECT_TRUE(tolm.HasText("Tarn Hypervisor"));
}

TEST(StatusScreen, LinesFollowTheHost)
{
    // localhost, no IPv4 address, IPv6 of every origin; memory from pages, a
    // CPU model too long for the line.
    Console tolm("typical");
    tolm.SetValue("/hardware/memory/totalPages", 1073741823);
    tolm.SetValue("/hardware/memory/pageSize", 1);
    tolm.SetValue("/hardware/cpu/model", std::string(100, 'M'));
    tolm.SetValue("/network/dns/hostname", "localhost");
    tolm.SetValue("/network/kernelNics/0/ipv4/address", "0.0.0.0");
    tolm.Set("/network/kernelNics/0/ipv6/addresses",
             R"([{"address": "fd00:10::57", "prefixLength": 128, "type": "dhcp", "scope": "global"},
                 {"address": "2001:db8::21", "prefixLength": 64, "type": "static", "scope": "global"},
                 {"address": "fd00:10::20c:29ff:fe3a:5b10", "prefixLength": 64, "type": "autoconf", "scope": "global"},
                 {"address": "fd00:99::1", "prefixLength": 64, "type": "other", "scope": "global"}])");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    const int heading = RowOf(tolm, "Download tools");
    ASSERT_GE(heading, 0);
    EXPECT_EQ(tolm.Row(heading + 1), "  http://[fd00:10::57]/ (DHCP)");
    EXPECT_EQ(tolm.Row(heading + 2), "  http://[2001:db8::21]/ (STATIC)");
    EXPECT_EQ(tolm.Row(heading + 3), "  http://[fd00:10::20c:29ff:fe3a:5b10]/ (AUTOCONF)");
    EXPECT_EQ(tolm.Row(heading + 4), "  http://[fd00:99::1]/ (STATIC)");
    EXPECT_FALSE(tolm.HasText("localhost"));
    EXPECT_FALSE(tolm.HasText("0.0.0.0"));
    EXPECT_TRUE(tolm.HasText("1024 MiB Memory"));
    // Cut to the 76 columns between the margins, ending in "...".
    EXPECT_EQ(tolm.Row(RowOf(tolm, "2 x MMM")), "  2 x " + std::string(76 - 4 - 3, 'M') + "...");

    // A DHCP lease, IPv6 off in the kernel and a new name show after the
    // refresh signal, without a key.
    tolm.Set("/network/kernelNics/0/ipv4",
             R"({"mode": "dhcp", "address": "192.168.10.57", "netmask": "255.255.255.0", "dhcpFailed": false})");
    tolm.SetValue("/network/ipv6/enabled", false);
    tolm.SetValue("/network/dns/hostname", "tarnhost-renamed");
    tolm.Signal(SIGUSR1);
    ASSERT_TRUE(tolm.WaitForText("http://tarnhost-renamed/"));
    EXPECT_TRUE(tolm.WaitForRow(heading + 2, "^  http://192\\.168\\.10\\.57/ \\(DHCP\\)$"));
    EXPECT_TRUE(tolm.WaitForTextGone("http://["));
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_FALSE(tolm.HasText("Warning: DHCP"));
}

TEST(StatusScreen, NoAdapterWarningAndAlert)
{
    {
        SCOPED_TRACE("no adapter");
        Console tolm("no-adapter");
        tolm.Start();
        ASSERT_TRUE(Started(tolm));
        // One line, cut at the margin.
        const int row = RowOf(tolm, "No compatible network adapter found. Please consult the product's");
        ASSERT_GE(row, 0);
        EXPECT_EQ(tolm.Row(row).size(), 78u);
        EXPECT_EQ(tolm.Row(row).substr(75), "...");
        EXPECT_FALSE(tolm.HasText("for a list of supported adapters."));
        EXPECT_FALSE(tolm.HasText("Download tools"));
        // The host already carried the alert from an earlier run.
        tolm.Type("xy");
        ASSERT_TRUE(tolm.WaitForQuiet());
        EXPECT_EQ(tolm.State("/system/alerts"), nlohmann::json::array({NO_ADAPTER_ALERT}));
    }
    // Adapters removed since the last boot: raised once, however often the
    // screen is drawn; and raised too when the alerts cannot be read.
    for (bool unreadable : {false, true}) {
        SCOPED_TRACE(unreadable ? "alerts unreadable" : "adapters removed");
        Console tolm("typical");
        tolm.Set("/network/pnics", "[]");
        if (unreadable) tolm.SetValue("/faults/GetSystemAlerts", "alert store locked");
        tolm.Start();
        ASSERT_TRUE(Started(tolm));
        EXPECT_TRUE(tolm.HasText("No compatible network adapter found."));
        if (unreadable) {
            EXPECT_TRUE(tolm.WaitForLog("Getting system alerts failed: alert store locked"));
        } else {
            tolm.Type("xy");
            tolm.Signal(SIGUSR1);
            ASSERT_TRUE(tolm.WaitForQuiet());
        }
        EXPECT_EQ(tolm.State("/system/alerts"), nlohmann::json::array({NO_ADAPTER_ALERT}));
    }
}

TEST(StatusScreen, WarningsStayWholeBelowManyAddresses)
{
    Console tolm("dhcp-fail");
    tolm.SetValue("/system/bootOption", 1);
    std::string addresses = "[";
    for (int i = 1; i <= 6; ++i)
        addresses += std::string(i > 1 ? "," : "") + R"({"address": "2001:db8::)" + std::to_string(i) +
                     R"(", "prefixLength": 64, "type": "static", "scope": "global"})";
    tolm.Set("/network/kernelNics/0/ipv6/addresses", addresses + "]");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    // Each warning is one line, cut at the right margin, above the footer.
    const int dhcp = RowOf(tolm, "Warning: DHCP lookup failed.");
    const int audit = RowOf(tolm, "Warning: Host is running in audit mode.");
    ASSERT_GE(dhcp, 0);
    EXPECT_EQ(audit, dhcp + 1);
    EXPECT_LT(audit, tolm.Rows() - 1);
    for (int row : {dhcp, audit}) {
        EXPECT_EQ(tolm.Row(row).size(), 78u) << tolm.Row(row);
        EXPECT_EQ(tolm.Row(row).substr(75), "...") << tolm.Row(row);
    }
    // The first addresses are shown, then a free line.
    EXPECT_TRUE(tolm.HasText("http://[2001:db8::1]/ (STATIC)"));
    EXPECT_FALSE(tolm.HasText("0.0.0.0"));
    EXPECT_TRUE(tolm.State("/system/alerts").empty());
    EXPECT_EQ(tolm.Row(dhcp - 1), "");
    EXPECT_NE(tolm.Row(dhcp - 2).find("http://"), std::string::npos);
}

TEST(StatusScreen, FailedHostQueriesLeaveTheirLinesOut)
{
    Console tolm("typical");
    tolm.Set("/faults", R"({"GetVendorName": "no DMI table", "GetModelName": "cpuid refused",
                            "GetManagementInterface": "netstack down", "Qsi_Get": "no node"})");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    EXPECT_TRUE(tolm.HasText("128 GiB Memory"));
    EXPECT_TRUE(tolm.HasText("http://tarnhost01/"));
    EXPECT_FALSE(tolm.HasText("PowerEdge"));
    EXPECT_FALSE(tolm.HasText(" x "));
    EXPECT_FALSE(tolm.HasText("192.168.10.21"));
    EXPECT_TRUE(tolm.WaitForLog("Getting hardware info failed: no DMI table"));
    EXPECT_TRUE(tolm.WaitForLog("Getting CPU info failed: cpuid refused"));
    EXPECT_TRUE(tolm.WaitForLog("Getting management interface failed: netstack down"));
    // Every redraw asks again; the console keeps running.
    tolm.Type("a");
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.Running());
}

TEST(StatusScreen, TinyTerminalDoesNotBreakIt)
{
    ConsoleOptions options;
    options.fixture = "typical";
    options.cols = 12;
    options.rows = 4;
    Console tolm(options);
    tolm.Start();
    ASSERT_TRUE(tolm.WaitForLog("Starting Tolm"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Type("x");
    tolm.Press(Key::F4);
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Signal(SIGTERM);
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
}

// Colour numbers as the palette indexes the terminal sees.
constexpr int DARK_GREY = 6, YELLOW = 3, WHITE = 7, BLACK = 0;

TEST(StatusScreen, ColoursAndTheBlackAndWhiteSwitch)
{
    Console tolm(OnTerm("xterm-256color"));
    tolm.Start();
    ASSERT_TRUE(Started(tolm));

    const Pos product = *tolm.FindText("Tarn Hypervisor");
    const Pos heading = *tolm.FindText("Download tools");
    const auto coloured = [&] {
        return tolm.CellAt(0, 0).bg == DARK_GREY && tolm.CellAt(product.col, product.row).fg == WHITE &&
               tolm.CellAt(0, heading.row).bg == YELLOW && tolm.CellAt(heading.col, heading.row).fg == BLACK &&
               !tolm.CellAt(0, 0).reverse;
    };
    EXPECT_TRUE(coloured()) << tolm.CellAt(0, 0) << tolm.CellAt(0, heading.row);
    // The footer's words are dark grey, its keys black.
    const Pos words = *tolm.FindText("Customize System");
    EXPECT_EQ(tolm.CellAt(words.col, words.row).fg, DARK_GREY);
    EXPECT_EQ(tolm.CellAt(words.col - 3, words.row).fg, BLACK);

    // F4: dark bars in standout, everything else plain.
    tolm.Press(Key::F4);
    EXPECT_TRUE(tolm.WaitUntil(
        [&] {
            const Cell upper = tolm.CellAt(0, 0), lower = tolm.CellAt(0, heading.row);
            return upper.reverse && !lower.reverse && lower.bg == kDefaultColor &&
                   tolm.CellAt(product.col, product.row).reverse;
        },
        "black-and-white rendering"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::F4);
    EXPECT_TRUE(tolm.WaitUntil(coloured, "colours back"));
}

}  // namespace
}  // namespace Tolm::E2E

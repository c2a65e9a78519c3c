// Testing the management network from the menu: the rows offered, the pings
// and the name lookup answered from the host's model, and Esc.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

constexpr const char* ENTRY = "Test Management Network";
constexpr const char* RUNNING = "Testing Management Network";
constexpr const char* DONE_FOOTER = "<Enter> OK";

bool OpenTest(Console& tolm) { return OpenEntry(tolm, ENTRY) && tolm.WaitForText("Ping Address #1") && Settle(tolm); }

// The step's line ends with `result` at the right of the dialog.
bool StepReads(Console& tolm, const std::string& step, const std::string& result)
{
    return tolm.WaitUntil(
        [&] {
            const int row = RowOf(tolm, step);
            if (row < 0) return false;
            const std::string line = tolm.Row(row);
            return line.find(result) != std::string::npos && line.find(result) > line.find(step);
        },
        step + " ... " + result);
}

TEST(TestNetwork, EachStepReportsBehindItsRow)
{
    Console tolm("typical");
    tolm.SetValue("/network/reachableAddresses", nlohmann::json::array({"192.168.10.1", "192.168.10.2"}));
    const std::string hosts = tolm.ReadRootFile("etc/hosts") + "192.168.10.77 onlyhosts.lab.example.com\n";
    std::ofstream(tolm.RootPath("etc/hosts")) << hosts;
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    ASSERT_TRUE(OpenTest(tolm));

    // The gateway, then the DNS servers, and the full host name.
    EXPECT_TRUE(FieldReads(tolm, "Ping Address #1", R"( +\[ 192\.168\.10\.1 )"));
    EXPECT_TRUE(FieldReads(tolm, "Ping Address #2", R"( +\[ 192\.168\.10\.2 )"));
    EXPECT_TRUE(FieldReads(tolm, "Ping Address #3", R"( +\[ 192\.168\.10\.3 )"));
    EXPECT_TRUE(FieldReads(tolm, "Resolve Hostname", R"( +\[ tarnhost01\.lab\.example\.com )"));

    // Row 2 emptied; a name the hosts file knows but DNS does not.
    for (Key key : {Key::Down, Key::Delete, Key::Down, Key::Down}) {
        tolm.Press(key);
        ASSERT_TRUE(Settle(tolm));
    }
    tolm.Type("onlyhosts.lab.example.com");
    ASSERT_TRUE(FieldReads(tolm, "Resolve Hostname", R"( +\[ onlyhosts\.lab\.example\.com)"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText(RUNNING));
    ASSERT_TRUE(tolm.WaitForText(DONE_FOOTER));
    EXPECT_TRUE(StepReads(tolm, "Pinging address #1 (192.168.10.1).", "OK."));
    EXPECT_TRUE(StepReads(tolm, "Pinging address #3 (192.168.10.3).", "Failed."));
    EXPECT_FALSE(tolm.HasText("#2"));
    EXPECT_TRUE(StepReads(tolm, "Resolving hostname (onlyhosts.lab.example.com).", "Failed."));
    EXPECT_EQ(tolm.ReadRootFile("etc/hosts"), hosts);
    EXPECT_FALSE(std::filesystem::exists(tolm.RootPath("etc/hosts.backup")));

    // Enter closes the test and the rows; the host's own name is in DNS.
    ASSERT_TRUE(Settle(tolm) && PressGone(tolm, Key::Enter, RUNNING) && ShowsEntry(tolm, ENTRY) && Settle(tolm));
    ASSERT_TRUE(OpenTest(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText(DONE_FOOTER));
    EXPECT_TRUE(StepReads(tolm, "Pinging address #2 (192.168.10.2).", "OK."));
    EXPECT_TRUE(StepReads(tolm, "Resolving hostname (tarnhost01.lab.example.com).", "OK."));
}

TEST(TestNetwork, InvalidRowRunsNothingAndEscEndsASlowPing)
{
    Console tolm("typical");
    tolm.SetValue("/tools/pingIntervalMs", 60000);
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    ASSERT_TRUE(OpenTest(tolm));

    tolm.Press(Key::Down);
    ASSERT_TRUE(Settle(tolm));
    tolm.Type("10.0.0");
    ASSERT_TRUE(FieldReads(tolm, "Ping Address #2", R"( +\[ 10\.0\.0 )"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Dismiss(tolm, "Invalid IP or IPv6 address.", "Invalid IP address"));
    EXPECT_FALSE(tolm.HasText(RUNNING));
    EXPECT_EQ(tolm.Cursor().row, RowOf(tolm, "Ping Address #2"));

    // The first ping would take two minutes: Esc ends the whole test.
    tolm.Press(Key::End);
    tolm.Press(Key::Backspace, 6);
    ASSERT_TRUE(FieldReads(tolm, "Ping Address #2", R"( +\[  +\])"));
    ASSERT_TRUE(PressFor(tolm, Key::Enter, "Pinging address #1 (192.168.10.1).") && PressFor(tolm, Key::Esc, DONE_FOOTER));
    EXPECT_FALSE(tolm.HasText("#3"));
    EXPECT_FALSE(tolm.HasText("OK."));
    EXPECT_FALSE(tolm.HasText("Failed."));
    EXPECT_FALSE(tolm.HasText("Resolving hostname"));
    tolm.Press(Key::Enter);
    EXPECT_TRUE(tolm.WaitForTextGone(RUNNING) && ShowsEntry(tolm, ENTRY));
}

TEST(TestNetwork, MissingToolAndHangingLookupLeaveTheHostAsItWas)
{
    Console tolm("typical");
    tolm.SetValue("/network/resolver/hang", true);
    std::filesystem::remove(tolm.RootPath("sbin/tarnping"));
    const std::string hosts = tolm.ReadRootFile("etc/hosts");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    ASSERT_TRUE(OpenTest(tolm));
    tolm.Press(Key::Enter);

    ASSERT_TRUE(tolm.WaitForText("Resolving hostname (tarnhost01.lab.example.com)."));
    EXPECT_TRUE(StepReads(tolm, "Pinging address #1 (192.168.10.1).", "Failed."));
    EXPECT_TRUE(StepReads(tolm, "Pinging address #3 (192.168.10.3).", "Failed."));
    // The lookup runs without the hosts file and never ends by itself.
    EXPECT_TRUE(tolm.WaitUntil([&] { return !std::filesystem::exists(tolm.RootPath("etc/hosts")); },
                               "hosts file moved aside"));
    ASSERT_TRUE(Settle(tolm) && PressFor(tolm, Key::Esc, DONE_FOOTER));
    EXPECT_EQ(tolm.ReadRootFile("etc/hosts"), hosts);
    EXPECT_FALSE(tolm.HasText("OK."));
}

}  // namespace
}  // namespace Tolm::E2E

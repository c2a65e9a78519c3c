// Troubleshooting options: switching the shell and SSH, their timeouts and
// the console's own, and restarting the management agents, on the simulated
// host.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

#include "Steps.h"

namespace Tolm::E2E {
namespace {

using nlohmann::json;

constexpr const char* TIMEOUTS = "Modify Talvo Shell and SSH timeouts";
// Its title in the right pane wraps before "timeouts".
constexpr const char* TIMEOUTS_TITLE = "Modify Talvo Shell and SSH";
constexpr const char* INVALID = "Invalid timeout value";
constexpr const char* AGENTS_DONE = "Starting management agents. Done.";

// From the status screen into the troubleshooting screen as root.
bool OpenTroubleshooting(Console& tolm)
{
    if (!LogInToMenu(tolm)) return false;
    const std::regex entry("System Customization +Troubleshooting Options");
    while (!std::regex_search(tolm.Row(1), entry)) {
        const std::string before = tolm.Row(1);
        tolm.Press(Key::Down);
        if (!tolm.WaitUntil([&] { return tolm.Row(1) != before; }, "the next menu entry") || !Settle(tolm))
            return false;
    }
    tolm.Press(Key::Enter);
    return tolm.WaitForText("Modify Tolm idle timeout") && Settle(tolm);
}

// The troubleshooting entry `name` heads the right pane.
bool Selected(Console& tolm, const std::string& name)
{
    return tolm.WaitForRow(1, "  " + name + "( |$)") && Settle(tolm);
}

// Moves the highlight with Down until `name` is selected.
bool SelectEntry(Console& tolm, const std::string& name, int downs)
{
    tolm.Press(Key::Down, downs);
    return Selected(tolm, name);
}

bool Running(const Console& tolm, const std::string& service)
{
    return tolm.State("/services/" + service + "/running") == true;
}

// The console's idle timeout field shows `minutes` (the menu's title holds
// the label's words too).
bool TolmFieldReads(Console& tolm, const std::string& minutes)
{
    const std::regex field("  Tolm idle timeout +\\[ " + minutes + " ");
    return tolm.WaitUntil(
        [&] {
            for (int row = 0; row < 25; ++row)
                if (std::regex_search(tolm.Row(row), field)) return true;
            return false;
        },
        "Tolm idle timeout " + minutes);
}

// Clears the focused field and types `text`.
void Retype(Console& tolm, const std::string& text)
{
    tolm.Press(Key::End);
    tolm.Press(Key::Backspace, 6);
    tolm.Type(text);
}

TEST(Troubleshooting, SshAndShellFollowTheHost)
{
    ConsoleOptions options;
    options.fixture = "typical";
    options.term = "xterm-256color";
    Console tolm(options);
    tolm.Start();
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(Selected(tolm, "Talvo Shell"));
    EXPECT_TRUE(tolm.WaitForText("Talvo Shell is Disabled"));
    EXPECT_TRUE(tolm.WaitForText("Enable Talvo Shell"));

    // SSH on: entry, pane, services, ruleset and log follow.
    ASSERT_TRUE(SelectEntry(tolm, "SSH Support", 1));
    EXPECT_TRUE(tolm.WaitForText("SSH is Disabled"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("SSH is Enabled"));
    EXPECT_TRUE(tolm.WaitForText("Disable SSH"));
    EXPECT_TRUE(Running(tolm, "ssh"));
    EXPECT_EQ(tolm.State("/services/ssh/enabled"), true);
    EXPECT_EQ(tolm.State("/system/firewall/rulesets/sshServer/enabled"), true);
    EXPECT_TRUE(tolm.WaitForLog("User root enabled SSH"));

    // While SSH runs the timeouts entry is dark grey and skipped.
    const Pos grey = *tolm.FindText(TIMEOUTS);
    EXPECT_EQ(tolm.CellAt(grey.col, grey.row).fg, 6);
    ASSERT_TRUE(Settle(tolm));
    ASSERT_TRUE(SelectEntry(tolm, "Modify Tolm idle timeout", 1));
    tolm.Press(Key::Up);
    ASSERT_TRUE(Selected(tolm, "SSH Support"));

    // A failing stop command: the init script stops SSH all the same, and
    // the screen shows what the host has.
    tolm.SetValue("/faults/hostsvc~1stop_ssh", "agent busy");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("SSH is Disabled"));
    EXPECT_TRUE(tolm.WaitForLog("Unable to run orla-cmd to start/stop ssh"));
    EXPECT_TRUE(tolm.WaitForLog("User root disabled SSH"));
    EXPECT_FALSE(Running(tolm, "ssh"));
    EXPECT_EQ(tolm.State("/tools/counts/SSH-stop"), 1);
    EXPECT_EQ(tolm.State("/system/firewall/rulesets/sshServer/enabled"), false);
    EXPECT_TRUE(tolm.WaitForText("Enable SSH"));

    // Both off: the timeouts entry can be chosen again.
    ASSERT_TRUE(SelectEntry(tolm, TIMEOUTS_TITLE, 1));

    // The shell alone greys it out too; the host refusing to start it is
    // shown as it is.
    tolm.Press(Key::Up, 2);
    ASSERT_TRUE(Selected(tolm, "Talvo Shell"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Talvo Shell is Enabled"));
    EXPECT_TRUE(tolm.WaitForLog("User root enabled Talvo Shell"));
    EXPECT_TRUE(Running(tolm, "shell"));
    EXPECT_EQ(tolm.State("/system/firewall/rulesets/sshServer/enabled"), false);
    ASSERT_TRUE(SelectEntry(tolm, "SSH Support", 1));
    ASSERT_TRUE(SelectEntry(tolm, "Modify Tolm idle timeout", 1));

    // Esc goes back to the menu.
    tolm.SendEsc();
    EXPECT_TRUE(ShowsEntry(tolm, "Troubleshooting Options"));
}

TEST(Troubleshooting, ShellTimeouts)
{
    Console tolm("typical");
    tolm.SetValue("/advancedOptions/UserVars/TalvoShellInteractiveTimeOut/value", 900);
    tolm.Start();
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(SelectEntry(tolm, TIMEOUTS_TITLE, 2));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Set the timeouts for Talvo Shell access"));
    EXPECT_TRUE(FieldReads(tolm, "Availability timeout", R"( +\[ 0 )"));
    EXPECT_TRUE(FieldReads(tolm, "Idle timeout", R"( +\[ 15 )"));
    ASSERT_TRUE(Settle(tolm));

    // Letters and "-" never enter a field. 1441 in the idle row is refused
    // before anything is written, and the text stays for correcting.
    Retype(tolm, "-1a4x40");
    EXPECT_TRUE(FieldReads(tolm, "Availability timeout", R"( +\[ 1440 )"));
    tolm.Press(Key::Down);
    Retype(tolm, "1441");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText(INVALID));
    EXPECT_TRUE(tolm.HasText("Timeout value must be between 0 (disabled) and 1440 minutes"));
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone(INVALID));
    EXPECT_TRUE(FieldReads(tolm, "Idle timeout", R"( +\[ 1441 )"));
    EXPECT_EQ(tolm.State("/advancedOptions/UserVars/TalvoShellTimeOut/value"), 0);
    EXPECT_EQ(tolm.State("/tools/counts/advancedSet"), nullptr);

    // 1440 minutes are stored as 86400 seconds, and SSH, started behind the
    // dialog's back, is restarted to see them; 0 disables the idle timeout.
    tolm.SetValue("/services/ssh/running", true);
    ASSERT_TRUE(Settle(tolm));
    Retype(tolm, "0");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Disabled shell interactive timeout"));
    EXPECT_TRUE(tolm.WaitForLog("Modified Shell timeout to 1440 minutes"));
    EXPECT_EQ(tolm.State("/advancedOptions/UserVars/TalvoShellTimeOut/value"), 86400);
    EXPECT_EQ(tolm.State("/advancedOptions/UserVars/TalvoShellInteractiveTimeOut/value"), 0);
    EXPECT_EQ(tolm.State("/tools/counts/SSH-restart"), 1);
    EXPECT_EQ(tolm.State("/tools/counts/TalvoShell-restart"), nullptr);
    tolm.SetValue("/services/ssh/running", false);

    // With talvocli failing nodecli writes the value; the unchanged idle row
    // writes nothing.
    tolm.SetValue("/faults/talvocli", "connection refused");
    ASSERT_TRUE(Selected(tolm, TIMEOUTS_TITLE));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(FieldReads(tolm, "Availability timeout", R"( +\[ 1440 )"));
    ASSERT_TRUE(Settle(tolm));
    Retype(tolm, "0");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Disabled Shell timeout"));
    EXPECT_EQ(tolm.State("/advancedOptions/UserVars/TalvoShellTimeOut/value"), 0);
    EXPECT_EQ(tolm.State("/tools/counts/advancedSet"), 3);
    EXPECT_EQ(Count(tolm.Syslog(), "shell interactive timeout"), 1u);
}

TEST(Troubleshooting, TolmIdleTimeoutCountsAtOnce)
{
    Console tolm("typical");
    // No timeout for the session as it starts.
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 0);
    tolm.UseFakeTime("+0 x60");
    tolm.Start();
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(SelectEntry(tolm, "Modify Tolm idle timeout", 3));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(TolmFieldReads(tolm, "0"));
    ASSERT_TRUE(Settle(tolm));
    Retype(tolm, "1441");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText(INVALID));
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone(INVALID));
    EXPECT_TRUE(TolmFieldReads(tolm, "1441"));
    EXPECT_EQ(tolm.State("/advancedOptions/UserVars/TolmTimeOut/value"), 0);

    // One minute, from now on: the session ends a (fast) minute later.
    ASSERT_TRUE(Settle(tolm));
    Retype(tolm, "1");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Modified Tolm timeout to 1 minutes"));
    EXPECT_EQ(tolm.State("/advancedOptions/UserVars/TolmTimeOut/value"), 60);
    EXPECT_TRUE(tolm.WaitForLog("User root logged out."));
    ASSERT_TRUE(tolm.WaitForText("Download tools to manage this host from:"));

    // 0 disables it.
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 1200);
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(SelectEntry(tolm, "Modify Tolm idle timeout", 3));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(TolmFieldReads(tolm, "20"));
    ASSERT_TRUE(Settle(tolm));
    Retype(tolm, "0");
    tolm.Press(Key::Enter);
    EXPECT_TRUE(tolm.WaitForLog("Disabled Tolm timeout"));
    EXPECT_EQ(tolm.State("/advancedOptions/UserVars/TolmTimeOut/value"), 0);
}

TEST(Troubleshooting, RestartManagementAgents)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(SelectEntry(tolm, "Restart Management Agents", 4));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Restart management agents now?"));
    EXPECT_TRUE(tolm.HasText("Restart Management Agents: Confirm"));
    ASSERT_TRUE(Settle(tolm));

    // Enter does nothing here; Esc restarts nothing.
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Settle(tolm));
    EXPECT_TRUE(tolm.HasText("Restart management agents now?"));
    tolm.SendEsc();
    ASSERT_TRUE(tolm.WaitForTextGone("Restart management agents now?"));
    EXPECT_EQ(tolm.State("/tools/counts/services-stop"), nullptr);

    // Checked and unchecked again: no live core.
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("[ ] Collect extra troubleshooting information"));
    ASSERT_TRUE(Settle(tolm));
    tolm.Type("  ");
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::F11);
    ASSERT_TRUE(tolm.WaitForText(AGENTS_DONE));
    EXPECT_TRUE(tolm.HasText("Stopping management agents. Done."));
    EXPECT_FALSE(tolm.HasText("Collecting host agent live core"));
    EXPECT_EQ(tolm.State("/services/agents/restarts"), 1);
    EXPECT_TRUE(tolm.WaitForLog("Restarting host agents"));
    EXPECT_TRUE(tolm.WaitForEvent("@&!*@*@(evt.user.tolm.restarting.hostagents)Restarting host agents"));
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone(AGENTS_DONE));

    // With the live core: a core in the log folder and an alert when done.
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("[ ] Collect extra"));
    ASSERT_TRUE(Settle(tolm));
    tolm.Type(" ");
    ASSERT_TRUE(tolm.WaitForText("[X] Collect extra"));
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::F11);
    ASSERT_TRUE(tolm.WaitForText("Collecting host agent live core information. Done."));
    ASSERT_TRUE(tolm.WaitForText(AGENTS_DONE));
    EXPECT_TRUE(tolm.WaitForLog("Executing tarnbacktrace -c against hagentd"));
    ASSERT_TRUE(tolm.WaitUntil(
        [&] { return tolm.State("/system/alerts").dump().find("Hagentd core dump completed") != std::string::npos; },
        "core dump alert"));
    int cores = 0;
    for (const auto& file : std::filesystem::directory_iterator(tolm.RootPath("/var/log")))
        cores += std::regex_match(file.path().filename().string(), std::regex(R"(hagentd-restart\d+\.core)"));
    EXPECT_EQ(cores, 1);
    EXPECT_EQ(tolm.State("/services/agents/restarts"), 2);
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForTextGone(AGENTS_DONE));

    // Without the tool the restart still happens and the failure is logged.
    std::filesystem::remove(tolm.RootPath("/sbin/tarnbacktrace"));
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("[ ] Collect extra"));
    ASSERT_TRUE(Settle(tolm));
    tolm.Type(" ");
    ASSERT_TRUE(tolm.WaitForText("[X] Collect extra"));
    ASSERT_TRUE(Settle(tolm));
    tolm.Press(Key::F11);
    ASSERT_TRUE(tolm.WaitForText(AGENTS_DONE));
    EXPECT_TRUE(tolm.WaitForLog("tarnbacktrace failed, probably hagentd was down"));
    EXPECT_EQ(tolm.State("/services/agents/restarts"), 3);
}

}  // namespace
}  // namespace Tolm::E2E

// Troubleshooting options: switching the shell and SSH, their timeouts and
// the console's own, and restarting the management agents.
#include <csignal>

#include "Steps.h"
#include "harness/Process.h"

namespace Tolm::E2E {
namespace {

constexpr const char* TIMEOUTS = "Modify Talvo Shell and SSH timeouts";
constexpr const char* TIMEOUTS_TITLE = "Modify Talvo Shell and SSH";  // wrapped in the right pane
constexpr const char* TOLM_TIMEOUT = "Modify Tolm idle timeout";
constexpr const char* INVALID = "Invalid timeout value";
constexpr const char* AGENTS_DONE = "Starting management agents. Done.";

// From the status screen into the troubleshooting screen as root.
bool OpenTroubleshooting(Console& tolm)
{
    return LogInToMenu(tolm) && OpenEntry(tolm, "Troubleshooting Options") && tolm.WaitForText(TOLM_TIMEOUT) &&
           Settle(tolm);
}

// Down `downs` times, then the entry `title` heads the right pane.
bool Select(Console& tolm, const std::string& title, int downs = 0)
{
    tolm.Press(Key::Down, downs);
    return tolm.WaitForRow(1, "  " + title + "( |$)") && Settle(tolm);
}

// Enter opens the selected entry's dialog; it is up once `label`'s field
// shows `value`.
bool OpenWith(Console& tolm, std::string_view label, const std::string& value)
{
    tolm.Press(Key::Enter);
    return FieldShows(tolm, label, value) && Settle(tolm);
}

// Enter is refused with the message box, which Enter closes.
bool Refused(Console& tolm)
{
    tolm.Press(Key::Enter);
    return Dismiss(tolm, INVALID, INVALID);
}

nlohmann::json Option(const Console& tolm, const std::string& name)
{
    return tolm.State("/advancedOptions/UserVars/" + name + "/value");
}

TEST(Troubleshooting, SshAndShellFollowTheHost)
{
    Console tolm(OnTerm("xterm-256color"));
    tolm.Start();
    ASSERT_TRUE(OpenTroubleshooting(tolm));

    // SSH on: entry, pane, services, ruleset and log follow.
    ASSERT_TRUE(Select(tolm, "SSH Support", 1));
    EXPECT_TRUE(tolm.HasText("SSH is Disabled"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("SSH is Enabled"));
    EXPECT_TRUE(tolm.HasText("Disable SSH"));
    EXPECT_EQ(tolm.State("/services/ssh"), nlohmann::json::parse(R"({"enabled": true, "running": true})"));
    EXPECT_EQ(tolm.State("/system/firewall/rulesets/sshServer/enabled"), true);
    EXPECT_TRUE(tolm.WaitForLog("User root enabled SSH"));

    // While SSH runs the timeouts entry is dark grey and skipped.
    const Pos grey = *tolm.FindText(TIMEOUTS);
    EXPECT_EQ(tolm.CellAt(grey.col, grey.row).fg, 6);
    ASSERT_TRUE(Select(tolm, TOLM_TIMEOUT, 1));
    tolm.Press(Key::Up);
    ASSERT_TRUE(Select(tolm, "SSH Support"));

    // A failing stop command: the init script stops SSH all the same.
    tolm.SetValue("/faults/hostsvc~1stop_ssh", "agent busy");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("SSH is Disabled"));
    EXPECT_TRUE(tolm.HasText("Enable SSH"));
    EXPECT_TRUE(tolm.WaitForLog("Unable to run orla-cmd to start/stop ssh"));
    EXPECT_TRUE(tolm.WaitForLog("User root disabled SSH"));
    EXPECT_EQ(tolm.State("/services/ssh/running"), false);
    EXPECT_EQ(tolm.State("/tools/counts/SSH-stop"), 1);
    EXPECT_EQ(tolm.State("/system/firewall/rulesets/sshServer/enabled"), false);
    // Both off: the timeouts can be changed again.
    ASSERT_TRUE(Select(tolm, TIMEOUTS_TITLE, 1));

    // The shell alone greys the entry out too, and leaves the ruleset alone.
    tolm.Press(Key::Up, 2);
    ASSERT_TRUE(Select(tolm, "Talvo Shell"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForText("Talvo Shell is Enabled"));
    EXPECT_TRUE(tolm.WaitForLog("User root enabled Talvo Shell"));
    EXPECT_EQ(tolm.State("/services/shell/running"), true);
    EXPECT_EQ(tolm.State("/system/firewall/rulesets/sshServer/enabled"), false);
    ASSERT_TRUE(Select(tolm, TOLM_TIMEOUT, 2));

    tolm.SendEsc();
    EXPECT_TRUE(ShowsEntry(tolm, "Troubleshooting Options"));
}

TEST(Troubleshooting, ShellTimeouts)
{
    Console tolm("typical");
    tolm.SetValue("/advancedOptions/UserVars/TalvoShellInteractiveTimeOut/value", 900);
    tolm.Start();
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(Select(tolm, TIMEOUTS_TITLE, 2));
    ASSERT_TRUE(OpenWith(tolm, "Idle timeout", "15"));
    EXPECT_TRUE(FieldShows(tolm, "Availability timeout", "0"));

    // Letters and "-" never enter a field. Rows are taken in order: 1440
    // minutes are stored as 86400 seconds and SSH, started behind the
    // dialog's back, is restarted to see them; then 1441 in the idle row
    // gives the message box and closes the dialog without writing it.
    tolm.SetValue("/services/ssh/running", true);
    Retype(tolm, "-1a4x40");
    tolm.Press(Key::Down);
    Retype(tolm, "1441");
    ASSERT_TRUE(Refused(tolm));
    ASSERT_TRUE(Select(tolm, TIMEOUTS_TITLE));
    EXPECT_TRUE(tolm.WaitForLog("Modified Shell timeout to 1440 minutes"));
    EXPECT_EQ(Option(tolm, "TalvoShellTimeOut"), 86400);
    EXPECT_EQ(Option(tolm, "TalvoShellInteractiveTimeOut"), 900);
    EXPECT_EQ(tolm.State("/tools/counts/SSH-restart"), 1);
    EXPECT_EQ(tolm.State("/tools/counts/TalvoShell-restart"), nullptr);
    tolm.SetValue("/services/ssh/running", false);

    // 0 disables the idle timeout; the unchanged availability row writes nothing.
    ASSERT_TRUE(OpenWith(tolm, "Availability timeout", "1440"));
    tolm.Press(Key::Down);
    Retype(tolm, "0");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Disabled shell interactive timeout"));
    EXPECT_EQ(Option(tolm, "TalvoShellInteractiveTimeOut"), 0);
    EXPECT_EQ(tolm.State("/tools/counts/advancedSet"), 2);

    // With talvocli failing nodecli writes the value; the unchanged idle row
    // writes nothing.
    tolm.SetValue("/faults/talvocli", "connection refused");
    ASSERT_TRUE(Select(tolm, TIMEOUTS_TITLE));
    ASSERT_TRUE(OpenWith(tolm, "Availability timeout", "1440"));
    Retype(tolm, "0");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Disabled Shell timeout"));
    EXPECT_EQ(Option(tolm, "TalvoShellTimeOut"), 0);
    EXPECT_EQ(tolm.State("/tools/counts/advancedSet"), 3);
}

TEST(Troubleshooting, TolmIdleTimeoutCountsAtOnce)
{
    Console tolm("typical");
    // No timeout for the session as it starts.
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 0);
    tolm.UseFakeTime("+0 x60");
    tolm.Start();
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(Select(tolm, TOLM_TIMEOUT, 3));
    ASSERT_TRUE(OpenWith(tolm, "Tolm idle timeout", "0"));
    Retype(tolm, "1441");
    ASSERT_TRUE(Refused(tolm));
    ASSERT_TRUE(Select(tolm, TOLM_TIMEOUT));
    EXPECT_EQ(Option(tolm, "TolmTimeOut"), 0);

    // One minute, from now on: the session ends a (fast) minute later.
    ASSERT_TRUE(OpenWith(tolm, "Tolm idle timeout", "0"));
    Retype(tolm, "1");
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("Modified Tolm timeout to 1 minutes"));
    EXPECT_EQ(Option(tolm, "TolmTimeOut"), 60);
    EXPECT_TRUE(tolm.WaitForLog("User root logged out."));
    ASSERT_TRUE(tolm.WaitForText("Download tools to manage this host from:"));

    // 0 disables it.
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 1200);
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(Select(tolm, TOLM_TIMEOUT, 3));
    ASSERT_TRUE(OpenWith(tolm, "Tolm idle timeout", "20"));
    Retype(tolm, "0");
    tolm.Press(Key::Enter);
    EXPECT_TRUE(tolm.WaitForLog("Disabled Tolm timeout"));
    EXPECT_EQ(Option(tolm, "TolmTimeOut"), 0);
}

// Opens the restart dialog, sets its check box, restarts and waits for the
// end. `spaces` toggles the box that many times.
bool RestartAgents(Console& tolm, int spaces)
{
    if (!PressFor(tolm, Key::Enter, "[ ] Collect extra troubleshooting information")) return false;
    tolm.Type(std::string(static_cast<size_t>(spaces), ' '));
    if (!tolm.WaitForText(spaces % 2 ? "[X] Collect" : "[ ] Collect") || !Settle(tolm)) return false;
    tolm.Press(Key::F11);
    if (!tolm.WaitForText(AGENTS_DONE) || !tolm.HasText("Stopping management agents. Done.") || !Settle(tolm))
        return false;
    // The live-core line only when a thread was started for it.
    if (tolm.HasText("Collecting host agent live core information. Done.") != (spaces % 2 == 1)) return false;
    return PressGone(tolm, Key::Enter, AGENTS_DONE);
}

TEST(Troubleshooting, RestartManagementAgents)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(OpenTroubleshooting(tolm));
    ASSERT_TRUE(Select(tolm, "Restart Management Agents", 4));

    // Enter does nothing on the question; Esc restarts nothing.
    ASSERT_TRUE(PressFor(tolm, Key::Enter, "Restart management agents now?"));
    tolm.Press(Key::Enter);
    ASSERT_TRUE(Settle(tolm) && PressGone(tolm, Key::Esc, "Restart management agents now?"));
    EXPECT_EQ(tolm.State("/tools/counts/services-stop"), nullptr);

    // Checked and unchecked again: no live core.
    ASSERT_TRUE(RestartAgents(tolm, 2));
    EXPECT_EQ(tolm.State("/services/agents/restarts"), 1);
    EXPECT_TRUE(tolm.WaitForLog("Restarting host agents"));
    EXPECT_TRUE(tolm.WaitForEvent("@&!*@*@(evt.user.tolm.restarting.hostagents)Restarting host agents"));
    EXPECT_EQ(Count(tolm.Syslog(), "tarnbacktrace"), 0u);

    // With the live core: a core in the log folder and an alert when done.
    ASSERT_TRUE(RestartAgents(tolm, 1));
    EXPECT_TRUE(tolm.WaitForLog("Executing tarnbacktrace -c against hagentd"));
    ASSERT_TRUE(tolm.WaitUntil(
        [&] { return tolm.State("/system/alerts").dump().find("Hagentd core dump completed") != std::string::npos; },
        "core dump alert"));
    int cores = 0;
    for (const auto& file : std::filesystem::directory_iterator(tolm.RootPath("/var/log")))
        cores += std::regex_match(file.path().filename().string(), std::regex(R"(hagentd-restart\d+\.core)"));
    EXPECT_EQ(cores, 1);
    EXPECT_EQ(tolm.State("/services/agents/restarts"), 2);

    // Without the tool the restart still happens and the failure is logged.
    std::filesystem::remove(tolm.RootPath("/sbin/tarnbacktrace"));
    ASSERT_TRUE(RestartAgents(tolm, 1));
    EXPECT_TRUE(tolm.WaitForLog("tarnbacktrace failed, probably hagentd was down"));
    EXPECT_EQ(tolm.State("/services/agents/restarts"), 3);
}

// Processes still running whose command line names the root.
int LeftInRoot(const Console& tolm)
{
    int left = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string cmdline = ReadFile(entry.path() / "cmdline");
        left += cmdline.find(tolm.Root().string()) != std::string::npos;
    }
    return left;
}

// A host program that never ends does not hold up a terminate signal: the
// console ends with status 0, takes the program with it and leaves the
// terminal's own screen back.
TEST(Troubleshooting, TerminateEndsTheConsoleWhileAHostProgramHangs)
{
    for (const std::string tool : {"orla-cmd", "services.sh"}) {
        SCOPED_TRACE(tool);
        Console tolm("typical");
        tolm.Start();
        if (tool == "orla-cmd") {
            // The menu asks the agent about lockdown mode as it opens.
            tolm.SetValue("/tools/hang", {{tool, true}});
            ASSERT_TRUE(Started(tolm) && OpenLogin(tolm));
            tolm.Press(Key::Tab);
            tolm.Type(ROOT_PASSWORD);
            tolm.Press(Key::Enter);
            ASSERT_TRUE(tolm.WaitForLog("orla-cmd invocation: get orlasvc/auth/lockdown_is_enabled"));
        } else {
            ASSERT_TRUE(OpenTroubleshooting(tolm) && Select(tolm, "Restart Management Agents", 4));
            tolm.SetValue("/tools/hang", {{tool, true}});
            tolm.Press(Key::Enter);
            ASSERT_TRUE(tolm.WaitForText("[ ] Collect extra troubleshooting information") && Settle(tolm));
            tolm.Press(Key::F11);
            ASSERT_TRUE(tolm.WaitForText("Stopping management agents."));
        }
        ASSERT_TRUE(tolm.WaitUntil([&] { return LeftInRoot(tolm) > 0; }, "the hung program"));
        tolm.Signal(SIGTERM);
        EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
        EXPECT_TRUE(tolm.WaitUntil([&] { return LeftInRoot(tolm) == 0; }, "the hung program ended"));
        EXPECT_NE(tolm.RawOutput().rfind("\033[?1049l"), std::string::npos);
    }
}

}  // namespace
}  // namespace Tolm::E2E

// Shutting down and restarting the host from the status screen's F12, and
// the reset of the system configuration from the menu.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Steps.h"

namespace Tolm::E2E {
namespace {

constexpr const char* SHUTDOWN_TITLE = "Shut Down/Restart";

// Two running machines: one suspends by its policy, one powers off.
void AddRunningVms(Console& tolm)
{
    tolm.SetValue("/vms", nlohmann::json::array({
                              {{"name", "web"}, {"powerState", "poweredOn"}, {"shutdownPolicy", "suspend"}},
                              {{"name", "db"}, {"powerState", "poweredOn"}},
                          }));
}

// Whether every needle is in `text`, in order.
bool InOrder(const std::string& text, std::initializer_list<const char*> needles)
{
    size_t at = 0;
    for (const char* needle : needles) {
        at = text.find(needle, at);
        if (at == std::string::npos) return false;
        ++at;
    }
    return true;
}

struct PowerCase {
    const char* name;
    Key key;
    bool force;
    bool events;  // whether the event facility is up
    const char* logLine;
    const char* event;
    const char* progress;
    const char* powerState;
    const char* webState;  // the machine whose policy is to suspend
};

// Keeps test listings readable (the default prints the struct's bytes).
void PrintTo(const PowerCase& c, std::ostream* os) { *os << c.name; }

class PowerTest : public ::testing::TestWithParam<PowerCase> {};

TEST_P(PowerTest, StopsVmsRunsTheCommandAndEnds)
{
    const PowerCase& c = GetParam();
    Console tolm("typical");
    AddRunningVms(tolm);
    tolm.SetValue("/eventFacility/available", c.events);
    tolm.Start();
    ASSERT_TRUE(LogIn(tolm, Key::F12));
    ASSERT_TRUE(tolm.WaitForText(SHUTDOWN_TITLE));
    ASSERT_TRUE(tolm.WaitForText("[ ] Forcefully terminate running VMs"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    // Space twice leaves the box clear; once more checks it.
    tolm.Type("  ");
    EXPECT_TRUE(tolm.WaitForQuiet());
    if (c.force) tolm.Type(" ");
    EXPECT_TRUE(tolm.WaitForText(c.force ? "[X] Forcefully" : "[ ] Forcefully"));
    ASSERT_TRUE(tolm.WaitForQuiet());

    tolm.Press(c.key);
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    // The progress text was drawn before the host went down.
    EXPECT_NE(tolm.RawOutput().find(c.progress), std::string::npos);
    EXPECT_EQ(tolm.State("/power/state"), c.powerState);
    EXPECT_EQ(tolm.State("/vms/0/powerState"), c.webState);
    EXPECT_EQ(tolm.State("/vms/1/powerState"), "poweredOff");
    EXPECT_EQ(tolm.State("/tools/counts/autostop"), 1);
    EXPECT_EQ(tolm.State(c.force ? "/tools/counts/powerOffVmsTerminate" : "/tools/counts/powerOffVms"), 1);
    // Without the event facility the host still goes down.
    EXPECT_TRUE(InOrder(tolm.Syslog(), {"User root logged in", c.logLine,
                                        c.events ? "Initializing evtuser library" : "Unable to initialize evtuser"}))
        << tolm.Syslog();
    if (c.events) {
        EXPECT_TRUE(tolm.WaitForEvent(std::string("@&!*@*@(") + c.event + ")" + c.logLine));
    } else {
        EXPECT_EQ(tolm.EventLog().find(c.event), std::string::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(
    System, PowerTest,
    // Each key once, each state of the box once.
    ::testing::Values(PowerCase{"ShutDown", Key::F2, false, true, "Shutting down host", "evt.user.tolm.shutdown.host",
                                "Shutdown in progress...", "poweredOff", "suspended"},
                      PowerCase{"RestartForcedWithoutEvents", Key::F11, true, false, "Rebooting host",
                                "evt.user.tolm.reboot.host", "Restart in progress...", "restarting", "poweredOff"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Shutdown, EscChangesNothingAndAFailingCommandKeepsTheProgressShown)
{
    Console tolm("typical");
    AddRunningVms(tolm);
    tolm.Start();
    ASSERT_TRUE(LogIn(tolm, Key::F12));
    ASSERT_TRUE(tolm.WaitForText("Forcefully terminate running VMs") && Settle(tolm));
    const std::string syslog = tolm.Syslog();
    const std::string events = tolm.EventLog();
    tolm.Press(Key::Enter);  // ignored
    ASSERT_TRUE(PressGone(tolm, Key::Esc, "Forcefully terminate running VMs"));
    EXPECT_EQ(tolm.Syslog(), syslog);
    EXPECT_EQ(tolm.EventLog(), events);
    EXPECT_EQ(tolm.State("/power/state"), "running");
    EXPECT_EQ(tolm.State("/vms/0/powerState"), "poweredOn");

    // A poweroff that changes nothing: the console waits for the host.
    {
        std::ofstream tool(tolm.RootPath("/sbin/poweroff"), std::ios::trunc);
        tool << "#!/bin/sh\nexit 1\n";
    }
    ASSERT_TRUE(LogIn(tolm, Key::F12));
    ASSERT_TRUE(tolm.WaitForText("Forcefully terminate running VMs") && Settle(tolm));
    tolm.Press(Key::F2);
    ASSERT_TRUE(tolm.WaitForText("Shutdown in progress..."));
    tolm.Press(Key::Enter);
    tolm.SendEsc();
    EXPECT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.HasText("Shutdown in progress..."));
    EXPECT_TRUE(tolm.Running());
    EXPECT_EQ(tolm.State("/power/state"), "running");
    EXPECT_TRUE(tolm.WaitForLog("Shutting down host"));
}

TEST(Reset, F11ResetsKeysTypedMeanwhileAreDiscardedThenOnlyEnterRestarts)
{
    Console tolm("typical");
    tolm.SetValue("/system/keyboard/current", "US Dvorak");
    tolm.SetValue("/network/dns/hostname", "changed");
    // The reset tool waits until the test opens its gate.
    const std::string tool = tolm.RootPath("/sbin/firmwareConfig.sh").string();
    const std::string gate = tolm.RootPath("/tmp/reset-gate").string();
    std::filesystem::create_directories(tolm.RootPath("/tmp"));
    ASSERT_EQ(mkfifo(gate.c_str(), 0600), 0);
    std::filesystem::rename(tool, tool + ".real");
    std::ofstream(tool) << "#!/bin/sh\ncat '" << gate << "' >/dev/null\nexec '" << tool << ".real' \"$@\"\n";
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    tolm.Press(Key::Up);  // wraps nowhere: stays on the first entry
    tolm.Press(Key::Down, 10);
    ASSERT_TRUE(ShowsEntry(tolm, "Reset System Configuration"));
    ASSERT_TRUE(Settle(tolm) && PressFor(tolm, Key::Enter, "Reset System Configuration now?"));
    EXPECT_TRUE(tolm.HasText("Reset System Configuration: Confirm"));
    tolm.Press(Key::Enter);  // not the confirmation key
    EXPECT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.HasText("Reset System Configuration now?"));
    tolm.Press(Key::F11);
    ASSERT_TRUE(tolm.WaitForText("Please wait while the default settings are restored."));

    // An impatient Enter while the tool runs.
    tolm.Press(Key::Enter);
    int fd = -1;
    ASSERT_TRUE(tolm.WaitUntil([&] { return (fd = open(gate.c_str(), O_WRONLY | O_NONBLOCK)) >= 0; }, "tool waits"));
    close(fd);
    ASSERT_TRUE(tolm.WaitForText("Default settings are restored. Press <Enter> to"));
    EXPECT_TRUE(tolm.WaitForText("<Enter> Restart Host") && Settle(tolm));
    EXPECT_TRUE(tolm.Running());
    EXPECT_EQ(tolm.State("/tools/counts/factoryReset"), 1);
    EXPECT_EQ(tolm.State("/system/keyboard/current"), "US Default");
    EXPECT_NE(tolm.State("/network/dns/hostname"), "changed");
    EXPECT_TRUE(InOrder(tolm.Syslog(), {"Restoring factory defaults", "Initializing evtuser library"}));
    EXPECT_TRUE(tolm.WaitForEvent("@&!*@*@(evt.user.tolm.restore.factory.defaults)Restoring factory defaults"));

    tolm.SendEsc();  // ignored
    tolm.Press(Key::F11);
    EXPECT_TRUE(tolm.WaitForQuiet());
    EXPECT_EQ(tolm.State("/power/state"), "running");
    tolm.Press(Key::Enter);
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    EXPECT_EQ(tolm.State("/power/state"), "restarting");
    EXPECT_EQ(tolm.State("/tools/counts/rebootForced"), 1);
}

}  // namespace
}  // namespace Tolm::E2E

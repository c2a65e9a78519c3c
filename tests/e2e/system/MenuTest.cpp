// The System Customization menu: which entries can be chosen on different
// hosts, the dialogs they open, the help pane, support pages and the log
// viewer.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

// The panes' footers sit on the menu's last line inside the frame.
constexpr int FOOTER_ROW = -3;

TEST(SystemMenu, EntriesFollowTheHost)
{
    // Typical host: DriverVM supported here, management usable, no PXE boot.
    Console tolm("typical");
    tolm.SetValue("/system/driverVm/supported", true);
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    EXPECT_TRUE(tolm.WaitForRow(FOOTER_ROW, "<Up/Down> Select +<Enter> Change +<Esc> Log Out"));
    EXPECT_TRUE(tolm.WaitForLog("orla-cmd invocation: get orlasvc/auth/lockdown_is_possible"));

    // Every enabled entry in order, the spacers skipped; the dialogs that
    // exist open with Enter and give the entry back on Esc. Closing a dialog
    // only redraws the menu: a hung management agent must not hold up every
    // return, so only the refresh signal asks the host again.
    struct Entry {
        const char* name;
        const char* opens = nullptr;
    };
    const Entry order[] = {{"Configure Password", "Old Password:"},
                           {"Configure Lockdown Mode", "Enable lockdown mode"},
                           {"Configure DriverVM Devices"},
                           {"Configure Management Network"},
                           {"Restart Management Network"},
                           {"Test Management Network"},
                           {"Network Restore Options"},
                           {"Configure Keyboard", "(o) US Default"},
                           {"Troubleshooting Options"},
                           {"View System Logs"},
                           {"View Support Information"},
                           {"Reset System Configuration"}};
    for (const Entry& entry : order) {
        SCOPED_TRACE(entry.name);
        if (entry.name != order[0].name) tolm.Press(Key::Down);
        ASSERT_TRUE(ShowsEntry(tolm, entry.name));
        if (!entry.opens) continue;
        ASSERT_TRUE(Settle(tolm) && PressFor(tolm, Key::Enter, entry.opens));
        EXPECT_TRUE(PressGone(tolm, Key::Esc, entry.opens));
        EXPECT_TRUE(ShowsEntry(tolm, entry.name));
    }
    EXPECT_EQ(Count(tolm.Syslog(), "get orlasvc/auth/lockdown_is_possible"), 1u);
    // The help pane and footer follow the selection.
    EXPECT_TRUE(tolm.WaitForText("All system parameters will be"));
    EXPECT_TRUE(tolm.WaitForRow(FOOTER_ROW, "<Enter> Reset +<Esc> Log Out"));
    tolm.Press(Key::Down);  // last row: stays
    EXPECT_TRUE(ShowsEntry(tolm, "Reset System Configuration"));
    tolm.Press(Key::Up, 8);
    ASSERT_TRUE(ShowsEntry(tolm, "Configure Management Network"));
    EXPECT_TRUE(tolm.WaitForText("192.168.10.21"));  // its current address
    EXPECT_TRUE(tolm.WaitForRow(FOOTER_ROW, "<Enter> More +<Esc> Log Out"));
    tolm.Press(Key::Down);
    EXPECT_TRUE(tolm.WaitForRow(FOOTER_ROW, "<Enter> Restart +<Esc> Log Out"));
    EXPECT_TRUE(tolm.WaitForTextGone("192.168.10.21"));
}

TEST(SystemMenu, UnusableManagementInterfaceSkipsTheNetworkEntries)
{
    // The adapterless host has a management interface on a switch without
    // uplinks; lockdown is neither on nor possible there.
    Console tolm("no-adapter");
    tolm.SetValue("/system/driverVm/supported", true);
    tolm.SetValue("/system/lockdown", nlohmann::json{{"enabled", false}, {"possible", false}});
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    tolm.Press(Key::Down);
    ASSERT_TRUE(ShowsEntry(tolm, "Configure DriverVM Devices"));  // lockdown skipped
    tolm.Press(Key::Down);
    EXPECT_TRUE(ShowsEntry(tolm, "Network Restore Options"));
    tolm.Press(Key::Up);
    EXPECT_TRUE(ShowsEntry(tolm, "Configure DriverVM Devices"));
}

TEST(SystemMenu, FailedInterfaceLookupAndPxeBootDisableEntries)
{
    Console tolm("typical");
    tolm.SetValue("/faults/GetManagementInterface", "no management interface");
    tolm.SetValue("/userOptions/PXEBootEnabled", "1");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    EXPECT_TRUE(tolm.WaitForLog("Getting management interface failed: no management interface"));
    tolm.Press(Key::Down, 2);  // DriverVM unsupported, network entries off
    EXPECT_TRUE(ShowsEntry(tolm, "Network Restore Options"));
    tolm.Press(Key::Down, 12);
    EXPECT_TRUE(ShowsEntry(tolm, "View Support Information"));
    EXPECT_TRUE(tolm.HasText("Reset System Configuration"));  // drawn, not reachable

    // The refresh signal reads the host again: the interface is back.
    tolm.HostSim({"set", "/faults", "{}"});
    tolm.Signal(SIGUSR1);
    ASSERT_TRUE(tolm.WaitUntil([&] { return Count(tolm.Syslog(), "get orlasvc/auth/lockdown_is_enabled") == 2; },
                               "the menu read the host again"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Up, 5);
    EXPECT_TRUE(ShowsEntry(tolm, "Test Management Network"));
}

TEST(SystemMenu, LogViewerAndSupportPages)
{
    Console tolm("typical");
    std::filesystem::remove(tolm.RootPath("/var/log/tarn.log"));
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    tolm.Press(Key::Down, 8);
    ASSERT_TRUE(ShowsEntry(tolm, "View System Logs"));
    EXPECT_TRUE(tolm.WaitForText("<F7> Pellor Talvo Observation log") && Settle(tolm));

    // A missing log, or a pager that cannot start: a log line, and the menu
    // goes on. The whole menu is drawn again after it, and keys sent before
    // that are dropped, so the next key waits for the repaint.
    const auto failedView = [&](Key key, const std::string& line) {
        const size_t before = tolm.RawOutput().size();
        tolm.Press(key);
        EXPECT_TRUE(tolm.WaitForLog(line));
        EXPECT_TRUE(tolm.WaitUntil([&] { return tolm.RawOutput().size() > before + 1000; }, "menu repainted"));
        EXPECT_TRUE(tolm.WaitForQuiet());
    };
    failedView(Key::F2, "Cannot view log /var/log/tarn.log");
    std::filesystem::remove(tolm.RootPath("/bin/less"));
    failedView(Key::F7, "Could not run /bin/less on /var/log/evtd.log");

    // Support pages turn with the page keys and stop at either end.
    tolm.Press(Key::Down);
    ASSERT_TRUE(ShowsEntry(tolm, "View Support Information \\(1/3\\)"));
    EXPECT_TRUE(tolm.WaitForText("Contacting support"));
    EXPECT_TRUE(tolm.WaitForRow(FOOTER_ROW, "<Page Up> <Page Down> +<Esc> Log Out"));
    tolm.Press(Key::PageUp);
    tolm.Press(Key::PageDown);
    EXPECT_TRUE(ShowsEntry(tolm, "View Support Information \\(2/3\\)"));
    tolm.Press(Key::PageDown, 3);
    EXPECT_TRUE(ShowsEntry(tolm, "View Support Information \\(3/3\\)"));
    EXPECT_TRUE(tolm.WaitForText("Licensing"));
    EXPECT_FALSE(tolm.HasText("Contacting support"));
    tolm.Press(Key::PageUp, 2);
    EXPECT_TRUE(ShowsEntry(tolm, "View Support Information \\(1/3\\)"));

    // Log keys belong to the log entry, page keys to the support entry.
    tolm.Press(Key::F1);
    tolm.Press(Key::Up);
    tolm.Press(Key::PageDown);
    EXPECT_TRUE(ShowsEntry(tolm, "View System Logs"));
    EXPECT_TRUE(tolm.WaitForQuiet());
    EXPECT_FALSE(tolm.HasText("RegExp Search"));
}

TEST(SystemMenu, AKeySendsOneUpdateOfWhatChanged)
{
    // Over a serial line every byte counts: moving the highlight repaints
    // neither the screen nor the windows in passes, only the changed cells.
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(LogInToMenu(tolm));
    const size_t before = tolm.RawOutput().size();
    tolm.Press(Key::Down);
    ASSERT_TRUE(ShowsEntry(tolm, "Configure Lockdown Mode"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    const std::string sent = tolm.RawOutput().substr(before);
    EXPECT_LT(sent.size(), 700u);
    EXPECT_EQ(sent.find("\x1b[2J"), std::string::npos);
    EXPECT_EQ(sent.find("\x1b[J"), std::string::npos);
}

}  // namespace
}  // namespace Tolm::E2E

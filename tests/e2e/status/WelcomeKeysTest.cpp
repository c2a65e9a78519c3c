// The status screen's keys and sessions: the notice when logging in is
// switched off, dimming, restart requests and which terminals count as the
// local console. The idle timeout is met in the troubleshooting tests.

#include "Steps.h"

namespace Tolm::E2E {
namespace {

constexpr const char* DENIED_TITLE = "Authentication Denied";

TEST(StatusKeys, LoginSwitchedOffShowsOnlyTheNotice)
{
    Console tolm("typical");
    std::filesystem::remove(tolm.RootPath(LOGIN_FLAG));
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    // F2 as xterm sends it; other keys than Enter leave the notice open.
    ASSERT_TRUE(PressFor(tolm, Key::F2, "<Enter> OK"));  // the footer is written last
    EXPECT_TRUE(tolm.HasText(DENIED_TITLE));
    EXPECT_TRUE(tolm.HasText("Direct console access has been disabled by the"));
    EXPECT_TRUE(tolm.HasText("administrator for tarnhost01.lab.example.com."));
    EXPECT_FALSE(tolm.HasText("Login Name:"));
    tolm.Type("q");
    tolm.Press(Key::Down);
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.HasText(DENIED_TITLE));
    ASSERT_TRUE(PressGone(tolm, Key::Enter, DENIED_TITLE));

    // F12 in its serial form ESC "@", closed with Esc; a failed domain query
    // still names the host.
    tolm.Set("/faults", R"({"GetDomain": "resolver gone"})");
    tolm.PressSerial(Key::F12);
    ASSERT_TRUE(tolm.WaitForText("<Enter> OK") && Settle(tolm));
    EXPECT_TRUE(tolm.HasText("administrator for tarnhost01.."));
    EXPECT_TRUE(tolm.WaitForLog("Getting domain failed: resolver gone"));
    ASSERT_TRUE(PressGone(tolm, Key::Esc, DENIED_TITLE));
    EXPECT_TRUE(tolm.Running());
    EXPECT_EQ(tolm.Syslog().find("logged in"), std::string::npos);
}

TEST(StatusKeys, AfterAMinuteScreensDimTheNextKeyRepaintsThemARestartWaitsForTheLogout)
{
    Console tolm(OnTerm("xterm-256color"));
    // The idle timeout never applies to the status screen itself.
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 60);
    tolm.UseFakeTime("+0 x60");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    const Pos product = *tolm.FindText("Tarn Hypervisor");

    // Dark grey on black everywhere once a minute has passed.
    ASSERT_TRUE(tolm.WaitUntil(
        [&] {
            const Cell c = tolm.CellAt(product.col, product.row);
            return c.fg == 6 && (c.bg == 0 || c.bg == kDefaultColor) && tolm.CellAt(0, -1).fg == 6;
        },
        "dimmed screen"));
    // Minutes later (two seconds at this speed) it is still the status screen.
    ASSERT_TRUE(tolm.WaitForQuiet(2s));
    EXPECT_TRUE(tolm.Running());

    tolm.Type("z");
    EXPECT_TRUE(tolm.WaitUntil(
        [&] { return tolm.CellAt(product.col, product.row).fg == 7 && tolm.CellAt(0, 0).bg == 6; }, "repainted"));
    EXPECT_TRUE(tolm.WaitForText("http://tarnhost01/"));  // the rest of the repaint may come in a later read

    // In the menu both panes dim and get their own colours back. Logging in
    // re-reads the timeout: none now.
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 0);
    ASSERT_TRUE(tolm.WaitForQuiet());
    ASSERT_TRUE(LogInToMenu(tolm));
    // Blank cells of the left (yellow) and right (dark grey) panes.
    const auto panes = [&](int left, int right) {
        return tolm.CellAt(20, 3).bg == left && tolm.CellAt(60, 3).bg == right;
    };
    ASSERT_TRUE(tolm.WaitUntil([&] { return panes(0, 0); }, "both panes dimmed"));
    // Dimming discards type-ahead; the key must come after it.
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Up);
    EXPECT_TRUE(tolm.WaitUntil([&] { return panes(3, 6); }, "pane colours restored"));

    // A restart request during a session waits for the logout.
    tolm.Signal(SIGUSR2);
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.Running());
    tolm.SendEsc();
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    EXPECT_NE(tolm.Syslog().find("User root logged out."), std::string::npos);
}

TEST(StatusKeys, OnlyXtermAndLinuxCountAsTheLocalConsole)
{
    // An unset TERM, or one the host does not describe, is a serial line
    // (no keyboard line in the login dialog); so is vt100, see the login tests.
    for (const char* term : {"xterm", "linux", "xterm-256color", "", "no-such-terminal"}) {
        SCOPED_TRACE(std::string("TERM=") + term);
        Console tolm(OnTerm(term));
        tolm.Start();
        ASSERT_TRUE(Started(tolm) && PressFor(tolm, Key::F2, "<Esc> Cancel"));
        const bool local = std::string(term) == "xterm" || std::string(term) == "linux";
        EXPECT_EQ(tolm.HasText("Configured Keyboard (US Default)"), local);
    }
}

TEST(StatusKeys, CtrlSIsAPlainKeyAndEndOfInputEndsTheConsole)
{
    // Flow control would stop every write after Ctrl-S until Ctrl-Q.
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(Started(tolm));
    const size_t before = tolm.RawOutput().size();
    tolm.SendBytes("\x13");
    ASSERT_TRUE(tolm.WaitUntil([&] { return tolm.RawOutput().size() > before; }, "the repaint after Ctrl-S"));
    ASSERT_TRUE(Settle(tolm));  // the repaint discards type-ahead
    ASSERT_TRUE(OpenLogin(tolm));
    tolm.SendBytes("\x11");
    EXPECT_TRUE(PressGone(tolm, Key::Esc, "Login Name:"));

    // Standard input at its end: the console ends instead of spinning.
    Console closed("typical");
    closed.StartShell("exec '" + (BinDir() / "tolm").string() + "' </dev/null");
    EXPECT_EQ(closed.WaitForExit(), ExitStatus::Exited(0));
}

}  // namespace
}  // namespace Tolm::E2E

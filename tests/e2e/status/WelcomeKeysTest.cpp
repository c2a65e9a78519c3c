// The status screen's keys and sessions: the way in through the login (or
// the notice that it is switched off), serial key forms, dimming, the idle
// timeout, restart requests, and what start-up leaves behind.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "StatusCommon.h"

namespace Tolm::E2E {
namespace {

constexpr const char* DENIED_TITLE = "Authentication Denied";
constexpr const char* DENIED_TEXT = "administrator for tarnhost01.lab.example.com.";

// Keys typed while a window is being drawn are discarded, so every step
// waits for the program to fall quiet first.
void LogIn(Console& tolm, Key key = Key::F2)
{
    tolm.Press(key);
    ASSERT_TRUE(tolm.WaitForText("<Esc> Cancel"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Tab);  // from the login name (already "root") to the password
    tolm.Type(ROOT_PASSWORD);
    tolm.Press(Key::Enter);
    ASSERT_TRUE(tolm.WaitForLog("User root logged in"));
}

// Logged in with F2: the menu is up and ready for keys.
void InMenu(Console& tolm)
{
    ASSERT_TRUE(tolm.WaitForText("<Esc> Log Out"));
    ASSERT_TRUE(tolm.WaitForQuiet());
}

void BackOnStatusScreen(Console& tolm)
{
    ASSERT_TRUE(tolm.WaitForText("Download tools to manage this host from:"));
    ASSERT_TRUE(tolm.WaitForQuiet());
}

TEST(StatusKeys, LoginSwitchedOffShowsOnlyTheNotice)
{
    Console tolm("typical");
    std::filesystem::remove(tolm.RootPath(LOGIN_FLAG));
    tolm.Start();
    ASSERT_TRUE(StatusUp(tolm));

    // F2 and F12 as xterm sends them, and their serial forms ESC "2" and ESC "@".
    int round = 0;
    for (bool serial : {false, true}) {
        for (Key key : {Key::F2, Key::F12}) {
            SCOPED_TRACE(std::string(KeyName(key)) + (serial ? " serial" : ""));
            serial ? tolm.PressSerial(key) : tolm.Press(key);
            // The footer is written last.
            ASSERT_TRUE(tolm.WaitForText("<Enter> OK"));
            EXPECT_TRUE(tolm.HasText(DENIED_TITLE));
            EXPECT_TRUE(tolm.HasText("Direct console access has been disabled by the"));
            EXPECT_TRUE(tolm.HasText(DENIED_TEXT));
            EXPECT_FALSE(tolm.HasText("Login Name:"));
            // Other keys leave it open; Enter or Esc close it.
            tolm.Type("q");
            tolm.Press(Key::Down);
            ASSERT_TRUE(tolm.WaitForQuiet());
            EXPECT_TRUE(tolm.HasText(DENIED_TITLE));
            (round++ % 2 == 0) ? tolm.Press(Key::Enter) : tolm.SendEsc();
            ASSERT_TRUE(tolm.WaitForTextGone(DENIED_TITLE));
            EXPECT_TRUE(tolm.WaitForText("Download tools to manage this host from:"));
            // Keys typed while a window draws are discarded.
            ASSERT_TRUE(tolm.WaitForQuiet());
        }
    }
    EXPECT_TRUE(tolm.Running());
    EXPECT_EQ(tolm.Syslog().find("logged in"), std::string::npos);
}

TEST(StatusKeys, NoticeNamesTheHostEvenWhenTheDomainQueryFails)
{
    Console tolm("typical");
    std::filesystem::remove(tolm.RootPath(LOGIN_FLAG));
    tolm.Set("/faults", R"({"GetDomain": "resolver gone"})");
    tolm.Start();
    ASSERT_TRUE(StatusUp(tolm));
    tolm.Press(Key::F2);
    ASSERT_TRUE(tolm.WaitForText("<Enter> OK"));
    EXPECT_TRUE(tolm.HasText("administrator for tarnhost01.."));
    EXPECT_TRUE(tolm.WaitForLog("Getting domain failed: resolver gone"));
    tolm.Press(Key::Enter);
    EXPECT_TRUE(tolm.WaitForTextGone(DENIED_TITLE));
}

TEST(StatusKeys, AfterAMinuteTheScreenDimsAndTheNextKeyRepaintsIt)
{
    ConsoleOptions options;
    options.fixture = "typical";
    options.term = "xterm-256color";
    Console tolm(options);
    // The idle timeout never applies to the status screen itself.
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 60);
    tolm.UseFakeTime("+0 x60");
    tolm.Start();
    ASSERT_TRUE(StatusUp(tolm));
    const Pos product = *tolm.FindText("Tarn Hypervisor");
    EXPECT_EQ(tolm.CellAt(0, 0).bg, 6);

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
    EXPECT_TRUE(tolm.HasText("http://tarnhost01/"));
}

TEST(StatusKeys, DimmedMenuGetsItsPaneColoursBackOnTheNextKey)
{
    ConsoleOptions options;
    options.fixture = "typical";
    options.term = "xterm-256color";
    Console tolm(options);
    tolm.UseFakeTime("+0 x60");
    tolm.Start();
    ASSERT_TRUE(StatusUp(tolm));
    LogIn(tolm);
    InMenu(tolm);
    // Blank cells of the left (yellow) and right (dark grey) panes.
    const auto panes = [&](int left, int right) {
        return tolm.CellAt(20, 3).bg == left && tolm.CellAt(60, 3).bg == right;
    };
    ASSERT_TRUE(tolm.WaitUntil([&] { return panes(0, 0); }, "both panes dimmed"));
    // Dimming discards type-ahead; the key must come after it.
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.Press(Key::Up);
    EXPECT_TRUE(tolm.WaitUntil([&] { return panes(3, 6); }, "pane colours restored"));
}

TEST(StatusKeys, SessionFromF2EndsWithLogoutAndF12LeadsToShutdown)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(StatusUp(tolm));

    LogIn(tolm, Key::F2);
    InMenu(tolm);
    tolm.SendEsc();  // log out of the menu
    BackOnStatusScreen(tolm);
    EXPECT_TRUE(tolm.WaitForLog("User root logged out."));

    // A cancelled login goes back to the status screen; a successful one
    // with F12 offers the shutdown dialog, not the menu.
    tolm.Press(Key::F12);
    ASSERT_TRUE(tolm.WaitForText("<Esc> Cancel"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    tolm.SendEsc();
    ASSERT_TRUE(tolm.WaitForTextGone("Login Name:"));
    BackOnStatusScreen(tolm);
    LogIn(tolm, Key::F12);
    EXPECT_TRUE(tolm.WaitForText("Restart"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_FALSE(tolm.HasText("System Customization"));
    EXPECT_TRUE(tolm.Running());
}

TEST(StatusKeys, IdleTimeoutEndsTheSessionAndTheScreenGoesOn)
{
    Console tolm("typical");
    tolm.SetValue("/advancedOptions/UserVars/TolmTimeOut/value", 120);
    tolm.UseFakeTime("+0 x60");
    tolm.Start();
    ASSERT_TRUE(StatusUp(tolm));
    LogIn(tolm);
    ASSERT_TRUE(tolm.WaitForText("<Esc> Log Out"));
    // Two simulated minutes later the session is gone.
    ASSERT_TRUE(tolm.WaitForLog("User root logged out."));
    BackOnStatusScreen(tolm);
    // The screen still answers keys.
    std::filesystem::remove(tolm.RootPath(LOGIN_FLAG));
    tolm.Press(Key::F2);
    EXPECT_TRUE(tolm.WaitForText(DENIED_TITLE));
}

TEST(StatusKeys, RestartRequestDuringASessionWaitsForTheLogout)
{
    Console tolm("typical");
    tolm.Start();
    ASSERT_TRUE(StatusUp(tolm));
    LogIn(tolm);
    InMenu(tolm);
    tolm.Signal(SIGUSR2);
    ASSERT_TRUE(tolm.WaitForQuiet());
    EXPECT_TRUE(tolm.Running());
    tolm.SendEsc();
    EXPECT_EQ(tolm.WaitForExit(), ExitStatus::Exited(0));
    EXPECT_NE(tolm.Syslog().find("User root logged out."), std::string::npos);
}

TEST(StatusKeys, SerialFormsReachTheLoginDialog)
{
    ConsoleOptions options;
    options.fixture = "typical";
    options.term = "vt100";
    Console tolm(options);
    tolm.Start();
    ASSERT_TRUE(StatusUp(tolm));
    tolm.PressSerial(Key::F2);
    ASSERT_TRUE(tolm.WaitForText("<Esc> Cancel"));
    ASSERT_TRUE(tolm.WaitForQuiet());
    // Over a serial line there is no keyboard line; DEL arrives as Backspace.
    EXPECT_FALSE(tolm.HasText("Configured Keyboard"));
    tolm.PressSerial(Key::End);  // ESC "k": keeps "root" and moves behind it
    tolm.Type("xy");
    tolm.SendBytes("\x7f");
    EXPECT_TRUE(tolm.WaitUntil([&] { return tolm.HasText("[ rootx") && !tolm.HasText("rootxy"); },
                               "the y taken back"));
}

TEST(StatusKeys, OnlyXtermAndLinuxCountAsTheLocalConsole)
{
    // An unset TERM, or one the host does not describe, is a serial line too.
    for (const char* term : {"xterm", "linux", "xterm-256color", "vt100", "", "no-such-terminal"}) {
        SCOPED_TRACE(std::string("TERM=") + term);
        ConsoleOptions options;
        options.fixture = "typical";
        options.term = term;
        Console tolm(options);
        tolm.Start();
        ASSERT_TRUE(StatusUp(tolm));
        tolm.Press(Key::F2);
        ASSERT_TRUE(tolm.WaitForText("<Esc> Cancel"));
        const bool local = std::string(term) == "xterm" || std::string(term) == "linux";
        EXPECT_EQ(tolm.HasText("Configured Keyboard (US Default)"), local);
    }
}

TEST(StatusKeys, PidFileThatNamesNoLiveProcessIsTakenOver)
{
    // A process that has surely ended.
    pid_t dead = fork();
    if (dead == 0) _exit(0);
    ASSERT_GT(dead, 0);
    waitpid(dead, nullptr, 0);

    for (const std::string& content : {std::string("0"), std::string("-42"), std::to_string(dead)}) {
        SCOPED_TRACE(content);
        Console tolm("typical");
        std::ofstream(tolm.RootPath("/var/run/tolm.pid")) << content;
        tolm.Start();
        ASSERT_TRUE(StatusUp(tolm));
        EXPECT_TRUE(tolm.WaitUntil([&] { return tolm.PidFile() == tolm.Pid(); }, "pid file rewritten"));
        EXPECT_EQ(tolm.Syslog().find("Attempt to run multiple"), std::string::npos);
    }
}

}  // namespace
}  // namespace Tolm::E2E

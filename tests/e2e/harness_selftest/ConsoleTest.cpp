// The harness checked against plain shell scripts on the pseudo-terminal, so
// that a failing console test points at the console, not at the harness.

#include <csignal>
#include <filesystem>

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "harness/Console.h"

namespace Tolm::E2E {
namespace {

ConsoleOptions NoRoot()
{
    ConsoleOptions o;
    o.createRoot = false;
    return o;
}

// Collects the non-fatal failures of `body` so their text can be checked.
template <typename Body>
std::string FailureText(Body body)
{
    ::testing::TestPartResultArray failures;
    {
        ::testing::ScopedFakeTestPartResultReporter reporter(
            ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
        body();
    }
    std::string text;
    for (int i = 0; i < failures.size(); ++i)
        text += failures.GetTestPartResult(i).message();
    return text;
}

TEST(HarnessScreen, ReadsRowsTextAndPositions)
{
    Console c(NoRoot());
    c.StartShell("printf 'hello\\n  world  x\\n'; printf '\\033[25;1Hbottom'");
    ASSERT_TRUE(c.WaitForText("bottom"));
    EXPECT_EQ(c.Row(0), "hello");
    EXPECT_EQ(c.Row(1), "  world  x");
    EXPECT_EQ(c.Row(1, Trim::Keep).size(), 80u);
    EXPECT_EQ(c.Row(-1), "bottom");
    EXPECT_EQ(c.FindText("world"), (Pos{2, 1}));
    EXPECT_FALSE(c.FindText("absent"));
    const std::string text = c.ScreenText();
    EXPECT_EQ(text.substr(0, 18), "hello\n  world  x\n\n");
    EXPECT_EQ(c.WaitForExit(), ExitStatus::Exited(0));
}

TEST(HarnessScreen, ReadsColoursAttributesAndPalette)
{
    Console c(NoRoot());
    c.SetSize(40, 10);
    c.StartShell("printf '\\033[41;33mRY\\033[0m-\\033[1;7mB\\033[0m\\033[38;5;200mP\\033[0m\\n';"
                 "printf 'A\\033]P1ff0000B\\033]RC\\033]4;3;rgb:ff/cc/00\\033\\\\D\\n'");
    ASSERT_TRUE(c.WaitForText("ABCD"));
    EXPECT_EQ(c.Cols(), 40);
    const Cell red = c.CellAt(0, 0);
    EXPECT_EQ(red.text, "R");
    EXPECT_EQ(red.bg, 1);
    EXPECT_EQ(red.fg, 3);
    EXPECT_FALSE(red.bold);
    const Cell plain = c.CellAt(2, 0);
    EXPECT_EQ(plain.fg, kDefaultColor);
    EXPECT_EQ(plain.bg, kDefaultColor);
    const Cell strong = c.CellAt(3, 0);
    EXPECT_TRUE(strong.bold);
    EXPECT_TRUE(strong.reverse);
    EXPECT_EQ(c.CellAt(4, 0).fg, 200);
    // The palette sequences are taken out of the text and recorded.
    EXPECT_EQ(c.Palette()[1], (Rgb{255, 0, 0}));
    EXPECT_EQ(c.Palette()[3], (Rgb{255, 204, 0}));
    EXPECT_EQ(c.PaletteResets(), 1);
}

TEST(HarnessKeys, ArriveAsTerminalBytes)
{
    Console c(NoRoot());
    c.StartShell("stty raw -echo; echo ready; head -c 10 | od -An -tx1; "
                 "printf '\\033[?1h'; echo again; head -c 10 | od -An -tx1");
    ASSERT_TRUE(c.WaitForText("ready"));
    c.Press(Key::F2);
    c.PressSerial(Key::F12);
    c.Press(Key::Up);
    c.Press(Key::Enter);
    c.Press(Key::Backspace);
    ASSERT_TRUE(c.WaitForText("1b 4f 51 1b 40 1b 5b 41 0d 7f"));
    ASSERT_TRUE(c.WaitForText("again"));
    // Application cursor mode switches the cursor keys to the SS3 form.
    c.Press(Key::Up);
    c.SendEsc();
    c.Type("x");
    c.Press(Key::F10, 1);
    ASSERT_TRUE(c.WaitForText("1b 4f 41 1b 78 1b 5b 32 31 7e"));
}

TEST(HarnessProcess, ReportsExitStatusAndSignal)
{
    Console c(NoRoot());
    c.StartShell("exit 3");
    EXPECT_EQ(c.WaitForExit(), ExitStatus::Exited(3));
    c.StartShell("trap 'echo got-usr1; exit 0' USR1; echo ready; while :; do sleep 0.05; done");
    ASSERT_TRUE(c.WaitForText("ready"));
    c.Signal(SIGUSR1);
    EXPECT_TRUE(c.WaitForText("got-usr1"));
    EXPECT_EQ(c.WaitForExit(), ExitStatus::Exited(0));
    c.StartShell("kill -TERM $$");
    EXPECT_EQ(c.WaitForExit(), ExitStatus::Signalled(SIGTERM));
}

TEST(HarnessProcess, ResizeReachesTheProgram)
{
    Console c(NoRoot());
    c.StartShell("trap 'stty size' WINCH; stty size; while :; do sleep 0.05; done");
    ASSERT_TRUE(c.WaitForText("25 80"));
    c.Resize(100, 30);
    EXPECT_TRUE(c.WaitForText("30 100"));
    EXPECT_EQ(c.Rows(), 30);
}

TEST(HarnessProcess, EnvironmentPointsAtTheRoot)
{
    Console c(NoRoot());
    std::filesystem::create_directories(c.RootPath("etc/pam.d"));
    c.SetTerm("vt100");
    c.SetEnv("EXTRA", "yes");
    c.StartShell("echo \"R=$TOLM_ROOT\"; echo \"T=$TERM E=$EXTRA P=$PAM_WRAPPER\"; "
                 "echo \"L=$LD_PRELOAD\"; echo \"S=${PATH%%:*}\"");
    ASSERT_TRUE(c.WaitForText("S="));
    const std::string root = c.Root().string();
    EXPECT_TRUE(c.HasText("R=" + root)) << c.Dump();
    EXPECT_TRUE(c.HasText("T=vt100 E=yes P=1"));
    EXPECT_TRUE(c.HasText("L=libpam_wrapper.so"));
    EXPECT_TRUE(c.HasText("S=" + root + "/sbin"));
}

TEST(HarnessProcess, FakeTimeSetsTheClock)
{
    Console c(NoRoot());
    c.UseFakeTime("@2001-02-03 04:05:06");
    c.StartShell("date +%Y-%m-%d");
    EXPECT_TRUE(c.WaitForText("2001-02-03"));
}

TEST(HarnessWaits, TimeoutShowsWhatWasAwaitedAndTheScreen)
{
    Console c(NoRoot());
    c.StartShell("echo visible; while :; do sleep 0.05; done");
    ASSERT_TRUE(c.WaitForText("visible"));
    bool result = true;
    const std::string msg = FailureText([&] { result = c.WaitForText("never", Scaled(300ms)); });
    EXPECT_FALSE(result);
    EXPECT_NE(msg.find("Timed out after"), std::string::npos) << msg;
    EXPECT_NE(msg.find("text \"never\""), std::string::npos) << msg;
    EXPECT_NE(msg.find(" 0 |visible "), std::string::npos) << msg;
    EXPECT_NE(msg.find("24 |"), std::string::npos) << msg;

    const std::string rowMsg = FailureText([&] { c.WaitForRow(0, "^nothing$", Scaled(200ms)); });
    EXPECT_NE(rowMsg.find("it reads \"visible\""), std::string::npos) << rowMsg;
}

TEST(HarnessWaits, EndedProgramFailsAtOnce)
{
    Console c(NoRoot());
    c.StartShell("echo done");
    ASSERT_TRUE(c.WaitForText("done"));
    const auto start = Clock::now();
    const std::string msg = FailureText([&] { c.WaitForText("never", 30s); });
    EXPECT_LT(Clock::now() - start, 10s);
    EXPECT_NE(msg.find("The program ended (exit status 0)"), std::string::npos) << msg;
}

TEST(HarnessWaits, LogAndPredicateWaitsSeeFiles)
{
    Console c(NoRoot());
    std::filesystem::create_directories(c.RootPath("/var/log"));
    c.StartShell("sleep 0.2; echo 'user.info Tolm[1]: Starting Tolm' >> \"$TOLM_ROOT/var/log/syslog.log\"; "
                 "echo 42 > \"$TOLM_ROOT/var/log/evtd.log\"; while :; do sleep 0.05; done");
    EXPECT_TRUE(c.WaitForLog("Starting Tolm"));
    EXPECT_TRUE(c.WaitForEvent("42"));
    EXPECT_TRUE(c.WaitUntil([&] { return c.ReadRootFile("var/log/evtd.log") == "42\n"; }, "event file"));
    const std::string msg = FailureText([&] { c.WaitForLog("Never logged", Scaled(200ms)); });
    EXPECT_NE(msg.find("Starting Tolm"), std::string::npos) << "the log tail is shown: " << msg;
}

TEST(HarnessRoot, HostSimCreatesAndChangesTheRoot)
{
    if (!std::filesystem::exists(BinDir() / "tolm-hostsim"))
        GTEST_SKIP() << "tolm-hostsim is not built";
    Console c("typical");
    EXPECT_TRUE(std::filesystem::exists(c.RootPath("/etc/pam.d")));
    c.Set("/network/dns/hostname", "\"selftest\"");
    EXPECT_EQ(c.State("/network/dns/hostname"), "selftest");
    EXPECT_TRUE(c.State("/no/such/key").is_null());
    // A second console on the same root sees the same state.
    ConsoleOptions shared;
    shared.sharedRoot = c.Root();
    Console other(shared);
    EXPECT_EQ(other.State("/network/dns/hostname"), "selftest");
}

}  // namespace
}  // namespace Tolm::E2E

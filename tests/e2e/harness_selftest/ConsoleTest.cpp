// The harness checked against plain shell scripts on the pseudo-terminal, so
// that a failing console test points at the console, not at the harness: it
// reads screens and colours, sends keys as a terminal does and reports how
// the program ended.

#include <csignal>

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
    EXPECT_EQ(c.WaitForExit(), ExitStatus::Exited(0));
}

TEST(HarnessScreen, ReadsColoursAttributesAndPalette)
{
    ConsoleOptions options = NoRoot();
    options.cols = 40;
    Console c(options);
    c.StartShell("printf '\\033[41;33mRY\\033[0m-\\033[1;7mB\\033[0m\\033[38;5;200mP\\033[0m\\n';"
                 "printf 'A\\033]P1ff0000B\\033]RC\\033]4;3;rgb:ff/cc/00\\033\\\\D\\n'");
    ASSERT_TRUE(c.WaitForText("ABCD"));
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

}  // namespace
}  // namespace Tolm::E2E

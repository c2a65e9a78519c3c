// The harness against plain shell scripts, so that a failing console test
// points at the console, not at the harness.
#include <csignal>

#include <gtest/gtest.h>

#include "harness/Console.h"

namespace Tolm::E2E {
namespace {

// No host root: the harness runs plain scripts here.
ConsoleOptions Bare(int cols = 80, int rows = 25)
{
    ConsoleOptions o;
    o.createRoot = false;
    o.cols = cols;
    o.rows = rows;
    return o;
}

TEST(Harness, ReadsTextColoursAndPalette)
{
    Console c(Bare(12, 4));
    c.StartShell("printf 'hello\\n  world  x\\n'; printf '\\033[41;33mRY\\033[0m-\\033[1;7mB\\033[0m\\033[38;5;200mP';"
                 "printf '\\033[0m A\\033]P1ff0000B\\033]RC\\033]4;3;rgb:ff/cc/00\\033\\\\D'");
    ASSERT_TRUE(c.WaitForText("ABCD"));
    EXPECT_EQ(c.Grid(0, -1), "hello       |\n"
                             "  world  x  |\n"
                             "RY-BP ABCD  |\n"
                             "            |\n");
    EXPECT_EQ(c.Grid(1, 2, 2, 7), "world|\n-BP A|\n");
    EXPECT_EQ(c.Row(1), "  world  x");
    EXPECT_EQ(c.FindText("world"), (Pos{2, 1}));
    EXPECT_FALSE(c.FindText("absent"));
    EXPECT_EQ(c.CellAt(0, 2).bg, 1);
    EXPECT_EQ(c.CellAt(0, 2).fg, 3);
    EXPECT_FALSE(c.CellAt(0, 2).bold);
    EXPECT_EQ(c.CellAt(2, 2).fg, kDefaultColor);
    EXPECT_TRUE(c.CellAt(3, 2).bold && c.CellAt(3, 2).reverse);
    EXPECT_EQ(c.CellAt(4, -2).fg, 200);
    // The palette sequences are taken out of the text and recorded.
    EXPECT_EQ(c.Palette()[1], (Rgb{255, 0, 0}));
    EXPECT_EQ(c.Palette()[3], (Rgb{255, 204, 0}));
    EXPECT_EQ(c.PaletteResets(), 1);
    EXPECT_EQ(c.WaitForExit(), ExitStatus::Exited(0));
}

TEST(Harness, KeysArriveAsTerminalBytes)
{
    Console c(Bare());
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
    c.Press(Key::F10);
    ASSERT_TRUE(c.WaitForText("1b 4f 41 1b 78 1b 5b 32 31 7e"));
}

TEST(Harness, ReportsExitStatusAndSignal)
{
    Console c(Bare());
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

// Widgets on a real pseudo-terminal through the widget probe: geometry,
// colours, keys and results of message boxes, item lists, input fields, the
// two-pane layout and markup.
#include <gtest/gtest.h>

#include "harness/Console.h"

namespace Tolm::E2E {
namespace {

ConsoleOptions Colour(int cols = 80, int rows = 25)
{
    ConsoleOptions o;
    o.term = "xterm-256color";
    o.cols = cols;
    o.rows = rows;
    return o;
}

TEST(WidgetProbe, MessageBoxIsCentredDimsItsParentAndWaitsForEnter)
{
    Console probe(Colour());
    probe.StartProbe({"message"});
    ASSERT_TRUE(probe.WaitForText("Hello from the probe."));
    // The footer and the dimmed parent follow the text.
    ASSERT_TRUE(probe.WaitForQuiet());
    // 70x10 box at (5, 7); the text sits in the title band at (3, 3).
    EXPECT_EQ(probe.FindText("Hello from the probe."), (Pos{8, 10}));
    EXPECT_EQ(probe.FindText("Second line."), (Pos{8, 11}));
    EXPECT_EQ(probe.FindText("<Enter> OK"), (Pos{63, 15}));
    // Key names black, meanings dark grey, on the yellow body.
    EXPECT_EQ(probe.CellAt(63, 15).fg, 0);
    EXPECT_EQ(probe.CellAt(63, 15).bg, 3);
    EXPECT_EQ(probe.CellAt(71, 15).fg, 6);
    // The screen underneath is drawn dark grey on black while covered.
    EXPECT_EQ(probe.CellAt(1, 0).text, "W");
    EXPECT_EQ(probe.CellAt(1, 0).fg, 6);
    EXPECT_EQ(probe.CellAt(1, 0).bg, 0);

    probe.SendEsc();
    probe.Type("x");
    probe.Press(Key::Tab);
    EXPECT_TRUE(probe.Running());
    EXPECT_TRUE(probe.HasText("Hello from the probe."));

    probe.Press(Key::Enter);
    ASSERT_TRUE(probe.WaitForLog("probe result run=1"));
    EXPECT_EQ(probe.Syslog().find("probe result cancelled"), std::string::npos);
}

TEST(WidgetProbe, ItemListSkipsUnusableEntriesScrollsAndDrawsTheThumb)
{
    Console probe(Colour());
    probe.StartProbe({"itemlist"});
    // The title is set once the dialog reads keys (opening it drops type-ahead).
    ASSERT_TRUE(probe.WaitForText("Item List Probe"));
    // Entry 3 is a heading and entry 4 disabled: three Downs land on entry 5.
    probe.Press(Key::Down, 3);
    ASSERT_TRUE(probe.WaitUntil([&] { return probe.CellAt(13, 13).bg == 0; }, "entry 5 highlighted"));
    EXPECT_EQ(probe.FindText("Entry 5"), (Pos{13, 13}));

    // To the last usable entry (18): the list scrolls to show items 8 to 18,
    // the thumb at line 8 of the bar (its arithmetic is the unit tests').
    probe.Press(Key::Down, 20);
    ASSERT_TRUE(probe.WaitForText("Entry 18"));
    ASSERT_TRUE(probe.WaitUntil([&] { return probe.CellAt(67, 16).text == "\u2588"; }, "thumb on line 8"));
    EXPECT_EQ(probe.FindText("Entry 18"), (Pos{13, 18}));
    EXPECT_FALSE(probe.HasText("Entry 7 "));

    probe.Press(Key::Enter);
    ASSERT_TRUE(probe.WaitForLog("probe result ordinal=15 index=18"));
}

TEST(WidgetProbe, InputFieldsReplaceFreshValuesMaskPasswordsAndPlaceTheCursor)
{
    Console probe(Colour());
    probe.StartProbe({"input"});
    ASSERT_TRUE(probe.WaitForText("Input Probe"));
    ASSERT_TRUE(probe.HasText("localhost"));
    probe.Type("abc");
    ASSERT_TRUE(probe.WaitForTextGone("localhost"));
    ASSERT_TRUE(probe.WaitForText("abc"));
    const Pos abc = *probe.FindText("abc");
    EXPECT_TRUE(probe.WaitUntil([&] { return probe.Cursor() == Pos{abc.col + 3, abc.row}; }, "cursor after abc"));

    probe.Press(Key::Down);
    probe.Type("pw1x");
    probe.SendBytes("\x7f");
    ASSERT_TRUE(probe.WaitUntil([&] { return probe.HasText("***") && !probe.HasText("****"); },
                                "three stars after the Backspace"));
    EXPECT_FALSE(probe.HasText("pw1"));
    probe.Press(Key::Enter);
    ASSERT_TRUE(probe.WaitForLog("probe result name=abc password=pw1"));
}

TEST(WidgetProbe, RootWindowLaysOutBothPanesAndLogsTheSize)
{
    Console probe(Colour());
    probe.StartProbe({"root"});
    ASSERT_TRUE(probe.WaitForText("Probe Menu"));
    ASSERT_TRUE(probe.WaitForQuiet());
    EXPECT_TRUE(probe.WaitForLog("COLS=80, LINES=25"));
    EXPECT_EQ(probe.FindText("Probe Menu"), (Pos{3, 1}));
    EXPECT_EQ(probe.FindText("Help for the selected entry."), (Pos{42, 4}));
    EXPECT_EQ(probe.FindText("First Entry"), (Pos{3, 4}));
    EXPECT_EQ(probe.CellAt(42, 4).bg, 6);
    EXPECT_EQ(probe.CellAt(10, 10).bg, 3);
    probe.Press(Key::Down);
    ASSERT_TRUE(probe.WaitUntil([&] { return probe.CellAt(3, 5).bg == 0; }, "second entry highlighted"));
    probe.SendEsc();
    ASSERT_TRUE(probe.WaitForLog("probe result root ordinal=1"));
}

TEST(WidgetProbe, MarkupIsAlignedPaddedAndWrapped)
{
    Console probe(Colour());
    probe.StartProbe({"markup"});
    ASSERT_TRUE(probe.WaitForText("Markup Probe"));
    ASSERT_TRUE(probe.WaitForQuiet());
    // 50x16 dialog at (15, 4); title area 44 wide from column 18.
    EXPECT_EQ(probe.FindText("Markup Probe"), (Pos{34, 5}));
    EXPECT_EQ(probe.FindText("Red and white"), (Pos{18, 7}));
    EXPECT_EQ(probe.CellAt(18, 7).fg, 1);
    EXPECT_EQ(probe.CellAt(26, 7).fg, 7);
    EXPECT_EQ(probe.FindText("right"), (Pos{57, 7}));
    EXPECT_EQ(probe.FindText("Padded fie|"), (Pos{17, 12}));
    EXPECT_EQ(probe.FindText("A long sentence that has to wrap onto the"), (Pos{17, 13}));
    EXPECT_EQ(probe.FindText("following lines of the area."), (Pos{17, 14}));
    probe.Press(Key::Enter);
    ASSERT_TRUE(probe.WaitForLog("probe result markup"));
}

TEST(WidgetProbe, TinyTerminalNeitherCrashesNorHangs)
{
    for (const char* scenario : {"message", "itemlist", "input", "markup"}) {
        SCOPED_TRACE(scenario);
        Console probe(Colour(30, 6));
        probe.StartProbe({scenario});
        ASSERT_TRUE(probe.WaitForText("Widget probe"));
        // Nothing of the dialog is visible to wait for, and opening it drops
        // type-ahead: keep pressing Enter until the probe reports.
        ASSERT_TRUE(probe.WaitUntil(
            [&] {
                probe.Press(Key::Enter);
                return probe.Syslog().find("probe result run=") != std::string::npos;
            },
            "probe result"));
        EXPECT_TRUE(probe.WaitUntil([&] { return !probe.Running(); }, "probe exit"));
    }
}

}  // namespace
}  // namespace Tolm::E2E

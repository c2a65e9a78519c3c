// Pairs on real terminal descriptions; the black-and-white fallback is the
// status screen's end-to-end test.
#include <gtest/gtest.h>

#include "CursesFixture.h"
#include "frame/Terminal.h"

namespace Tolm {
namespace {

TEST(Terminal, ColourTerminalGetsPaletteAndAllPairs)
{
    Tolm::Test::TestTerminal terminal("linux");
    ASSERT_TRUE(terminal.Ok());
    start_color();
    InitColors();
    EXPECT_FALSE(bwColor);
    ASSERT_EQ(COLORS, 8);
    // Every combination of the six colours is its own pair.
    for (int background : Color::All) {
        for (int foreground : Color::All) {
            int fg = -2, bg = -2;
            ASSERT_EQ(extended_pair_content(ColorPair(background, foreground), &fg, &bg), OK);
            EXPECT_EQ(fg, foreground);
            EXPECT_EQ(bg, background);
            EXPECT_EQ(ColorAttr(background, foreground), (Attr{A_NORMAL, ColorPair(background, foreground)}));
        }
    }
}

TEST(Terminal, PairsBeyondAChtypeWorkOn256Colours)
{
    Tolm::Test::TestTerminal terminal("xterm-256color");
    ASSERT_TRUE(terminal.Ok());
    start_color();
    InitColors();
    ASSERT_EQ(COLORS, 256);
    const int highest = ColorPair(Color::White, Color::White);
    ASSERT_GT(highest, 255);
    int fg = -2, bg = -2;
    ASSERT_EQ(extended_pair_content(highest, &fg, &bg), OK);
    EXPECT_EQ(fg, Color::White);
    EXPECT_EQ(bg, Color::White);
    // The pair survives the trip into a window background.
    WINDOW* win = newwin(2, 2, 0, 0);
    SetBackground(win, ColorAttr(Color::White, Color::White));
    cchar_t cell;
    ASSERT_EQ(wgetbkgrnd(win, &cell), OK);
    wchar_t text[CCHARW_MAX + 1];
    attr_t attrs;
    short shortPair;
    int pair = 0;
    getcchar(&cell, text, &attrs, &shortPair, &pair);
    EXPECT_EQ(pair, highest);
    delwin(win);
}

}  // namespace
}  // namespace Tolm

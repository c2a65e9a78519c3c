// Palette, pair numbering and the black-and-white fallback on real terminal
// descriptions.
#include <gtest/gtest.h>

#include "TestTerminal.h"
#include "frame/Terminal.h"

namespace Tolm {
namespace {

TEST(Terminal, ColourTerminalGetsPaletteAndAllPairs)
{
    FrameTest::TestTerminal terminal("linux");
    ASSERT_TRUE(terminal.Ok());
    start_color();
    InitColors();
    EXPECT_FALSE(bwColor);
    ASSERT_EQ(COLORS, 8);

    int r, g, b;
    ASSERT_EQ(extended_color_content(Color::Yellow, &r, &g, &b), OK);
    EXPECT_EQ((std::vector<int>{r, g, b}), (std::vector<int>{999, 800, 0}));
    ASSERT_EQ(extended_color_content(Color::DarkGrey, &r, &g, &b), OK);
    EXPECT_EQ((std::vector<int>{r, g, b}), (std::vector<int>{333, 333, 333}));

    // Every combination of the six colours is its own pair, numbered
    // foreground + background * COLORS + 1; white on white is the highest.
    EXPECT_EQ(ColorPair(Color::White, Color::White), 64);
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
    FrameTest::TestTerminal terminal("xterm-256color");
    ASSERT_TRUE(terminal.Ok());
    start_color();
    InitColors();
    ASSERT_EQ(COLORS, 256);
    EXPECT_EQ(ColorPair(Color::White, Color::White), 1800);
    int fg = -2, bg = -2;
    ASSERT_EQ(extended_pair_content(1800, &fg, &bg), OK);
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
    EXPECT_EQ(pair, 1800);
    delwin(win);
}

TEST(Terminal, MonochromeFallsBackToStandoutForDarkBackgrounds)
{
    FrameTest::TestTerminal terminal("xterm");  // cannot redefine colours
    ASSERT_TRUE(terminal.Ok());
    start_color();
    InitColors();
    EXPECT_TRUE(bwColor);
    for (int foreground : Color::All) {
        EXPECT_EQ(ColorAttr(Color::DarkGrey, foreground), (Attr{A_STANDOUT, 0}));
        EXPECT_EQ(ColorAttr(Color::Black, foreground), (Attr{A_STANDOUT, 0}));
        for (int background : {Color::White, Color::Yellow, Color::LightGrey, Color::Red})
            EXPECT_EQ(ColorAttr(background, foreground), (Attr{A_NORMAL, 0}));
    }
}

}  // namespace
}  // namespace Tolm

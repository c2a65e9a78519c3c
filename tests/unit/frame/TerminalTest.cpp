// Pairs on real terminal descriptions; the black-and-white fallback is the
// status screen's end-to-end test.
#include <gtest/gtest.h>

#include "CursesFixture.h"
#include "frame/Terminal.h"

namespace Tolm {
namespace {

TEST(Terminal, EveryColourCombinationIsItsOwnPairOnEightAnd256Colours)
{
    for (const char* term : {"linux", "xterm-256color"}) {
        SCOPED_TRACE(term);
        Tolm::Test::TestTerminal terminal(term);
        ASSERT_TRUE(terminal.Ok());
        start_color();
        InitColors();
        EXPECT_FALSE(bwColor);
        for (int background : Color::All) {
            for (int foreground : Color::All) {
                int fg = -2, bg = -2;
                ASSERT_EQ(extended_pair_content(ColorPair(background, foreground), &fg, &bg), OK);
                EXPECT_EQ(fg, foreground);
                EXPECT_EQ(bg, background);
            }
        }
        // On 256 colours the pairs go beyond what a chtype holds, and
        // survive the trip into a window background.
        const int highest = ColorPair(Color::White, Color::White);
        EXPECT_TRUE(COLORS != 256 || highest > 255) << highest;
        WINDOW* win = newwin(2, 2, 0, 0);
        SetBackground(win, ColorAttr(Color::White, Color::White));
        EXPECT_EQ(Tolm::Test::PairOf(win), highest);
        delwin(win);
    }
}

}  // namespace
}  // namespace Tolm

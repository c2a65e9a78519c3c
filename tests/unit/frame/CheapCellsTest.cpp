// What the staged screen looks like after the cells are put the cheap way:
// the same on the terminal, with fewer colour and character-set switches.
#include <gtest/gtest.h>

#include <utility>

#include "CursesFixture.h"
#include "frame/CheapCells.h"
#include "frame/Window.h"

namespace Tolm {
namespace {

using CheapCellsTest = CursesTest;

// The character of one cell and its attributes without the colour.
std::pair<wchar_t, attr_t> CellAt(WINDOW* win, int y, int x)
{
    cchar_t cell;
    wchar_t chars[CCHARW_MAX + 1] = {};
    attr_t attrs = A_NORMAL;
    short pair = 0;
    if (mvwin_wch(win, y, x, &cell) == ERR || getcchar(&cell, chars, &attrs, &pair, nullptr) == ERR) return {};
    return {chars[0], attrs & ~A_COLOR};
}

TEST_F(CheapCellsTest, BlanksFollowTheTextBesideThemOrWhatTheTerminalShows)
{
    Window row(0, 0, 20, 1, Color::Yellow, Color::White);
    const Attr text = ColorAttr(Color::Yellow, Color::Black);
    row.WriteString(2, 0, "ab", text);
    row.WriteString(10, 0, "c", ColorAttr(Color::DarkGrey, Color::White));
    row.Push();
    ChooseCheapCells();
    // Leading blanks take the text after them, trailing ones the text before;
    // the other background keeps its own.
    EXPECT_EQ(PairAt(newscr, 0, 0), text.pair);
    EXPECT_EQ(PairAt(newscr, 0, 5), text.pair);
    EXPECT_EQ(PairAt(newscr, 0, 10), ColorPair(Color::DarkGrey, Color::White));
    EXPECT_EQ(Grid(newscr).substr(0, 11), "  ab      c");
    doupdate();

    // Once shown, blanks that look the same keep their colours rather than
    // follow new text.
    row.WriteString(2, 0, "de", ColorAttr(Color::Yellow, Color::Red));
    row.Push();
    ChooseCheapCells();
    EXPECT_EQ(PairAt(newscr, 0, 7), text.pair);
}

TEST_F(CheapCellsTest, OnlyLongLinesGoThroughTheLineDrawingSet)
{
    PreferUnicodeLines("xterm-256color");
    Window box(0, 0, 30, 3, Color::Black, Color::White);
    box.Box();
    box.Push();
    ChooseCheapCells();
    PreferUnicodeLines("vt100");
    EXPECT_EQ(CellAt(newscr, 0, 1), std::make_pair(L'q', A_ALTCHARSET));   // in the long top run
    EXPECT_EQ(CellAt(newscr, 0, 29), std::make_pair(L'k', A_ALTCHARSET));  // its corner too
    EXPECT_EQ(CellAt(newscr, 1, 0), std::make_pair(L'\u2502', A_NORMAL));  // a lone side
}

}  // namespace
}  // namespace Tolm

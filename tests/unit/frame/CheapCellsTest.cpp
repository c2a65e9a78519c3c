// What the staged screen looks like after the cells are put the cheap way:
// the same on the terminal, with fewer colour and character-set switches.
#include <gtest/gtest.h>

#include "CursesFixture.h"
#include "frame/CheapCells.h"
#include "frame/Window.h"

namespace Tolm {
namespace {

using CheapCellsTest = CursesTest;

attr_t AttrsAt(WINDOW* win, int y, int x)
{
    cchar_t cell;
    wchar_t chars[CCHARW_MAX + 1] = {};
    attr_t attrs = A_NORMAL;
    short pair = 0;
    if (mvwin_wch(win, y, x, &cell) == ERR || getcchar(&cell, chars, &attrs, &pair, nullptr) == ERR) return 0;
    return attrs & ~A_COLOR;
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
    EXPECT_EQ(Narrow(Line(newscr, 0)).substr(0, 11), "  ab      c");
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
    EXPECT_NE(AttrsAt(newscr, 0, 0), 0u);   // in the long top run
    EXPECT_EQ(AttrsAt(newscr, 0, 29), 0u);  // the run ends on Unicode
    EXPECT_EQ(AttrsAt(newscr, 1, 0), 0u);   // a lone side
    EXPECT_EQ(Line(newscr, 1)[0], L'\u2502');
    EXPECT_EQ(Line(newscr, 0)[29], L'\u2510');
}

}  // namespace
}  // namespace Tolm

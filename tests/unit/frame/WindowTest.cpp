// Window geometry, drawing guards and the parked cursor.
#include <gtest/gtest.h>

#include "CursesFixture.h"
#include "frame/Frame.h"
#include "frame/Window.h"

namespace Tolm {
namespace {

using WindowTest = CursesTest;

TEST_F(WindowTest, ChildrenDrawIntoTheirParentAndNothingLeavesAWindow)
{
    Window top(0, 0, 10, 3, Color::Black, Color::White);
    Window* band = top.CreateChild(2, 1, 6, 2, Color::Yellow);
    Window* inner = band->CreateChild(1, 1, 5, 1);
    EXPECT_EQ(inner->Background(), Color::Yellow);
    inner->WriteString(0, 0, "ab");
    inner->WriteString(5, 0, "X");  // must not wrap into the next line
    top.WriteString(10, 0, "Y");
    top.WriteString(0, 3, "Z");
    EXPECT_EQ(Grid(top.CursesWindow()), "          |\n"
                                        "          |\n"
                                        "   ab     |\n");
}

TEST_F(WindowTest, CoveredWindowGetsItsCursorBack)
{
    Window screen(0, 0, 80, 25, Color::Black, Color::White);
    Window field(&screen, 10, 5, 20, 1);
    field.MoveCursor(3, 0);
    Window::ShowCursor(true);

    screen.Draw(false);  // a dialog opens over it
    EXPECT_FALSE(Window::_cursor);
    Window dialog(5, 5, 30, 8, Color::Black, Color::White);
    dialog.MoveCursor(1, 1);
    screen.Draw(false);  // dimmed again by the idle timer: keeps the first save
    dialog.Draw(true);

    screen.Draw(true);  // the dialog closed
    EXPECT_TRUE(Window::_cursor);
    EXPECT_EQ(Window::_xCursor, 13);
    EXPECT_EQ(Window::_yCursor, 5);

    Window::ShowCursor(false);
    screen.Draw(false);
    field.MoveCursor(0, 0);
    screen.Draw(true);
    EXPECT_FALSE(Window::_cursor);
    EXPECT_EQ(Window::_xCursor, 13);
}

}  // namespace
}  // namespace Tolm

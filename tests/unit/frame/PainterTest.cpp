// Whatever the windows stage, the terminal shows it after an update: random
// screens drawn one over another, the bytes read back through a terminal
// emulator, on each kind of terminal the console meets.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <random>
#include <string>

#include "CursesFixture.h"
#include "frame/Display.h"
#include "frame/Painter.h"
#include "frame/Window.h"
#include "harness/Screen.h"

namespace Tolm {
namespace {

// What a staged cell must look like on the terminal.
E2E::Cell Expected(int y, int x)
{
    cchar_t staged;
    wchar_t chars[CCHARW_MAX + 1] = {};
    attr_t attrs = A_NORMAL;
    short shortPair = 0;
    int pair = 0;
    mvwin_wch(newscr, y, x, &staged);
    getcchar(&staged, chars, &attrs, &shortPair, &pair);
    E2E::Cell cell;
    const wchar_t glyph = (attrs & A_ALTCHARSET) ? LineGlyphAsUnicode(chars[0]) : chars[0];
    cell.text = Test::Utf8(glyph ? glyph : L' ');
    if (pair > 0) extended_pair_content(pair, &cell.fg, &cell.bg);
    cell.bold = attrs & A_BOLD;
    cell.reverse = attrs & (A_REVERSE | A_STANDOUT);
    return cell;
}

bool LooksSame(const E2E::Cell& want, const E2E::Cell& shown)
{
    if (want.text != shown.text || want.bg != shown.bg || want.bold != shown.bold || want.reverse != shown.reverse)
        return false;
    // A blank shows no foreground.
    return want.fg == shown.fg || (want.text == " " && !want.reverse);
}

std::string Drain(int fd)
{
    std::string bytes;
    char buffer[4096];
    for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) > 0;) bytes.append(buffer, static_cast<size_t>(n));
    return bytes;
}

class PainterTest : public ::testing::TestWithParam<const char*> {};

TEST_P(PainterTest, TheTerminalShowsTheStagedScreen)
{
    Tolm::Test::TestTerminal terminal(GetParam());
    ASSERT_TRUE(terminal.Ok());
    start_color();
    InitColors();
    int pipeFds[2];
    ASSERT_EQ(pipe2(pipeFds, O_NONBLOCK), 0);
    Painter::Begin(pipeFds[1]);
    E2E::Screen screen(COLS, LINES, nullptr, nullptr);
    // What curses sent to its own output when it started: the second
    // character set becomes the line-drawing one.
    if (const char* enacs = tigetstr("enacs"); enacs && enacs != reinterpret_cast<char*>(-1)) screen.Feed(enacs);

    std::mt19937 random(20261122);
    const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto color = [&] { return Color::All[pick(sizeof Color::All / sizeof Color::All[0])]; };
    for (int round = 0; round < 60; ++round) {
        const int width = 1 + pick(COLS), height = 1 + pick(LINES);
        Window window(pick(COLS - width + 1), pick(LINES - height + 1), width, height, color(), color());
        window.Draw(true);
        if (pick(2)) window.Box();
        for (int n = pick(8); n > 0; --n) {
            std::string text(static_cast<size_t>(1 + pick(30)), ' ');
            for (char& c : text) c = pick(3) ? static_cast<char>('a' + pick(26)) : ' ';
            Attr attr = ColorAttr(color(), color());
            attr.attrs |= pick(4) ? A_NORMAL : pick(2) ? A_REVERSE : A_BOLD;
            window.WriteString(pick(width), pick(height), text, attr);
        }
        if (pick(3) == 0) window.HorizontalLine(0, pick(height), width);
        window.Push();
        if (pick(8) == 0) Display::ForceFullRepaint();
        const bool cursor = pick(2);
        const int cursorX = pick(width), cursorY = pick(height);
        Window::ShowCursor(cursor);
        window.MoveCursor(cursorX, cursorY);
        Window::Flush();
        screen.Feed(Drain(pipeFds[0]));

        for (int y = 0; y < LINES; ++y)
            for (int x = 0; x < COLS; ++x)
                ASSERT_PRED2(LooksSame, Expected(y, x), screen.CellAt(x, y))
                    << "round " << round << " at " << x << "," << y << "\n" << screen.Dump();
        if (cursor) {
            EXPECT_EQ(screen.Cursor(), (E2E::Pos{window.X() + cursorX, window.Y() + cursorY}));
        }
    }
    Painter::Begin(-1);
    close(pipeFds[0]);
    close(pipeFds[1]);
}

INSTANTIATE_TEST_SUITE_P(Terminals, PainterTest, ::testing::Values("xterm-256color", "vt100", "linux"));

}  // namespace
}  // namespace Tolm

#pragma once
// A real curses screen for the frame's and the widgets' tests: output goes to
// /dev/null, input comes from a pipe on descriptor 0 (where the frame reads
// keys), so a test can type bytes, draw windows and read back what landed.
#include <curses.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "frame/Terminal.h"

namespace Tolm::Test {

// The colour pair of one cell of `win` (the background's when `y` < 0).
inline int PairOf(WINDOW* win, int y = -1, int x = 0)
{
    cchar_t cell;
    if ((y < 0 ? wgetbkgrnd(win, &cell) : mvwin_wch(win, y, x, &cell)) == ERR) return -1;
    wchar_t chars[CCHARW_MAX + 1] = {};
    attr_t attrs;
    short pair;
    int extended = 0;
    getcchar(&cell, chars, &attrs, &pair, &extended);
    return extended;
}

// One character in UTF-8.
inline std::string Utf8(wchar_t c)
{
    if (c < 0x80) return std::string(1, static_cast<char>(c));
    if (c < 0x800) return {char(0xC0 | (c >> 6)), char(0x80 | (c & 0x3F))};
    return {char(0xE0 | (c >> 12)), char(0x80 | ((c >> 6) & 0x3F)), char(0x80 | (c & 0x3F))};
}

class TestTerminal {
public:
    explicit TestTerminal(const char* term, int lines = 25, int cols = 80)
    {
        _savedStdin = dup(0);
        if (int fds[2]; pipe(fds) == 0) {
            dup2(fds[0], 0);
            close(fds[0]);
            _keys = fds[1];
        }
        _out = std::fopen("/dev/null", "w");
        setenv("LINES", std::to_string(lines).c_str(), 1);
        setenv("COLUMNS", std::to_string(cols).c_str(), 1);
        _screen = newterm(term, _out, stdin);
        if (_screen) {
            set_term(_screen);
            cbreak();
            noecho();
            keypad(stdscr, TRUE);
        }
    }
    ~TestTerminal()
    {
        if (_screen) {
            endwin();
            delscreen(_screen);
        }
        stdscr = nullptr;
        if (_out) std::fclose(_out);
        if (_keys >= 0) close(_keys);
        dup2(_savedStdin, 0);
        close(_savedStdin);
        bwColor = false;
    }
    bool Ok() const { return _screen != nullptr; }
    // Bytes as the terminal would send them.
    void Type(const std::string& bytes) { (void)!write(_keys, bytes.data(), bytes.size()); }

private:
    int _savedStdin = -1;
    int _keys = -1;
    FILE* _out = nullptr;
    SCREEN* _screen = nullptr;
};

}  // namespace Tolm::Test

// An 80x25 colour terminal with the console's colours.
class CursesTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(terminal.Ok());
        start_color();
        Tolm::InitColors();
    }

    // Every line of `win` in UTF-8, each ended by a visible "|": a whole layout at once.
    static std::string Grid(WINDOW* win)
    {
        std::string grid;
        for (int y = 0; y < getmaxy(win); ++y) {
            for (int x = 0; x < getmaxx(win); ++x) {
                cchar_t cell;
                wchar_t chars[CCHARW_MAX + 1] = {};
                attr_t attrs;
                short pair;
                if (mvwin_wch(win, y, x, &cell) == OK) getcchar(&cell, chars, &attrs, &pair, nullptr);
                grid += Tolm::Test::Utf8(chars[0] ? chars[0] : L' ');
            }
            grid += "|\n";
        }
        return grid;
    }
    // The colour pair of one cell, or of the window's background.
    static int PairAt(WINDOW* win, int y, int x) { return Tolm::Test::PairOf(win, y, x); }

    Tolm::Test::TestTerminal terminal{"xterm-256color"};
};

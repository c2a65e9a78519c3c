#pragma once
// A curses screen on /dev/null, 80x25, with the console's colours, for tests
// that draw windows and read back what landed in them.
#include <curses.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "frame/Terminal.h"

class CursesTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (screen_) return;
        setenv("LINES", "25", 1);
        setenv("COLUMNS", "80", 1);
        out_ = std::fopen("/dev/null", "w");
        in_ = std::fopen("/dev/null", "r");
        screen_ = newterm("xterm-256color", out_, in_);
        ASSERT_NE(screen_, nullptr);
        set_term(screen_);
        start_color();
        Tolm::InitColors();
    }

    // The text of one line of `win` (wide characters as UTF-32).
    static std::wstring Line(WINDOW* win, int y) {
        std::wstring text;
        for (int x = 0; x < getmaxx(win); ++x) {
            cchar_t cell;
            if (mvwin_wch(win, y, x, &cell) == ERR) break;
            wchar_t chars[CCHARW_MAX + 1] = {};
            attr_t attrs;
            short pair;
            getcchar(&cell, chars, &attrs, &pair, nullptr);
            text += chars[0] ? chars[0] : L' ';
        }
        return text;
    }

    static std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

    // The colour pair of one cell.
    static int PairAt(WINDOW* win, int y, int x) {
        cchar_t cell;
        if (mvwin_wch(win, y, x, &cell) == ERR) return -1;
        wchar_t chars[CCHARW_MAX + 1] = {};
        attr_t attrs;
        short pair;
        getcchar(&cell, chars, &attrs, &pair, nullptr);
        return pair;
    }

    static inline SCREEN* screen_ = nullptr;
    static inline FILE* out_ = nullptr;
    static inline FILE* in_ = nullptr;
};

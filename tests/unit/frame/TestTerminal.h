#pragma once
// A real curses screen for tests: output goes to /dev/null, input comes from
// a pipe placed on descriptor 0 (where the frame's key reader looks), so a
// test can type bytes and read them back as keys.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "frame/Terminal.h"

namespace Tolm::FrameTest {

class TestTerminal {
public:
    explicit TestTerminal(const char* term, int lines = 25, int cols = 80)
    {
        _savedStdin = dup(0);
        int fds[2];
        if (pipe(fds) == 0) {
            dup2(fds[0], 0);
            close(fds[0]);
            _keys = fds[1];
        }
        _out = std::fopen("/dev/null", "w");
        std::string size = std::to_string(lines);
        setenv("LINES", size.c_str(), 1);
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
    void Type(const std::string& bytes)
    {
        ssize_t n = write(_keys, bytes.data(), bytes.size());
        (void)n;
    }

private:
    int _savedStdin = -1;
    int _keys = -1;
    FILE* _out = nullptr;
    SCREEN* _screen = nullptr;
};

}  // namespace Tolm::FrameTest

#include "frame/CursesSession.h"

#include <cstdio>
#include <cstdlib>

#include "frame/Painter.h"
#include "frame/Terminal.h"
#include "frame/Window.h"
#include "host/Log.h"

namespace Tolm {

namespace {

// Every exit path leaves curses mode; a second endwin would write its
// cursor sequences after the palette reset of the orderly exit.
void EndCursesAtExit()
{
    if (stdscr && !isendwin()) {
        Painter::Release();
        endwin();
    }
}

}  // namespace

bool StartCurses(const char* term)
{
    PreferUnicodeLines(term);
    // A serial line may come up with TERM unset or naming a terminal the
    // host does not describe; initscr would end the process then. The
    // console must come up, so fall back to the plainest serial terminal.
    if (newterm(nullptr, stdout, stdin) == nullptr) {
        Log::Write(LOG_ERR, "Unknown terminal type '%s', using vt100", term ? term : "");
        if (newterm("vt100", stdout, stdin) == nullptr) {
            Log::Write(LOG_ERR, "Cannot start curses on this terminal");
            return false;
        }
    }
    start_color();
    Painter::Begin(fileno(stdout));
    std::atexit(EndCursesAtExit);

    Window::ShowCursor(false);
    cbreak();
    noecho();
    keypad(stdscr, TRUE);
    ConfigureInput();

    InitColors();
    DefineKeys();
    refresh();
    return true;
}

void EndCurses()
{
    Painter::Release();
    erase();
    refresh();
    endwin();
}

}  // namespace Tolm

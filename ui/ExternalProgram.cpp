#include "ui/ExternalProgram.h"

#include <cstdio>

#include "frame/Terminal.h"

namespace Tolm {

TerminalLoan::TerminalLoan()
{
    if (!stdscr) return;
    def_prog_mode();
    endwin();
    std::fflush(stdout);
}

TerminalLoan::~TerminalLoan()
{
    if (!stdscr) return;
    reset_prog_mode();
    // The other program painted over everything: the next update repaints
    // the whole screen, once, with whatever the caller draws now.
    clearok(curscr, TRUE);
}

}  // namespace Tolm

#include "ui/ExternalProgram.h"

#include <cstdio>

#include "frame/Painter.h"
#include "frame/Terminal.h"

namespace Tolm {

TerminalLoan::TerminalLoan()
{
    if (!stdscr) return;
    Painter::Release();
    def_prog_mode();
    endwin();
    std::fflush(stdout);
}

TerminalLoan::~TerminalLoan()
{
    if (!stdscr) return;
    reset_prog_mode();
    // The other program painted over everything.
    Painter::Resume();
}

}  // namespace Tolm

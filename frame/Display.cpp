#include "frame/Display.h"

#include "frame/Terminal.h"

namespace Tolm::Display {

int Columns() { return stdscr ? COLS : 0; }
int Lines() { return stdscr ? LINES : 0; }

void ForceFullRepaint()
{
    if (curscr) clearok(curscr, TRUE);
}

bool CanChangeColors() { return stdscr && has_colors() && can_change_color(); }

bool BlackAndWhite() { return bwColor; }
void SetBlackAndWhite(bool on) { bwColor = on; }

}  // namespace Tolm::Display

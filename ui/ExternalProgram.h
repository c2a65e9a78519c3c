#pragma once
// Lends the terminal to another program (a pager) for the lifetime of one
// object: curses mode is left on construction, and on destruction the
// terminal modes are restored and the whole screen is sent again at the next
// refresh. Screens never call curses themselves; they hold one of these
// around the child's run and redraw their window afterwards.

namespace Tolm {

class TerminalLoan {
public:
    TerminalLoan();
    ~TerminalLoan();
    TerminalLoan(const TerminalLoan&) = delete;
    TerminalLoan& operator=(const TerminalLoan&) = delete;
};

}  // namespace Tolm

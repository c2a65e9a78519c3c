#pragma once
// Start-up's one door to curses: the terminal goes into and out of curses
// mode here, so nothing above frame/ calls curses.

namespace Tolm {

// Start curses on standard output for `term` (TERM), falling back to vt100
// for a terminal the host does not describe, with the console's colours,
// keys and input modes and the cursor hidden. curses mode is left at exit
// whatever the path. False (logged) when no terminal could be started.
bool StartCurses(const char* term);

// Clear the screen and leave curses mode.
void EndCurses();

}  // namespace Tolm

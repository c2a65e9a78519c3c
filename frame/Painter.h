#pragma once
// The one writer of the screen to the terminal. Windows still compose the
// staged screen in curses; the bytes are ours. Curses' own update switches
// colours with two sequences where one does, resets every attribute after
// each update, re-sends the colours around every switch to the line-drawing
// set and places the cursor absolutely after each line: on a 9600-baud line
// that was most of what a keystroke cost.
namespace Tolm::Painter {

// Once curses has started on the terminal behind `fd`: read what the
// terminal offers; nothing is known of what it shows. Until then updates go
// through curses.
void Begin(int fd);

// Sends what differs between the staged screen (the windows pushed since the
// last update) and what the terminal shows, in one write, then shows the
// cursor at (x, y) or leaves it hidden. The whole screen is cleared and
// painted when it was marked for a full repaint, when the terminal's state
// is unknown (the first update, after Release) or when its size changed.
void Update(bool cursorVisible, int x, int y);

// Before curses writes to the terminal itself (leaving curses mode for
// another program or for good): plain attributes, the normal character set
// and a visible cursor, and curses told where the cursor is. The next update
// repaints the whole screen.
void Release();

// After another program had the terminal and curses mode is back
// (reset_prog_mode): curses restores the terminal's modes and palette, and
// the next update repaints the whole screen.
void Resume();

}  // namespace Tolm::Painter

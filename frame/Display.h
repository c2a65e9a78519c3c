#pragma once
// Facts about the whole terminal and whole-screen actions, for the layers
// above that may not call curses themselves.

namespace Tolm::Display {

// The terminal's size in columns and lines (0 before curses has started).
int Columns();
int Lines();

// Clear and re-send the whole physical screen at the next refresh, so
// anything written past curses (kernel messages on a console) disappears.
void ForceFullRepaint();

// Whether the terminal can redefine its colours (then the palette and the
// colour pairs are in use and black-and-white is a choice).
bool CanChangeColors();

// The black-and-white rendering flag (bwColor); takes effect at the next draw.
bool BlackAndWhite();
void SetBlackAndWhite(bool on);

}  // namespace Tolm::Display

#pragma once
// Just before an update, each staged cell is put the way that looks the same
// on the terminal and costs the fewest bytes on the wire.

namespace Tolm {

// Blank cells keep the colours the terminal already shows for them when
// those look the same; otherwise they take the colours of the text beside
// them on the same background, so the update does not switch colours around
// every run of blanks. On terminals that take Unicode, a short run of line
// glyphs is sent as Unicode characters rather than through the line-drawing
// set, whose switch there and back costs more than the run.
void ChooseCheapCells();

}  // namespace Tolm

#pragma once
// Just before an update: a blank cell looks the same whatever its foreground,
// so each blank takes the foreground that costs nothing on the wire.

namespace Tolm {

// Blank cells of the staged screen keep the colours the terminal already
// shows for them when those look the same; otherwise they take the colours
// of the text beside them on the same background, so the update does not
// switch colours around every run of blanks.
void MatchBlankColors();

}  // namespace Tolm

#pragma once
// The terminal contract: colour palette and pairs, the attribute of a colour
// combination (with a black-and-white fallback), extra key sequences, and the
// process-wide terminal flags. Only frame/ and ui/ include this (it pulls in
// curses).
#include <curses.h>

#include "frame/Colors.h"
#include "frame/Keys.h"
#include "frame/TerminalFlags.h"

namespace Tolm {

// An attribute together with its colour pair. The pair travels separately
// because a 256-colour terminal uses pair numbers that do not fit into the
// colour bits of a chtype.
struct Attr {
    attr_t attrs = A_NORMAL;
    int pair = 0;
    bool operator==(const Attr&) const = default;
};

// Pair number used for (background, foreground): foreground + background *
// COLORS + 1.
int ColorPair(int background, int foreground);

// The attribute for a text run or window background. Computed at drawing
// time, so toggling bwColor takes effect at the next redraw.
Attr ColorAttr(int background, int foreground);

// Redefine the palette and define the 36 pairs, or fall back to bwColor when
// the terminal cannot change colours. Once, after start_color().
void InitColors();

// Teach curses the function, cursor and editing key sequences that some
// terminals (and every serial line) send. Once, after InitColors().
void DefineKeys();

// Before curses starts: on terminals known to take UTF-8 (the local console,
// xterm and its kin) a short run of line glyphs is sent as Unicode
// characters, as a switch to the line-drawing set and back costs six bytes.
// Longer lines on xterm still go through that set: one byte a cell against
// three.
void PreferUnicodeLines(const char* term);
// Whether lone line glyphs are sent as Unicode characters (see above).
bool LoneGlyphsAsUnicode();
// The Unicode form of a glyph of the line-drawing set; 0 for none.
wchar_t LineGlyphAsUnicode(wchar_t acs);

// Input for a console operator: Ctrl-S and Ctrl-Q are plain keys (no flow
// control can stop the output), and the wait after a lone Esc suits the
// terminal kind unless the ESCDELAY variable says otherwise. After the curses
// modes are set; they become the program mode curses returns to.
void ConfigureInput();

// The sequences DefineKeys installs, in installation order; exposed for tests.
struct KeySequence {
    const char* sequence;
    int key;
};
extern const KeySequence kKeySequences[];
extern const int kKeySequenceCount;

// Null-safe helpers around curses for one window.
// Background of the whole window (recolours cells that have no colour).
void SetBackground(WINDOW* win, Attr attr);
// Attribute for the text written next.
void SetAttr(WINDOW* win, Attr attr);

}  // namespace Tolm

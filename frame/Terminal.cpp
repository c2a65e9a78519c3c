#include "frame/Terminal.h"

#include <termios.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <initializer_list>
#include <string_view>

namespace Tolm {

bool runningOverSerial = true;
bool bwColor = false;
struct termios orig_termios;

namespace {

// Palette redefinitions, in the order they are made.
struct ColorDef {
    short number, red, green, blue;
};
constexpr ColorDef kPalette[] = {
    {Color::Yellow, 999, 800, 0},
    {Color::DarkGrey, 333, 333, 333},
    {Color::LightGrey, 666, 666, 666},
    {Color::White, 999, 999, 999},
    {Color::Red, 999, 0, 0},
};

bool IsPaletteColor(int c)
{
    for (int p : Color::All) {
        if (p == c) return true;
    }
    return false;
}

}  // namespace

#define ESC "\033"
const KeySequence kKeySequences[] = {
    {ESC "R", Key::Resize},
    {ESC "[11~", Key::F1}, {ESC "[12~", Key::F2}, {ESC "[13~", Key::F3}, {ESC "[14~", Key::F4},
    {ESC "[15~", Key::F5},
    {ESC "[17~", Key::F6}, {ESC "[18~", Key::F7}, {ESC "[19~", Key::F8}, {ESC "[20~", Key::F9},
    {ESC "[21~", Key::F10},
    {ESC "[23~", Key::F11}, {ESC "[24~", Key::F12},
    {ESC "1", Key::F1}, {ESC "2", Key::F2}, {ESC "3", Key::F3}, {ESC "4", Key::F4}, {ESC "5", Key::F5},
    {ESC "6", Key::F6}, {ESC "7", Key::F7}, {ESC "8", Key::F8}, {ESC "9", Key::F9},
    {ESC "0", Key::F10},
    {ESC "!", Key::F11},
    {ESC "@", Key::F12},
    {ESC "h", Key::Home},
    {ESC "k", Key::End},
    {ESC "+", Key::Insert},
    {ESC "-", Key::Delete},
    {ESC "?", Key::PageUp},
    {ESC "/", Key::PageDown},
    {ESC "[M", Key::F1}, {ESC "[N", Key::F2}, {ESC "[O", Key::F3}, {ESC "[P", Key::F4},
    {ESC "[Q", Key::F5}, {ESC "[R", Key::F6},
    {ESC "[S", Key::F7}, {ESC "[T", Key::F8}, {ESC "[U", Key::F9}, {ESC "[V", Key::F10},
    {ESC "[W", Key::F11}, {ESC "[X", Key::F12},
    {ESC "OA", Key::Up}, {ESC "OB", Key::Down}, {ESC "OC", Key::Right}, {ESC "OD", Key::Left},
    {ESC "[A", Key::Up}, {ESC "[B", Key::Down}, {ESC "[C", Key::Right}, {ESC "[D", Key::Left},
    {ESC "[2~", Key::Insert},
    {ESC "[3~", Key::Delete},
    {ESC "[1~", Key::Home},
    {ESC "[4~", Key::End},
    {ESC "[5~", Key::PageUp},
    {ESC "[6~", Key::PageDown},
    {"\177", Key::Backspace},
};
#undef ESC
const int kKeySequenceCount = sizeof(kKeySequences) / sizeof(kKeySequences[0]);

int ColorPair(int background, int foreground)
{
    return foreground + background * COLORS + 1;
}

Attr ColorAttr(int background, int foreground)
{
    if (bwColor) {
        // Dark bars (titles, highlights, dimmed screens) must stay visible
        // without colour.
        bool dark = background == Color::DarkGrey || background == Color::Black;
        return Attr{dark ? A_STANDOUT : A_NORMAL, 0};
    }
    if (!IsPaletteColor(background) || !IsPaletteColor(foreground)) return Attr{};
    return Attr{A_NORMAL, ColorPair(background, foreground)};
}

void InitColors()
{
    use_default_colors();
    if (!can_change_color()) {
        bwColor = true;
        return;
    }
    for (const ColorDef& c : kPalette) {
        init_color(c.number, c.red, c.green, c.blue);
    }
    for (int background : Color::All) {
        for (int foreground : Color::All) {
            // Extended pairs: 256-colour terminals number beyond a short.
            init_extended_pair(ColorPair(background, foreground), foreground, background);
        }
    }
}

void DefineKeys()
{
    for (int i = 0; i < kKeySequenceCount; ++i) {
        define_key(kKeySequences[i].sequence, kKeySequences[i].key);
    }
}

namespace {

// A lone Esc on the local console acts at once: its sequences arrive in one
// burst. Over a serial line an operator types ESC and then a digit by hand.
constexpr int kLocalEscDelayMs = 50;
constexpr int kSerialEscDelayMs = 1000;

bool g_unicodeGlyphs = false;

}  // namespace

void PreferUnicodeLines(const char* term)
{
    if (!term) return;
    const std::string_view name(term);
    g_unicodeGlyphs = name == "linux" || name.substr(0, 5) == "xterm";
    // The local console cannot switch sets while it takes UTF-8.
    if (name == "linux") setenv("NCURSES_NO_UTF8_ACS", "1", 0);
}

bool LoneGlyphsAsUnicode() { return g_unicodeGlyphs; }

wchar_t LineGlyphAsUnicode(wchar_t acs)
{
    switch (acs) {
    case L'q': return L'\u2500';
    case L'x': return L'\u2502';
    case L'l': return L'\u250c';
    case L'k': return L'\u2510';
    case L'm': return L'\u2514';
    case L'j': return L'\u2518';
    case L't': return L'\u251c';
    case L'u': return L'\u2524';
    case L'w': return L'\u252c';
    case L'v': return L'\u2534';
    case L'n': return L'\u253c';
    default: return 0;
    }
}

void ConfigureInput()
{
    if (!std::getenv("ESCDELAY")) set_escdelay(runningOverSerial ? kSerialEscDelayMs : kLocalEscDelayMs);
    for (int fd : {0, 1}) {
        struct termios modes;
        if (!isatty(fd) || tcgetattr(fd, &modes) != 0) continue;
        modes.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
        tcsetattr(fd, TCSANOW, &modes);
        // Output someone stopped before we started flows again.
        tcflow(fd, TCOON);
    }
    def_prog_mode();
}

void SetBackground(WINDOW* win, Attr attr)
{
    if (!win) return;
    cchar_t cell;
    int pair = attr.pair;
    short shortPair = pair <= SHRT_MAX ? static_cast<short>(pair) : 0;
    if (setcchar(&cell, L" ", attr.attrs, shortPair, &pair) == OK) wbkgrnd(win, &cell);
}

void SetAttr(WINDOW* win, Attr attr)
{
    if (!win) return;
    int pair = attr.pair;
    short shortPair = pair <= SHRT_MAX ? static_cast<short>(pair) : 0;
    wattr_set(win, attr.attrs, shortPair, &pair);
}

}  // namespace Tolm

#include "frame/CheapCells.h"

#include <climits>
#include <cstring>
#include <cwchar>
#include <vector>

#include "frame/Terminal.h"

namespace Tolm {

namespace {

// A staged or shown cell taken apart.
struct CellParts {
    wchar_t text[CCHARW_MAX + 1] = {};
    attr_t attrs = A_NORMAL;  // without the colour
    int pair = 0;
};

CellParts Parts(const cchar_t& cell)
{
    CellParts parts;
    short shortPair = 0;
    if (getcchar(&cell, parts.text, &parts.attrs, &shortPair, &parts.pair) == ERR) return CellParts{};
    parts.attrs &= ~A_COLOR;
    return parts;
}

void Assemble(cchar_t& cell, const CellParts& parts)
{
    int pair = parts.pair;
    const short shortPair = pair <= SHRT_MAX ? static_cast<short>(pair) : 0;
    setcchar(&cell, parts.text, parts.attrs, shortPair, &pair);
}

struct CellLook {
    bool blank = false;
    attr_t attrs = A_NORMAL;  // without the colour
    int pair = 0;
    int background = -1;
};

int PairBackground(int pair)
{
    int fg = -1, bg = -1;
    if (pair <= 0 || extended_pair_content(pair, &fg, &bg) != OK) return -1;
    return bg;
}

CellLook Look(const cchar_t& cell)
{
    const CellParts parts = Parts(cell);
    CellLook look;
    look.attrs = parts.attrs;
    look.pair = parts.pair;
    // Reverse video shows the foreground in a blank; only plain blanks count.
    look.blank = parts.text[0] == L' ' && parts.text[1] == L'\0' && look.attrs == A_NORMAL;
    look.background = PairBackground(parts.pair);
    return look;
}

bool LooksAlike(const CellLook& a, const CellLook& b)
{
    return a.attrs == b.attrs && a.background == b.background;
}

void SetPair(cchar_t& cell, int pair)
{
    CellParts parts = Parts(cell);
    parts.pair = pair;
    Assemble(cell, parts);
}

// The painter may write over a short stretch of unchanged cells between two
// changes rather than move the cursor past it.
constexpr int kBridged = 8;

bool SameCell(const cchar_t& a, const cchar_t& b)
{
    const CellParts partsA = Parts(a), partsB = Parts(b);
    return wcscmp(partsA.text, partsB.text) == 0 && partsA.attrs == partsB.attrs && partsA.pair == partsB.pair;
}

// Below this many cells a run of line glyphs costs less as Unicode (three
// bytes a cell) than through the line-drawing set (one byte a cell and six
// for the switch there and back).
constexpr int kShortLine = 3;

bool IsLineGlyph(const cchar_t& cell)
{
    const CellParts parts = Parts(cell);
    return (parts.attrs & A_ALTCHARSET) && LineGlyphAsUnicode(parts.text[0]) != 0;
}

void ToUnicode(cchar_t& cell)
{
    CellParts parts = Parts(cell);
    parts.text[0] = LineGlyphAsUnicode(parts.text[0]);
    parts.text[1] = L'\0';
    parts.attrs &= ~A_ALTCHARSET;
    Assemble(cell, parts);
}

void ShortLinesToUnicode(std::vector<cchar_t>& staged, int columns)
{
    for (int x = 0; x < columns;) {
        if (!IsLineGlyph(staged[x])) {
            ++x;
            continue;
        }
        const int first = x;
        while (x < columns && IsLineGlyph(staged[x])) ++x;
        if (x - first < kShortLine)
            for (int i = first; i < x; ++i) ToUnicode(staged[i]);
    }
}

// `previous` is the last cell of the row above, which the update sends just
// before this row when both change; it becomes this row's last cell.
void MatchRow(int y, int columns, bool cleared, CellLook& previous)
{
    std::vector<cchar_t> staged(static_cast<size_t>(columns) + 1), shown(static_cast<size_t>(columns) + 1);
    if (mvwin_wchnstr(newscr, y, 0, staged.data(), columns) == ERR) return;
    const std::vector<cchar_t> original = staged;
    if (LoneGlyphsAsUnicode()) ShortLinesToUnicode(staged, columns);
    if (!cleared && mvwin_wchnstr(curscr, y, 0, shown.data(), columns) == ERR) cleared = true;

    std::vector<CellLook> cells(static_cast<size_t>(columns));
    for (int x = 0; x < columns; ++x) cells[x] = Look(staged[x]);
    const auto sent = [&](int x) { return cleared || !SameCell(staged[x], shown[x]); };

    for (int x = 0; x < columns;) {
        if (!cells[x].blank) {
            ++x;
            continue;
        }
        // A run of blanks that look alike, [first, x).
        const int first = x;
        while (x < columns && cells[x].blank && LooksAlike(cells[x], cells[first])) ++x;
        bool onScreen = !cleared;
        for (int i = first; onScreen && i < x; ++i) {
            const CellLook before = Look(shown[i]);
            onScreen = before.blank && LooksAlike(before, cells[i]);
        }
        const bool bridged = first > 0 && x < columns && x - first < kBridged && sent(first - 1) && sent(x);
        int pair = -1;
        if (onScreen && !bridged) {
            // Keep what the terminal shows: nothing of the run is sent.
            for (int i = first; i < x; ++i) {
                const int shownPair = Look(shown[i]).pair;
                if (shownPair == cells[i].pair) continue;
                SetPair(staged[i], shownPair);
                cells[i].pair = shownPair;
            }
            continue;
        }
        const CellLook& left = first > 0 ? cells[first - 1] : previous;
        if (LooksAlike(left, cells[first]))
            pair = left.pair;
        else if (x < columns && LooksAlike(cells[x], cells[first]))
            pair = cells[x].pair;
        if (pair < 0) continue;
        for (int i = first; i < x; ++i) {
            if (cells[i].pair == pair) continue;
            SetPair(staged[i], pair);
            cells[i].pair = pair;
        }
    }
    // Only the cells put another way go back: the rest stay exactly as staged.
    for (int x = 0; x < columns; ++x)
        if (std::memcmp(&staged[x], &original[x], sizeof(cchar_t)) != 0)
            mvwadd_wchnstr(newscr, y, x, &staged[x], 1);
    previous = cells[columns - 1];
}

}  // namespace

void ChooseCheapCells()
{
    if (!newscr || !curscr || (bwColor && !LoneGlyphsAsUnicode())) return;
    const bool cleared = is_cleared(curscr) || is_cleared(newscr);
    // Reading and writing rows moves the windows' cursors; curses keeps the
    // terminal's cursor in curscr's and the one to show in newscr's.
    int shownY = 0, shownX = 0, stagedY = 0, stagedX = 0;
    getyx(curscr, shownY, shownX);
    getyx(newscr, stagedY, stagedX);
    const int columns = getmaxx(newscr);
    CellLook previous;
    for (int y = 0; y < getmaxy(newscr); ++y) {
        if (is_linetouched(newscr, y)) {
            MatchRow(y, columns, cleared, previous);
        } else {
            cchar_t last;
            if (mvwin_wch(newscr, y, columns - 1, &last) != ERR) previous = Look(last);
        }
    }
    wmove(curscr, shownY, shownX);
    wmove(newscr, stagedY, stagedX);
}

}  // namespace Tolm

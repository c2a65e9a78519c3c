#include "frame/Painter.h"

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "frame/Terminal.h"

namespace Tolm::Painter {

namespace {

// How a cell is drawn.
struct Pen {
    attr_t attrs = A_NORMAL;  // without colour and character set
    int fg = -1;              // -1: the terminal's default colour
    int bg = -1;
    bool lines = false;       // the line-drawing set
    bool operator==(const Pen&) const = default;
};

struct Cell {
    wchar_t text[CCHARW_MAX + 1] = {};
    Pen pen;
};

bool Blank(const Cell& cell)
{
    return cell.text[0] == L' ' && cell.text[1] == L'\0' && cell.pen.attrs == A_NORMAL && !cell.pen.lines;
}

// Whether the terminal shows both cells the same: a blank shows only its
// background.
bool Same(const Cell& a, const Cell& b)
{
    if (std::wcscmp(a.text, b.text) != 0 || a.pen.attrs != b.pen.attrs || a.pen.lines != b.pen.lines ||
        a.pen.bg != b.pen.bg)
        return false;
    return a.pen.fg == b.pen.fg || Blank(a);
}

const char* Capability(const char* name)
{
    const char* value = tigetstr(name);
    return value == reinterpret_cast<const char*>(-1) ? nullptr : value;
}

// Terminal descriptions carry delays for hardware terminals ("$<5>");
// nothing we drive needs them.
std::string WithoutDelays(const char* sequence)
{
    std::string out;
    for (const char* p = sequence; p && *p; ++p) {
        if (p[0] == '$' && p[1] == '<') {
            const char* end = std::strchr(p, '>');
            if (end) {
                p = end;
                continue;
            }
        }
        out += *p;
    }
    return out;
}

std::string Text(const char* name) { return WithoutDelays(Capability(name)); }

// The parameters of a plain "ESC [ ... m" sequence, which several of can
// share one sequence.
bool SgrParameters(const std::string& sequence, std::string& parameters)
{
    if (sequence.size() < 3 || sequence.compare(0, 2, "\033[") != 0 || sequence.back() != 'm') return false;
    parameters = sequence.substr(2, sequence.size() - 3);
    return parameters.find_first_not_of("0123456789;") == std::string::npos;
}

struct AttrCapability {
    attr_t bit;
    std::string sequence;
    std::string parameters;
};

// What the terminal offers, read once from its description.
struct Capabilities {
    const char* cup = nullptr;
    const char* hpa = nullptr;
    const char* vpa = nullptr;
    const char* cuf = nullptr;
    const char* cub = nullptr;
    const char* ech = nullptr;
    const char* rep = nullptr;
    const char* setaf = nullptr;
    const char* setab = nullptr;
    std::string el, clear, sgr0, smacs, rmacs, civis, cnorm, op;
    std::vector<AttrCapability> attrs;
    bool bce = false, xenl = false, am = false;
    bool lineFeed = false;    // "\n" moves down a line
    bool backspace = false;   // "\b" moves left a column
    bool lineGlyphs = false;  // the line-drawing set is usable
    bool sgr = false;         // all of the above combine into one "ESC [ ... m"
    bool sgrDefault = false;  // 39 and 49 give the default colours
    std::unordered_map<int, std::string> fgParameters, bgParameters;
};

Capabilities Load()
{
    Capabilities caps;
    caps.cup = Capability("cup");
    caps.hpa = Capability("hpa");
    caps.vpa = Capability("vpa");
    caps.cuf = Capability("cuf");
    caps.cub = Capability("cub");
    caps.ech = Capability("ech");
    caps.rep = Capability("rep");
    caps.el = Text("el");
    caps.clear = Text("clear");
    caps.sgr0 = Text("sgr0");
    caps.smacs = Text("smacs");
    caps.rmacs = Text("rmacs");
    caps.civis = Text("civis");
    caps.cnorm = Text("cnorm");
    caps.op = Text("op");
    caps.bce = tigetflag("bce") > 0;
    caps.xenl = tigetflag("xenl") > 0;
    caps.am = tigetflag("am") > 0;
    caps.lineFeed = Text("cud1") == "\n";
    caps.backspace = Text("cub1") == "\b";
    // The local console cannot switch sets while it takes UTF-8; curses is
    // told so through the environment, and so are we.
    const char* noAcs = std::getenv("NCURSES_NO_UTF8_ACS");
    caps.lineGlyphs = !caps.smacs.empty() && !caps.rmacs.empty() && !(noAcs && std::atoi(noAcs) != 0);

    caps.sgr = true;
    const std::pair<attr_t, const char*> attrNames[] = {
        {A_STANDOUT, "smso"}, {A_UNDERLINE, "smul"}, {A_REVERSE, "rev"}, {A_BLINK, "blink"},
        {A_DIM, "dim"},       {A_BOLD, "bold"},      {A_ITALIC, "sitm"}, {A_INVIS, "invis"},
    };
    for (const auto& [bit, name] : attrNames) {
        AttrCapability attr{bit, Text(name), {}};
        if (attr.sequence.empty()) continue;
        if (!SgrParameters(attr.sequence, attr.parameters)) caps.sgr = false;
        caps.attrs.push_back(attr);
    }
    caps.setaf = Capability("setaf");
    caps.setab = Capability("setab");
    std::string parameters;
    if (caps.setaf && !SgrParameters(WithoutDelays(tiparm(caps.setaf, 1)), parameters)) caps.sgr = false;
    if (caps.setab && !SgrParameters(WithoutDelays(tiparm(caps.setab, 1)), parameters)) caps.sgr = false;
    caps.sgrDefault = SgrParameters(caps.op, parameters) && parameters == "39;49";
    return caps;
}

// What the terminal shows and where its cursor is, as far as we know.
struct State {
    bool known = false;  // false: the next update repaints everything
    int rows = 0, columns = 0;
    std::vector<Cell> shown;
    Pen pen;
    bool penKnown = false;
    bool cursorKnown = false;
    int row = 0, column = 0;
    // After the last column the cursor waits to wrap: only a return or an
    // absolute move takes it anywhere for sure.
    bool wrapPending = false;
    int cursorShown = -1;  // -1: unknown
};

Capabilities g_caps;
State g_state;
int g_fd = -1;

Capabilities& Caps() { return g_caps; }

// Whether "\n" also returns the carriage: the terminal driver then adds the
// return on the wire.
bool OutputAddsReturn()
{
    struct termios modes;
    if (tcgetattr(g_fd, &modes) != 0) return false;
    return (modes.c_oflag & OPOST) && (modes.c_oflag & ONLCR);
}

class Writer {
public:
    explicit Writer(Capabilities& caps) : _caps(caps), _s(g_state), _addsReturn(OutputAddsReturn()) {}

    size_t Cost(const std::string& bytes) const
    {
        size_t cost = bytes.size();
        if (_addsReturn)
            for (char c : bytes) cost += c == '\n' ? 1 : 0;
        return cost;
    }

    void Emit(const std::string& bytes) { _out += bytes; }
    const std::string& Bytes() const { return _out; }

    // --- attributes ---------------------------------------------------------

    const std::string& ColorParameters(bool foreground, int color)
    {
        auto& cache = foreground ? _caps.fgParameters : _caps.bgParameters;
        auto it = cache.find(color);
        if (it != cache.end()) return it->second;
        std::string parameters;
        if (color < 0)
            parameters = foreground ? "39" : "49";
        else
            SgrParameters(WithoutDelays(tiparm(foreground ? _caps.setaf : _caps.setab, color)), parameters);
        return cache.emplace(color, parameters).first->second;
    }

    void SetPen(const Pen& want)
    {
        const bool known = _s.penKnown;
        const Pen have = _s.pen;
        const bool toDefault = (want.fg < 0 && have.fg >= 0) || (want.bg < 0 && have.bg >= 0);
        const bool reset = !known || (have.attrs & ~want.attrs) != 0 || (toDefault && !_caps.sgrDefault);
        if (!known || have.attrs != want.attrs || have.fg != want.fg || have.bg != want.bg) {
            const Pen from = reset ? Pen{} : have;
            if (_caps.sgr)
                Emit(Combined(reset, from, want));
            else
                Emit(Separate(reset, from, want));
        }
        // A reset through the terminal's own sequence may also leave the set.
        const bool linesKnown = known && !(reset && !_caps.sgr);
        if (!linesKnown || have.lines != want.lines) Emit(want.lines ? _caps.smacs : _caps.rmacs);
        _s.pen = want;
        _s.penKnown = true;
    }

    // One "ESC [ ... m" for the whole change.
    std::string Combined(bool reset, const Pen& from, const Pen& want)
    {
        std::string parameters = reset ? "0" : "";
        const auto add = [&](const std::string& p) {
            if (!parameters.empty()) parameters += ';';
            parameters += p;
        };
        for (const AttrCapability& attr : _caps.attrs)
            if ((want.attrs & attr.bit) && !(from.attrs & attr.bit)) add(attr.parameters);
        if (want.fg != from.fg && (_caps.setaf || want.fg < 0)) add(ColorParameters(true, want.fg));
        if (want.bg != from.bg && (_caps.setab || want.bg < 0)) add(ColorParameters(false, want.bg));
        if (parameters.empty()) return {};
        return "\033[" + (parameters == "0" ? std::string() : parameters) + "m";
    }

    // A terminal whose sequences do not combine: each one on its own.
    std::string Separate(bool reset, const Pen& from, const Pen& want)
    {
        std::string out;
        if (reset) out += _caps.sgr0;
        for (const AttrCapability& attr : _caps.attrs)
            if ((want.attrs & attr.bit) && !(from.attrs & attr.bit)) out += attr.sequence;
        if ((want.fg < 0 && from.fg >= 0) || (want.bg < 0 && from.bg >= 0)) out += _caps.op;
        if (want.fg >= 0 && want.fg != from.fg && _caps.setaf) out += WithoutDelays(tiparm(_caps.setaf, want.fg));
        if (want.bg >= 0 && want.bg != from.bg && _caps.setab) out += WithoutDelays(tiparm(_caps.setab, want.bg));
        return out;
    }

    // The pen for erasing to a background: colour is all that counts.
    void SetErasePen(int bg)
    {
        if (_s.penKnown && _s.pen.attrs == A_NORMAL && _s.pen.bg == bg) return;
        Pen pen;
        pen.bg = bg;
        pen.fg = _s.penKnown ? _s.pen.fg : -1;
        pen.lines = _s.penKnown && _s.pen.lines;
        SetPen(pen);
    }

    bool CanErase(int bg) const { return _caps.bce || bg < 0; }

    // --- cursor -------------------------------------------------------------

    std::string Horizontal(int from, int to) const
    {
        if (from == to) return {};
        std::string best = Return(to);
        Consider(best, _caps.hpa ? WithoutDelays(tiparm(_caps.hpa, to)) : std::string());
        if (to > from && _caps.cuf) Consider(best, WithoutDelays(tiparm(_caps.cuf, to - from)));
        if (to < from && _caps.cub) Consider(best, WithoutDelays(tiparm(_caps.cub, from - to)));
        if (to < from && from - to <= 2 && _caps.backspace)
            Consider(best, std::string(static_cast<size_t>(from - to), '\b'));
        return best;
    }

    // From column 0 to `to`; empty when there is no way.
    std::string Forward(int to) const
    {
        if (to == 0) return {};
        std::string forward = _caps.hpa ? WithoutDelays(tiparm(_caps.hpa, to)) : std::string();
        if (_caps.cuf) Consider(forward, WithoutDelays(tiparm(_caps.cuf, to)));
        return forward;
    }

    std::string Return(int to) const
    {
        if (to == 0) return "\r";
        const std::string forward = Forward(to);
        return forward.empty() ? std::string() : "\r" + forward;
    }

    void Consider(std::string& best, const std::string& candidate) const
    {
        if (!candidate.empty() && (best.empty() || Cost(candidate) < Cost(best))) best = candidate;
    }

    // A new line at column 0, when the cursor is one row up.
    std::string Feed() const { return _addsReturn ? "\n" : "\r\n"; }

    std::string MoveSequence(int row, int column) const
    {
        std::string best = WithoutDelays(tiparm(_caps.cup, row, column));
        if (!_s.cursorKnown) return best;
        const bool down = row == _s.row + 1 && _caps.lineFeed;
        if (_s.wrapPending) {
            if (row == _s.row) Consider(best, Return(column));
            if (down && (column == 0 || !Forward(column).empty())) Consider(best, Feed() + Forward(column));
            return best;
        }
        if (row == _s.row) {
            Consider(best, Horizontal(_s.column, column));
            return best;
        }
        if (down && (column == 0 || !Forward(column).empty())) Consider(best, Feed() + Forward(column));
        if (_caps.vpa) Consider(best, WithoutDelays(tiparm(_caps.vpa, row)) + Horizontal(_s.column, column));
        return best;
    }

    void MoveTo(int row, int column)
    {
        if (_s.cursorKnown && !_s.wrapPending && _s.row == row && _s.column == column) return;
        Emit(MoveSequence(row, column));
        _s.cursorKnown = true;
        _s.wrapPending = false;
        _s.row = row;
        _s.column = column;
    }

    // --- cells --------------------------------------------------------------

    static std::string Utf8(const wchar_t* text)
    {
        std::string out;
        std::mbstate_t state{};
        char bytes[MB_LEN_MAX];
        for (const wchar_t* w = text; *w; ++w) {
            const size_t n = std::wcrtomb(bytes, *w, &state);
            if (n == static_cast<size_t>(-1)) {
                out += '?';
                state = std::mbstate_t{};
            } else {
                out.append(bytes, n);
            }
        }
        return out;
    }

    static std::string Glyph(const Cell& cell)
    {
        if (cell.pen.lines) return std::string(1, static_cast<char>(cell.text[0]));
        return Utf8(cell.text);
    }

    // Writes the cell where the cursor is; the cursor moves on.
    void Put(const Cell& cell, int width)
    {
        SetPen(cell.pen);
        Emit(Glyph(cell));
        Advance(width);
    }

    void Advance(int width)
    {
        _s.column += width;
        if (_s.column < _s.columns) return;
        _s.column = _s.columns - 1;
        if (_caps.xenl)
            _s.wrapPending = true;
        else if (_caps.am)
            _s.cursorKnown = false;
    }

    // Whether the cell can be sent again just to carry the cursor over it.
    bool Bridgeable(const Cell& cell) const
    {
        if (!_s.penKnown || _s.pen.lines != cell.pen.lines) return false;
        if (cell.pen == _s.pen) return true;
        return Blank(cell) && _s.pen.attrs == A_NORMAL && _s.pen.bg == cell.pen.bg;
    }

private:
    Capabilities& _caps;
    State& _s;
    bool _addsReturn;
    std::string _out;
};

int Width(const Cell& cell)
{
    const int width = cell.pen.lines ? 1 : wcwidth(cell.text[0]);
    return width == 2 ? 2 : 1;
}

std::vector<Cell> Staged(const Capabilities& caps, int rows, int columns)
{
    std::vector<Cell> cells(static_cast<size_t>(rows) * columns);
    std::vector<cchar_t> line(static_cast<size_t>(columns) + 1);
    std::unordered_map<int, std::pair<int, int>> pairs;
    for (int y = 0; y < rows; ++y) {
        if (mvwin_wchnstr(newscr, y, 0, line.data(), columns) == ERR) continue;
        for (int x = 0; x < columns; ++x) {
            Cell& cell = cells[static_cast<size_t>(y) * columns + x];
            attr_t attrs = A_NORMAL;
            short shortPair = 0;
            int pair = 0;
            if (getcchar(&line[x], cell.text, &attrs, &shortPair, &pair) == ERR || cell.text[0] == L'\0') {
                cell.text[0] = L' ';
                cell.text[1] = L'\0';
            }
            cell.pen.lines = (attrs & A_ALTCHARSET) != 0;
            cell.pen.attrs = attrs & ~(A_COLOR | A_ALTCHARSET);
            if (cell.pen.lines && !caps.lineGlyphs) {
                const wchar_t unicode = LineGlyphAsUnicode(cell.text[0]);
                if (unicode) cell.text[0] = unicode;
                cell.text[1] = L'\0';
                cell.pen.lines = false;
            }
            if (pair > 0) {
                auto it = pairs.find(pair);
                if (it == pairs.end()) {
                    int fg = -1, bg = -1;
                    if (extended_pair_content(pair, &fg, &bg) != OK) fg = bg = -1;
                    it = pairs.emplace(pair, std::make_pair(fg, bg)).first;
                }
                cell.pen.fg = it->second.first;
                cell.pen.bg = it->second.second;
            }
        }
    }
    return cells;
}

// The colours most blanks have: a full repaint clears to them.
Pen CommonBlank(const std::vector<Cell>& cells, const Writer& writer)
{
    std::unordered_map<long, int> counts;
    Pen best;
    int bestCount = 0;
    for (const Cell& cell : cells) {
        if (!Blank(cell) || !writer.CanErase(cell.pen.bg)) continue;
        const int count = ++counts[(static_cast<long>(cell.pen.bg) << 32) ^ static_cast<unsigned>(cell.pen.fg)];
        if (count > bestCount) {
            bestCount = count;
            best = cell.pen;
        }
    }
    return best;
}

void ClearScreen(Writer& writer, Capabilities& caps, const std::vector<Cell>& staged)
{
    State& s = g_state;
    s.shown.assign(staged.size(), Cell{});
    if (caps.clear.empty()) {
        // Nothing matches: every cell is sent.
        for (Cell& cell : s.shown) cell.text[0] = L'\x1';
        return;
    }
    const Pen blank = CommonBlank(staged, writer);
    writer.SetPen(Pen{A_NORMAL, blank.fg, blank.bg, g_state.penKnown && g_state.pen.lines});
    writer.Emit(caps.clear);
    s.cursorKnown = true;
    s.wrapPending = false;
    s.row = s.column = 0;
    for (Cell& cell : s.shown) {
        cell.text[0] = L' ';
        cell.pen = blank;
    }
}

// A run of changed blanks on one background, from x, erased rather than
// sent when that is cheaper; x moves past what is done.
bool Erase(Writer& writer, Capabilities& caps, Cell* shown, const Cell* want, int y, int& x)
{
    const int columns = g_state.columns;
    const Cell& cell = want[x];
    const auto changed = [&](int i) { return !Same(shown[i], want[i]); };
    const auto sameBlank = [&](int i) { return Blank(want[i]) && want[i].pen.bg == cell.pen.bg; };
    int end = x;
    int lastChanged = x;
    for (; end < columns && sameBlank(end); ++end)
        if (changed(end)) lastChanged = end;
    bool changesAfter = false;
    // Erasing to the end of the line is fine while every cell beyond the
    // run is sent anyway or is this same blank.
    bool toEnd = !caps.el.empty();
    for (int i = lastChanged + 1; i < columns; ++i) {
        if (changed(i)) changesAfter = true;
        else if (!sameBlank(i)) toEnd = false;
    }
    const size_t spaces = static_cast<size_t>(lastChanged - x + 1);
    // Erasing leaves the cursor where it was: the next change needs a move.
    const size_t move = changesAfter ? 3 : 0;
    std::string erase;
    if (toEnd && writer.Cost(caps.el) + move < spaces) erase = caps.el;
    if (caps.ech) {
        const std::string ech = WithoutDelays(tiparm(caps.ech, static_cast<int>(spaces)));
        if (writer.Cost(ech) + move < spaces && (erase.empty() || writer.Cost(ech) < writer.Cost(erase))) erase = ech;
    }
    if (erase.empty()) return false;
    writer.MoveTo(y, x);
    writer.SetErasePen(cell.pen.bg);
    writer.Emit(erase);
    const int erased = erase == caps.el ? columns : lastChanged + 1;
    for (int i = x; i < erased; ++i) {
        shown[i] = Cell{};
        shown[i].text[0] = L' ';
        shown[i].pen.bg = cell.pen.bg;
    }
    x = lastChanged + 1;
    return true;
}

// A run of the same one-byte glyph from x (a line, say) sent as the glyph and
// a count, where the terminal can repeat; how many cells that did, or 0.
int Repeat(Writer& writer, Capabilities& caps, const Cell* shown, const Cell* want, int x, int last)
{
    const Cell& cell = want[x];
    if (!caps.rep || cell.text[1] != L'\0' || cell.text[0] <= L' ' || cell.text[0] > L'~') return 0;
    int run = 0;
    // Some terminals lose track of the margin when a repeat ends on the last
    // column; the last cells go as they are.
    for (int i = x; i < last - 2 && std::wcscmp(want[i].text, cell.text) == 0 && want[i].pen == cell.pen; ++i)
        if (!Same(shown[i], want[i])) run = i - x + 1;
    if (run < 2) return 0;
    const std::string repeat = WithoutDelays(tiparm(caps.rep, static_cast<int>(cell.text[0]), run));
    if (writer.Cost(repeat) >= static_cast<size_t>(run)) return 0;
    writer.SetPen(cell.pen);
    writer.Emit(repeat);
    writer.Advance(run);
    return run;
}

// Sends one row's differences.
void PaintRow(Writer& writer, Capabilities& caps, const std::vector<Cell>& staged, int y)
{
    State& s = g_state;
    const int columns = s.columns;
    Cell* shown = &s.shown[static_cast<size_t>(y) * columns];
    const Cell* want = &staged[static_cast<size_t>(y) * columns];
    const auto changed = [&](int x) { return !Same(shown[x], want[x]); };

    for (int x = 0; x < columns;) {
        if (!changed(x)) {
            ++x;
            continue;
        }
        const Cell& cell = want[x];
        if (Blank(cell) && writer.CanErase(cell.pen.bg) && Erase(writer, caps, shown, want, y, x)) continue;
        // The cursor gets here cheapest by moving, or by sending again the
        // unchanged cells between.
        if (s.cursorKnown && !s.wrapPending && s.row == y && s.column < x) {
            std::string bridge;
            bool bridgeable = true;
            for (int i = s.column; i < x && bridgeable; ++i) {
                bridgeable = Width(want[i]) == 1 && writer.Bridgeable(want[i]);
                if (bridgeable) bridge += Writer::Glyph(want[i]);
            }
            if (bridgeable && writer.Cost(bridge) <= writer.Cost(writer.MoveSequence(y, x))) {
                writer.Emit(bridge);
                s.column = x;
            }
        }
        writer.MoveTo(y, x);
        const int width = Width(cell);
        // With automatic margins and no wait at the edge, the last cell of
        // the screen would scroll it.
        const int last = caps.am && !caps.xenl && y == s.rows - 1 ? columns - 1 : columns;
        const int repeated = Repeat(writer, caps, shown, want, x, last);
        if (repeated == 0 && x + width <= last) writer.Put(cell, width);
        const int done = std::max(repeated, width);
        for (int i = x; i < x + done && i < columns; ++i) shown[i] = want[i];
        x += done;
    }
}

void Write(const std::string& bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = write(g_fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && errno == EAGAIN) {
            // Somebody left the terminal non-blocking: wait until it takes more.
            pollfd writable{g_fd, POLLOUT, 0};
            if (poll(&writable, 1, -1) >= 0 || errno == EINTR) continue;
        }
        // A terminal that went away takes no more; its hang-up ends us.
        if (n <= 0) return;
        done += static_cast<size_t>(n);
    }
}

// Curses keeps its own picture of the terminal; after our update it is the
// staged screen, so nothing curses does later sends it again.
void SyncCurses(int rows, int columns)
{
    std::vector<cchar_t> line(static_cast<size_t>(columns) + 1);
    int y0 = 0, x0 = 0;
    getyx(newscr, y0, x0);
    for (int y = 0; y < rows; ++y)
        if (mvwin_wchnstr(newscr, y, 0, line.data(), columns) != ERR)
            mvwadd_wchnstr(curscr, y, 0, line.data(), columns);
    wmove(newscr, y0, x0);
    wtouchln(newscr, 0, rows, 0);
    clearok(curscr, FALSE);
    clearok(newscr, FALSE);
}

}  // namespace

void Begin(int fd)
{
    g_fd = fd;
    g_caps = Load();
    g_state = State{};
}

void Update(bool cursorVisible, int x, int y)
{
    if (!newscr || !curscr) return;
    Capabilities& caps = Caps();
    if (g_fd < 0 || !caps.cup) {
        // Not a screen we can address: curses does what it can.
        doupdate();
        return;
    }
    State& s = g_state;
    const int rows = getmaxy(newscr), columns = getmaxx(newscr);
    const std::vector<Cell> staged = Staged(caps, rows, columns);
    Writer writer(caps);

    if (!cursorVisible && s.cursorShown != 0) {
        writer.Emit(caps.civis);
        s.cursorShown = 0;
    }
    if (!s.known || s.rows != rows || s.columns != columns || is_cleared(curscr) || is_cleared(newscr)) {
        s.rows = rows;
        s.columns = columns;
        ClearScreen(writer, caps, staged);
        s.known = true;
    }
    for (int row = 0; row < rows; ++row) PaintRow(writer, caps, staged, row);
    if (cursorVisible && x >= 0 && y >= 0 && x < columns && y < rows) {
        writer.MoveTo(y, x);
        if (s.cursorShown != 1) writer.Emit(caps.cnorm);
        s.cursorShown = 1;
    }
    Write(writer.Bytes());
    SyncCurses(rows, columns);
}

void Resume()
{
    if (!newscr || !curscr) return;
    if (g_fd < 0) {
        clearok(curscr, TRUE);
        return;
    }
    // Curses' first update after another program had the terminal sends its
    // modes and the palette again, and then the whole screen: show it an
    // empty one, so that only we paint, once.
    const int rows = getmaxy(newscr), columns = getmaxx(newscr);
    std::vector<std::vector<cchar_t>> saved(static_cast<size_t>(rows),
                                            std::vector<cchar_t>(static_cast<size_t>(columns) + 1));
    for (int y = 0; y < rows; ++y) mvwin_wchnstr(newscr, y, 0, saved[y].data(), columns);
    // The staged screen carries the background of the window pushed last.
    cchar_t background, plain;
    wgetbkgrnd(newscr, &background);
    setcchar(&plain, L" ", A_NORMAL, 0, nullptr);
    wbkgrndset(newscr, &plain);
    werase(newscr);
    doupdate();
    wbkgrndset(newscr, &background);
    for (int y = 0; y < rows; ++y) mvwadd_wchnstr(newscr, y, 0, saved[y].data(), columns);
    clearok(curscr, TRUE);
    g_state = State{};
}

void Release()
{
    if (!stdscr || g_fd < 0) return;
    Capabilities& caps = Caps();
    State& s = g_state;
    std::string out = caps.sgr0;
    if (!caps.rmacs.empty() && out.find(caps.rmacs) == std::string::npos) out += caps.rmacs;
    if (s.cursorShown != 1) out += caps.cnorm;
    Write(out);
    // Curses moves the cursor relative to where it thinks it is.
    if (s.cursorKnown && !s.wrapPending)
        mvcur(-1, -1, s.row, s.column);
    else
        mvcur(-1, -1, LINES - 1, 0);
    s = State{};
    s.cursorShown = 1;
}

}  // namespace Tolm::Painter

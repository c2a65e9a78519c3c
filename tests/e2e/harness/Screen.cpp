#include "harness/Screen.h"

#include <cstdio>
#include <sstream>

#include <vterm.h>

namespace Tolm::E2E {

namespace {

void AppendUtf8(std::string& out, uint32_t c)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// The value of `s` read as hex digits, -1 unless it is all hex digits.
int HexValue(std::string_view s)
{
    if (s.empty() || s.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos)
        return -1;
    return std::stoi(std::string(s), nullptr, 16);
}

// Longest escape sequence we hold back before giving up and passing it on.
constexpr size_t kMaxPending = 4096;

}  // namespace

std::ostream& operator<<(std::ostream& os, const Rgb& c)
{
    char buf[16];
    std::snprintf(buf, sizeof buf, "#%02x%02x%02x", c.r, c.g, c.b);
    return os << buf;
}

std::ostream& operator<<(std::ostream& os, const Cell& c)
{
    return os << "'" << c.text << "' fg=" << c.fg << " bg=" << c.bg << (c.bold ? " bold" : "")
              << (c.reverse ? " reverse" : "");
}

std::ostream& operator<<(std::ostream& os, const Pos& p)
{
    return os << "(col " << p.col << ", row " << p.row << ")";
}

Screen::Screen(int cols, int rows, ReplyFn reply, void* user) : cols_(cols), rows_(rows)
{
    vt_ = vterm_new(rows, cols);
    vterm_set_utf8(vt_, 1);
    vterm_output_set_callback(vt_, reply, user);
    screen_ = vterm_obtain_screen(vt_);
    // Curses switches to the alternate screen; keeping a single buffer means
    // the last frame stays readable after the program has ended.
    vterm_screen_enable_altscreen(screen_, 0);
    vterm_screen_reset(screen_, 1);
}

Screen::~Screen()
{
    vterm_free(vt_);
}

void Screen::Reset()
{
    pending_.clear();
    appCursor_ = false;
    palette_.clear();
    paletteResets_ = 0;
    vterm_screen_reset(screen_, 1);
}

void Screen::Resize(int cols, int rows)
{
    cols_ = cols;
    rows_ = rows;
    vterm_set_size(vt_, rows, cols);
}

void Screen::Feed(std::string_view bytes)
{
    std::string out;
    Filter(bytes, out);
    if (!out.empty())
        vterm_input_write(vt_, out.data(), out.size());
}

// Takes out the palette sequences before libvterm sees them: the Linux
// console's ESC ] P nrrggbb and ESC ] R have no terminator, and libvterm
// would swallow the text after them as an unfinished string. xterm's OSC 4
// palette changes are recorded too, and the cursor-key mode is tracked so
// Console can send cursor keys as xterm would.
void Screen::Filter(std::string_view bytes, std::string& out)
{
    for (char ch : bytes) {
        if (pending_.empty()) {
            if (ch == '\x1b')
                pending_ = ch;
            else
                out += ch;
            continue;
        }
        pending_ += ch;
        const std::string& p = pending_;
        if (p.size() == 2) {
            if (p[1] != ']' && p[1] != '[') {
                out += p;
                pending_.clear();
            }
            continue;
        }
        if (p[1] == '[') {
            const unsigned char c = static_cast<unsigned char>(ch);
            if (c >= 0x40 && c <= 0x7E) {
                if (p == "\x1b[?1h")
                    appCursor_ = true;
                else if (p == "\x1b[?1l")
                    appCursor_ = false;
                out += p;
                pending_.clear();
            } else if (p.size() > kMaxPending) {
                out += p;
                pending_.clear();
            }
            continue;
        }
        // OSC: p starts with ESC ].
        if (p[2] == 'R') {
            ++paletteResets_;
            pending_.clear();
        } else if (p[2] == 'P') {
            if (p.size() == 10) {
                const std::string_view v(p);
                const int index = HexValue(v.substr(3, 1)), r = HexValue(v.substr(4, 2));
                const int g = HexValue(v.substr(6, 2)), b = HexValue(v.substr(8, 2));
                if (index >= 0 && r >= 0 && g >= 0 && b >= 0)
                    palette_[index] = Rgb{uint8_t(r), uint8_t(g), uint8_t(b)};
                pending_.clear();
            }
        } else if (ch == '\a') {
            HandleOsc(std::string_view(p).substr(2, p.size() - 3));
            pending_.clear();
        } else if (p.size() >= 4 && p[p.size() - 2] == '\x1b' && ch == '\\') {
            HandleOsc(std::string_view(p).substr(2, p.size() - 4));
            pending_.clear();
        } else if (p.size() > kMaxPending) {
            pending_.clear();
        }
    }
}

// "4;INDEX;rgb:RR/GG/BB" (possibly several index;colour pairs).
void Screen::HandleOsc(std::string_view body)
{
    if (body.substr(0, 2) != "4;")
        return;
    body.remove_prefix(2);
    while (!body.empty()) {
        const auto semi = body.find(';');
        if (semi == std::string_view::npos)
            return;
        const int index = std::atoi(std::string(body.substr(0, semi)).c_str());
        body.remove_prefix(semi + 1);
        const auto end = body.find(';');
        std::string_view colour = body.substr(0, end);
        body = end == std::string_view::npos ? std::string_view() : body.substr(end + 1);
        if (colour.substr(0, 4) != "rgb:" || colour.size() < 12)
            continue;
        const int r = HexValue(colour.substr(4, 2)), g = HexValue(colour.substr(7, 2)), b = HexValue(colour.substr(10, 2));
        if (r >= 0 && g >= 0 && b >= 0)
            palette_[index] = Rgb{uint8_t(r), uint8_t(g), uint8_t(b)};
    }
}

int Screen::NormRow(int row) const
{
    return row < 0 ? rows_ + row : row;
}

Screen::RowCells Screen::Cells(int row) const
{
    RowCells rc;
    row = NormRow(row);
    if (row < 0 || row >= rows_)
        return rc;
    for (int col = 0; col < cols_; ++col) {
        VTermScreenCell cell{};
        vterm_screen_get_cell(screen_, VTermPos{row, col}, &cell);
        if (cell.chars[0] == static_cast<uint32_t>(-1))
            continue;  // right half of a double-width character
        if (cell.chars[0] == 0)
            rc.text += ' ';
        for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && cell.chars[i]; ++i)
            AppendUtf8(rc.text, cell.chars[i]);
        rc.colOfByte.resize(rc.text.size(), col);
    }
    return rc;
}

std::string Screen::Row(int row, Trim trim) const
{
    std::string text = Cells(row).text;
    if (trim == Trim::TrailingSpaces) {
        const auto last = text.find_last_not_of(' ');
        text.erase(last == std::string::npos ? 0 : last + 1);
    }
    return text;
}

Cell Screen::CellAt(int col, int row) const
{
    Cell out;
    row = NormRow(row);
    VTermScreenCell cell{};
    if (row < 0 || row >= rows_ || col < 0 || col >= cols_ ||
        !vterm_screen_get_cell(screen_, VTermPos{row, col}, &cell)) {
        out.text.assign(1, ' ');  // not = " ": GCC 12 at -O3 reports a false overlap
        return out;
    }
    if (cell.chars[0] == 0 || cell.chars[0] == static_cast<uint32_t>(-1))
        out.text.assign(1, ' ');
    for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && cell.chars[i] && cell.chars[i] != uint32_t(-1); ++i)
        AppendUtf8(out.text, cell.chars[i]);

    auto colour = [](const VTermColor& c, bool isDefault) {
        return isDefault ? kDefaultColor : VTERM_COLOR_IS_INDEXED(&c) ? c.indexed.idx : -2;
    };
    out.fg = colour(cell.fg, VTERM_COLOR_IS_DEFAULT_FG(&cell.fg));
    out.bg = colour(cell.bg, VTERM_COLOR_IS_DEFAULT_BG(&cell.bg));
    out.bold = cell.attrs.bold;
    out.underline = cell.attrs.underline != 0;
    out.reverse = cell.attrs.reverse;
    return out;
}

std::optional<Pos> Screen::Find(std::string_view text) const
{
    for (int row = 0; row < rows_; ++row) {
        const RowCells rc = Cells(row);
        const auto at = rc.text.find(text);
        if (at != std::string::npos)
            return Pos{rc.colOfByte[at], row};
    }
    return std::nullopt;
}

Pos Screen::Cursor() const
{
    VTermPos pos{};
    vterm_state_get_cursorpos(vterm_obtain_state(vt_), &pos);
    return Pos{pos.col, pos.row};
}

std::string Screen::Grid(int top, int bottom, int left, int right) const
{
    std::string out;
    for (int row = NormRow(top); row <= NormRow(bottom); ++row) {
        const RowCells rc = Cells(row);
        size_t from = 0, to = 0;
        while (from < rc.colOfByte.size() && rc.colOfByte[from] < left)
            ++from;
        for (to = from; to < rc.colOfByte.size() && (right < 0 || rc.colOfByte[to] < right);)
            ++to;
        out += rc.text.substr(from, to - from) + "|\n";
    }
    return out;
}

std::string Screen::Dump() const
{
    std::ostringstream os;
    const Pos cur = Cursor();
    os << "Screen " << cols_ << "x" << rows_ << ", cursor at col " << cur.col << " row " << cur.row << ":\n";
    for (int row = 0; row < rows_; ++row) {
        char num[16];
        std::snprintf(num, sizeof num, "%2d |", row);
        os << num << Row(row, Trim::Keep) << "|\n";
    }
    return os.str();
}

}  // namespace Tolm::E2E

#include "harness/Screen.h"

#include <cstdio>
#include <sstream>

#include <vterm.h>

namespace Tolm::E2E {

namespace {

void AppendUtf8(std::string& out, uint32_t c)
{
    static const unsigned char lead[] = {0, 0xC0, 0xE0, 0xF0};
    const int n = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;  // continuation bytes
    out += static_cast<char>(lead[n] | (c >> (6 * n)));
    for (int i = n - 1; i >= 0; --i)
        out += static_cast<char>(0x80 | ((c >> (6 * i)) & 0x3F));
}

// Longest escape sequence held back before it is passed on as it is.
constexpr size_t kMaxPending = 4096;

}  // namespace

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

// Drops the Linux console's palette sequences (ESC ] P nrrggbb, ESC ] R),
// which have no terminator: libvterm would swallow the text after them. Notes
// the cursor-key mode, so that Console sends cursor keys as xterm would.
void Screen::Filter(std::string_view bytes, std::string& out)
{
    for (char ch : bytes) {
        if (pending_.empty() && ch != '\x1b') {
            out += ch;
            continue;
        }
        pending_ += ch;
        const std::string& p = pending_;
        bool whole = false;
        if (p.size() < 3) {
            whole = p.size() == 2 && p[1] != ']' && p[1] != '[';
        } else if (p[1] == '[') {
            whole = (ch >= 0x40 && ch <= 0x7E) || p.size() > kMaxPending;
            if (p == "\x1b[?1h" || p == "\x1b[?1l")
                appCursor_ = p.back() == 'h';
        } else if (p[2] == 'R' || (p[2] == 'P' && p.size() == 10)) {
            pending_.clear();
            continue;
        } else {
            whole = p[2] != 'P';  // any other string: libvterm reads the rest
        }
        if (whole) {
            out += p;
            pending_.clear();
        }
    }
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

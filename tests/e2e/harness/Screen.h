#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

struct VTerm;
struct VTermScreen;

namespace Tolm::E2E {

// A colour the program did not set (the terminal's default); -2 is direct RGB.
inline constexpr int kDefaultColor = -1;

// One character cell as the terminal shows it.
struct Cell {
    std::string text;        // UTF-8; " " for an empty cell
    int fg = kDefaultColor;  // palette index 0..255
    int bg = kDefaultColor;
    bool bold = false;
    bool underline = false;
    bool reverse = false;    // curses' standout is reverse video on xterm and linux
};
std::ostream& operator<<(std::ostream& os, const Cell& c);

struct Pos {
    int col = 0;
    int row = 0;
    bool operator==(const Pos&) const = default;
};
std::ostream& operator<<(std::ostream& os, const Pos& p);

enum class Trim { Keep, TrailingSpaces };

// A libvterm terminal of a fixed size fed with the program's output. Not
// thread-safe: Console guards it with its lock. Rows may be negative, counted
// from the bottom (-1 is the last row).
class Screen {
public:
    // `reply` receives what the terminal answers (cursor position reports ...).
    using ReplyFn = void (*)(const char* bytes, size_t len, void* user);

    Screen(int cols, int rows, ReplyFn reply, void* user);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    void Feed(std::string_view bytes);
    void Resize(int cols, int rows);
    void Reset();

    int Cols() const { return cols_; }
    int Rows() const { return rows_; }
    std::string Row(int row, Trim trim = Trim::Keep) const;
    Cell CellAt(int col, int row) const;
    std::optional<Pos> Find(std::string_view text) const;
    Pos Cursor() const;
    // Rows top..bottom, columns left..right-1 (right -1: to the edge), each
    // ended by a visible "|": a whole layout to compare at once.
    std::string Grid(int top, int bottom, int left = 0, int right = -1) const;
    // Every row with its number and a visible end, for failure messages.
    std::string Dump() const;
    // Whether the program asked for application cursor keys (ESC [?1h).
    bool ApplicationCursor() const { return appCursor_; }

private:
    struct RowCells {
        std::string text;
        std::vector<int> colOfByte;  // column of each byte of `text`
    };
    RowCells Cells(int row) const;
    int NormRow(int row) const { return row < 0 ? rows_ + row : row; }
    void Filter(std::string_view bytes, std::string& out);

    VTerm* vt_ = nullptr;
    VTermScreen* screen_ = nullptr;
    int cols_, rows_;
    std::string pending_;  // an escape sequence split across two reads
    bool appCursor_ = false;
};

}  // namespace Tolm::E2E

#include "frame/Window.h"

#include <algorithm>

#include "frame/CheapCells.h"
#include "frame/Painter.h"
#include "frame/Terminal.h"

namespace Tolm {

bool Window::_cursor = false;
int Window::_xCursor = 0;
int Window::_yCursor = 0;

void Window::Flush()
{
    ChooseCheapCells();
    Painter::Update(_cursor, _xCursor, _yCursor);
}

Window::Window(int x, int y, int width, int height, int background, int foreground)
    : _x(x), _y(y), _width(width), _height(height), _background(background), _foreground(foreground)
{
    // newwin(0, 0, ...) would mean "to the edge of the screen"; an empty
    // window, or one the terminal is too small for, stays without storage.
    if (stdscr && width > 0 && height > 0 && x >= 0 && y >= 0 && x + width <= COLS && y + height <= LINES)
        _win = newwin(height, width, y, x);
    // Curses would clear the terminal at the first refresh of a full-screen
    // window; what it shows is known, so only the differences are sent.
    if (_win) clearok(_win, FALSE);
    SetBackground(_win, ColorAttr(_background, _foreground));
}

Window::Window(Window* parent, int x, int y, int width, int height, int background, int foreground)
    : _x(parent->_x + x),
      _y(parent->_y + y),
      _width(width),
      _height(height),
      _background(background == -1 ? parent->_background : background),
      _foreground(foreground == -1 ? parent->_foreground : foreground),
      _parent(parent)
{
    if (parent->_win && width > 0 && height > 0 && x >= 0 && y >= 0)
        _win = derwin(parent->_win, height, width, y, x);
    parent->_children.push_back(this);
    SetBackground(_win, BlankAttr());
}

Attr Window::BlankAttr() const
{
    // On the same background a blank cell looks the same whatever its
    // foreground; taking the surrounding window's keeps a text area or a
    // moved highlight from recolouring empty cells on the wire.
    if (_parent && _background == _parent->_background) return _parent->BlankAttr();
    return ColorAttr(_background, _foreground);
}

namespace {

// A child that outlives its parent loses its curses storage first: a
// sub-window must not survive the window it points into.
void DropCurses(WINDOW*& slot)
{
    if (slot) delwin(slot);
    slot = nullptr;
}

}  // namespace

Window::~Window()
{
    // Owned children, newest first; each one detaches itself from _children.
    while (!_owned.empty()) {
        std::unique_ptr<Window> child = std::move(_owned.back());
        _owned.pop_back();
        child.reset();
    }
    // Children owned elsewhere (members of a derived class are gone by now;
    // anything left is a window destroyed after its parent).
    for (Window* child : std::vector<Window*>(_children)) {
        child->Orphan();
    }
    _children.clear();
    if (_parent) _parent->Detach(this);
    DropCurses(_win);
}

void Window::Orphan()
{
    for (Window* child : _children) child->Orphan();
    _parent = nullptr;
    DropCurses(_win);
}

void Window::Detach(Window* child)
{
    _children.erase(std::remove(_children.begin(), _children.end(), child), _children.end());
}

void Window::Adopt(std::unique_ptr<Window> child)
{
    // The child's constructor already appended it to _children.
    _owned.push_back(std::move(child));
}

Window* Window::CreateChild(int x, int y, int width, int height, int background, int foreground)
{
    return AddChild<Window>(x, y, width, height, background, foreground);
}

void Window::Draw(bool active)
{
    _active = active;
    const bool topLevel = _parent == nullptr;
    Attr attr;
    if (active) {
        attr = BlankAttr();
    } else {
        attr = ColorAttr(Color::Black, Color::DarkGrey);
        // Park the cursor of a focused field while something covers us.
        // Dimming twice must not overwrite what the first dimming saved.
        if (topLevel && !_savedValid) {
            _savedValid = true;
            _savedCursor = _cursor;
            _savedX = _xCursor;
            _savedY = _yCursor;
            ShowCursor(false);
        }
    }
    // Children share our storage, and a new background recolours only the
    // cells that still carry the window's previous one. Recolouring the
    // children first keeps our change from hiding their old background.
    for (Window* child : std::vector<Window*>(_children)) child->Draw(active);
    SetBackground(_win, attr);
    Push();
    if (active && topLevel && _savedValid) {
        _savedValid = false;
        _xCursor = _savedX;
        _yCursor = _savedY;
        ShowCursor(_savedCursor);
    }
    if (stdscr) flushinp();
}

void Window::Push()
{
    if (!_win) return;
    // The whole window goes into the next update; the update itself sends
    // only the cells that differ from the terminal.
    touchwin(_win);
    wnoutrefresh(_win);
}

void Window::WriteString(int x, int y, std::string_view text)
{
    if (!_win || x < 0 || y < 0 || x >= _width || y >= _height) return;
    mvwaddnstr(_win, y, x, text.data(), static_cast<int>(text.size()));
}

void Window::WriteString(int x, int y, std::string_view text, const Attr& attr)
{
    if (!_win || x < 0 || y < 0 || x >= _width || y >= _height) return;
    SetAttr(_win, attr);
    mvwaddnstr(_win, y, x, text.data(), static_cast<int>(text.size()));
    SetAttr(_win, Attr{});
}

void Window::Erase()
{
    if (_win) werase(_win);
}

void Window::Box()
{
    if (_win) box(_win, 0, 0);
}

void Window::HorizontalLine(int x, int y, int length)
{
    if (!_win || x < 0 || y < 0 || x >= _width || y >= _height || length <= 0) return;
    mvwhline(_win, y, x, ACS_HLINE, length);
}

void Window::SetColors(int background, int foreground)
{
    _background = background == -1 && _parent ? _parent->_background : background;
    _foreground = foreground == -1 && _parent ? _parent->_foreground : foreground;
    if (_active) SetBackground(_win, BlankAttr());
}

void Window::MoveCursor(int x, int y)
{
    _xCursor = _x + x;
    _yCursor = _y + y;
    if (_win) wmove(_win, y, x);
}

void Window::ShowCursor(bool visible)
{
    // Takes effect at the next Flush.
    _cursor = visible;
}

}  // namespace Tolm

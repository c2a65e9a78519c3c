#pragma once
// A rectangle of the terminal backed by a curses window. A child shares its
// parent's storage (a curses sub-window) and is drawn with it. A window that
// curses cannot create (it does not fit the terminal) simply draws nothing.
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#ifndef NCURSES_VERSION
typedef struct _win_st WINDOW;
#endif

namespace Tolm {

struct Attr;

class Window {
public:
    // Top-level window at an absolute position.
    Window(int x, int y, int width, int height, int background, int foreground);
    // Child at (x, y) relative to `parent`; a colour of -1 is the parent's.
    // The child is appended to the parent's children (not owned by it; see
    // AddChild for an owned one).
    Window(Window* parent, int x, int y, int width, int height, int background = -1,
           int foreground = -1);
    virtual ~Window();

    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // Creates a child on the heap, owned by this window (destroyed with it).
    Window* CreateChild(int x, int y, int width, int height, int background = -1,
                        int foreground = -1);
    // Same for a derived window type whose constructor takes the parent
    // first: AddChild<TextArea>(x, y, w, h, bg, fg).
    template <class T, class... Args>
    T* AddChild(Args&&... args) {
        auto child = std::make_unique<T>(this, std::forward<Args>(args)...);
        T* raw = child.get();
        Adopt(std::move(child));
        return raw;
    }

    // Active: own colours; inactive: dark grey on black (a top-level window
    // also parks the cursor state). Children follow, then the window is
    // pushed and type-ahead is discarded.
    virtual void Draw(bool active);

    // Stage the whole window for the next update (nothing is sent yet).
    void Push();
    // The one screen update: sends what differs between the staged windows
    // and the terminal, and places or hides the cursor. The frame calls it
    // before it waits for a key and before the host keeps us waiting.
    static void Flush();
    // Write at (x, y) relative to the window; outside the window nothing.
    void WriteString(int x, int y, std::string_view text);
    void WriteString(int x, int y, std::string_view text, const Attr& attr);
    // Clear the contents, draw a box around the edge, draw a horizontal line.
    void Erase();
    void Box();
    void HorizontalLine(int x, int y, int length);

    // Store the colours (-1 = parent's); applied at once when active.
    void SetColors(int background, int foreground);

    // The one terminal cursor, shared by all windows; both take effect at
    // the next Flush.
    void MoveCursor(int x, int y);  // relative to this window
    static void ShowCursor(bool visible);

    int X() const { return _x; }  // absolute
    int Y() const { return _y; }
    int Width() const { return _width; }
    int Height() const { return _height; }
    int Background() const { return _background; }
    int Foreground() const { return _foreground; }
    bool IsActive() const { return _active; }
    Window* Parent() const { return _parent; }
    const std::vector<Window*>& Children() const { return _children; }
    // The curses window, or null when curses could not create it. For ui/.
    WINDOW* CursesWindow() const { return _win; }

    static bool _cursor;  // the terminal cursor is visible
    static int _xCursor;  // its absolute position
    static int _yCursor;

protected:
    void Adopt(std::unique_ptr<Window> child);
    // The attribute of the window's empty cells.
    Attr BlankAttr() const;

private:
    void Detach(Window* child);
    void Orphan();

    int _x, _y, _width, _height;
    int _background, _foreground;
    WINDOW* _win = nullptr;
    Window* _parent = nullptr;
    std::vector<Window*> _children;
    std::vector<std::unique_ptr<Window>> _owned;
    bool _active = true;
    // Cursor state parked while this top-level window is drawn inactive.
    bool _savedValid = false;
    bool _savedCursor = false;
    int _savedX = 0, _savedY = 0;
};

}  // namespace Tolm

#pragma once
// A window that shows items one per row, keeps a highlighted row, scrolls
// when the items do not fit, and draws a scroll bar in its last column.
#include <vector>

#include "frame/Window.h"

namespace Tolm {

class Item;
class TextArea;

class ItemList : public Window {
public:
    // Colours are the parent's.
    ItemList(Window* parent, int x, int y, int width, int height);

    // The items are not owned. Shows from the first item and highlights the
    // first selectable, enabled one.
    void SetItems(std::vector<Item*> items);
    // Highlight the n-th selectable item (from 0); nothing if there are fewer.
    void SelectByOrdinal(int n);
    // Move the highlight to the previous / next selectable, enabled item and
    // redraw.
    void Up();
    void Down();
    void Redraw();

    void Draw(bool active) override;

    // Null when nothing is highlighted.
    Item* Selected() const;
    int SelectedOrdinal() const { return _ordinal; }
    int SelectedIndex() const { return _highlighted < 0 ? -1 : _first + _highlighted; }
    int FirstShown() const { return _first; }
    int HighlightedRow() const { return _highlighted; }
    int Rows() const { return static_cast<int>(_rows.size()); }
    const std::vector<Item*>& Items() const { return _items; }
    // The line of the scroll bar that shows the full block, or -1 when the
    // items fit and there is no bar.
    int ScrollThumbLine() const;

private:
    void Highlight(int index, int ordinal);
    void DrawScrollBar();

    std::vector<Item*> _items;
    Window* _body = nullptr;
    Window* _bar = nullptr;
    std::vector<Window*> _rows;
    std::vector<TextArea*> _texts;
    int _first = 0;
    int _highlighted = -1;  // row of the highlight, relative to _first
    int _ordinal = 0;
    bool _showedCursor = false;
};

}  // namespace Tolm

#include "ui/ItemList.h"

#include "frame/Terminal.h"
#include "ui/InputItem.h"
#include "ui/Item.h"
#include "ui/TextArea.h"

namespace Tolm {

ItemList::ItemList(Window* parent, int x, int y, int width, int height)
    : Window(parent, x, y, width, height, Color::Inherit, Color::Inherit)
{
    _body = CreateChild(0, 0, width - 1, height);
    _bar = CreateChild(width - 1, 0, 1, height);
    for (int line = 0; line < height; ++line) {
        Window* row = _body->CreateChild(0, line, width - 1, 1);
        _rows.push_back(row);
        _texts.push_back(row->AddChild<TextArea>(1, 0, width - 2, 1, Color::Inherit));
    }
}

void ItemList::SetItems(std::vector<Item*> items)
{
    _items = std::move(items);
    _first = 0;
    _highlighted = -1;
    _ordinal = 0;
    int ordinal = 0;
    for (int i = 0; i < static_cast<int>(_items.size()); ++i) {
        if (!_items[i]->selectable) continue;
        if (_items[i]->enabled) {
            Highlight(i, ordinal);
            return;
        }
        ++ordinal;
    }
}

void ItemList::Highlight(int index, int ordinal)
{
    const int rows = Rows();
    if (rows == 0) return;
    if (index < _first) _first = index;
    if (index >= _first + rows) _first = index - rows + 1;
    _highlighted = index - _first;
    _ordinal = ordinal;
}

void ItemList::SelectByOrdinal(int n)
{
    int ordinal = 0;
    for (int i = 0; i < static_cast<int>(_items.size()); ++i) {
        if (!_items[i]->selectable) continue;
        if (ordinal == n) {
            Highlight(i, ordinal);
            return;
        }
        ++ordinal;
    }
}

Item* ItemList::Selected() const
{
    const int index = SelectedIndex();
    return index >= 0 && index < static_cast<int>(_items.size()) ? _items[index] : nullptr;
}

void ItemList::Up()
{
    if (_highlighted < 0) return;
    int ordinal = _ordinal;
    for (int i = SelectedIndex() - 1; i >= 0; --i) {
        if (!_items[i]->selectable) continue;
        --ordinal;
        if (_items[i]->enabled) {
            Highlight(i, ordinal);
            Redraw();
            return;
        }
    }
}

void ItemList::Down()
{
    if (_highlighted < 0) return;
    int ordinal = _ordinal;
    for (int i = SelectedIndex() + 1; i < static_cast<int>(_items.size()); ++i) {
        if (!_items[i]->selectable) continue;
        ++ordinal;
        if (_items[i]->enabled) {
            Highlight(i, ordinal);
            Redraw();
            return;
        }
    }
}

int ItemList::ScrollThumbLine() const
{
    const int rows = Rows();
    const int items = static_cast<int>(_items.size());
    if (items <= rows) return -1;
    const int percent = _first * 100 / (items - rows);
    return (rows - 1) * percent / 100;
}

void ItemList::DrawScrollBar()
{
    WINDOW* bar = _bar->CursesWindow();
    const int thumb = ScrollThumbLine();
    if (!bar || thumb < 0) return;
    for (int line = 0; line < Rows(); ++line)
        mvwaddwstr(bar, line, 0, line == thumb ? L"\u2588" : L"\u2593");
}

void ItemList::Redraw()
{
    // Each row is blanked in its own colours; nothing reaches the terminal
    // but the cells that end up different.
    _bar->Erase();
    const int count = static_cast<int>(_items.size());
    for (int row = 0; row < Rows(); ++row) {
        const int index = _first + row;
        if (index >= count) {
            _rows[row]->SetColors(Background(), Foreground());
            _rows[row]->Erase();
            _texts[row]->SetColors(Background(), Foreground());
            _texts[row]->SetText("");
            continue;
        }
        Item* item = _items[index];
        const bool highlighted = row == _highlighted;
        item->SetFocus(highlighted);
        if (highlighted) {
            _rows[row]->SetColors(Color::Black, Color::White);
            _rows[row]->Erase();
            _texts[row]->SetColors(Color::Black, Color::White);
        } else {
            _rows[row]->SetColors(item->background, item->foreground);
            _rows[row]->Erase();
            _texts[row]->SetColors(item->background, item->foreground);
            item->Render(*_texts[row]);
        }
    }
    DrawScrollBar();
    Push();
    // The highlighted item renders last so a focused field places the cursor.
    if (Item* item = Selected()) {
        const bool input = dynamic_cast<InputItem*>(item) != nullptr;
        if (!input && _showedCursor) Window::ShowCursor(false);
        _showedCursor = input;
        item->Render(*_texts[_highlighted]);
    }
}

void ItemList::Draw(bool active)
{
    Window::Draw(active);
    Redraw();
}

}  // namespace Tolm

#include "ui/MenuTable.h"

#include "catalogue/Footers.h"
#include "frame/Keys.h"
#include "ui/Item.h"
#include "ui/ItemList.h"
#include "ui/RootWindow.h"
#include "ui/TextArea.h"

namespace Tolm {

MenuText Fixed(std::string text)
{
    return [text = std::move(text)] { return text; };
}

MenuEntry MenuEntry::Spacer()
{
    MenuEntry spacer;
    spacer.selectable = false;
    spacer.enabled = [] { return false; };
    return spacer;
}

MenuTable::MenuTable(RootWindow& screen) : _screen(screen) {}

MenuTable::~MenuTable() = default;

void MenuTable::SetEntries(TextId title, std::vector<MenuEntry> entries)
{
    _title = title;
    _entries = std::move(entries);
    _rows.clear();
    std::vector<Item*> rows;
    for (const MenuEntry& entry : _entries) {
        _rows.push_back(std::make_unique<LabelItem>(RowText(entry), entry.selectable));
        _rows.back()->SetEnabled(IsEnabled(entry));
        rows.push_back(_rows.back().get());
    }
    _screen.LeftContent()->SetItems(rows);
    _screen.LeftTitle()->SetText(_screen.Text(_title));
    _screen.LeftFooter()->SetText(FOOTER_MENU_SELECT);
}

void MenuTable::SetLabel(int index, TextId text)
{
    if (index < 0 || index >= static_cast<int>(_rows.size())) return;
    _entries[static_cast<size_t>(index)].text = text;
    _rows[static_cast<size_t>(index)]->SetLabel(_screen.Text(text));
}

std::string MenuTable::RowText(const MenuEntry& entry) const
{
    return entry.label ? entry.label() : _screen.Text(entry.text);
}

bool MenuTable::IsEnabled(const MenuEntry& entry) const
{
    return entry.selectable && (!entry.enabled || entry.enabled());
}

int MenuTable::SelectedIndex() const { return _screen.LeftContent()->SelectedIndex(); }

const MenuEntry* MenuTable::Selected() const
{
    const int index = SelectedIndex();
    if (index < 0 || index >= static_cast<int>(_entries.size())) return nullptr;
    const MenuEntry& entry = _entries[static_cast<size_t>(index)];
    return entry.selectable ? &entry : nullptr;
}

void MenuTable::Show()
{
    ItemList& list = *_screen.LeftContent();
    for (size_t i = 0; i < _entries.size(); ++i) {
        _rows[i]->SetEnabled(IsEnabled(_entries[i]));
        if (_entries[i].label) _rows[i]->SetLabel(RowText(_entries[i]));
    }
    const Item* selected = list.Selected();
    if (selected && !selected->enabled) {
        list.Down();
        selected = list.Selected();
        if (selected && !selected->enabled) list.Up();
    }
    list.Redraw();
    ShowSelection();
}

void MenuTable::ShowSelection()
{
    const MenuEntry* entry = Selected();
    std::string title;
    if (entry) title = entry->title ? entry->title() : _screen.Text(entry->text);
    _screen.RightTitle()->SetText(title);
    // The list's last row shares its line with the left footer; a redraw of
    // the list wipes it.
    _screen.LeftFooter()->SetText(FOOTER_MENU_SELECT);
    _screen.RightContent()->SetText(entry && entry->pane ? entry->pane() : "");
    WriteFooter();
}

void MenuTable::WriteFooter()
{
    const MenuEntry* entry = Selected();
    _screen.RightFooter()->SetText(entry && entry->footer ? entry->footer() : "");
}

bool MenuTable::HandleKey(int key)
{
    ItemList& list = *_screen.LeftContent();
    switch (key) {
    case Key::Up:
        list.Up();
        ShowSelection();
        return true;
    case Key::Down:
        list.Down();
        ShowSelection();
        return true;
    case Key::Enter:
        if (const MenuEntry* entry = Selected(); entry && entry->open && IsEnabled(*entry)) {
            _lastResult = entry->open();
            // Only redrawn: the screen decides when the host is asked again,
            // so a slow host cannot hold up the return to the menu.
            Show();
        }
        return true;
    default:
        return false;
    }
}

}  // namespace Tolm

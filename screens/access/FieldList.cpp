#include "screens/access/FieldList.h"

#include <string.h>

#include "frame/Keys.h"
#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/Item.h"
#include "ui/ItemList.h"

namespace Tolm {

FieldList::FieldList(Dialog& dialog)
{
    if (Window* content = dialog.Content())
        _list = content->AddChild<ItemList>(0, 0, content->Width(), content->Height());
}

FieldList::~FieldList()
{
    for (auto& item : _items)
        if (auto* input = dynamic_cast<InputItem*>(item.get())) Clear(*input);
}

void FieldList::SetItems(std::vector<std::unique_ptr<Item>> items)
{
    _items = std::move(items);
    std::vector<Item*> rows;
    for (auto& item : _items) rows.push_back(item.get());
    if (_list) _list->SetItems(std::move(rows));
}

Item* FieldList::At(int index) const
{
    return index >= 0 && index < Count() ? _items[static_cast<size_t>(index)].get() : nullptr;
}

int FieldList::Focused() const { return _list ? _list->SelectedIndex() : -1; }

void FieldList::Focus(int index)
{
    if (!_list || !At(index)) return;
    // Every row here is selectable, so the row index is its ordinal.
    _list->SelectByOrdinal(index);
    _list->Redraw();
}

void FieldList::Redraw()
{
    if (_list) _list->Redraw();
}

bool FieldList::IsEditKey(int key)
{
    constexpr int CTRL_H = 8;
    switch (key) {
        case Key::Delete:
        case Key::Backspace:
        case CTRL_H:
        case Key::Left:
        case Key::Right:
        case Key::Home:
        case Key::End:
            return true;
        default:
            return key >= 32 && key < 127;
    }
}

bool FieldList::Edit(int key)
{
    if (!IsEditKey(key)) return false;
    auto* input = dynamic_cast<InputItem*>(At(Focused()));
    if (!input) return false;
    input->HandleKey(key);
    Redraw();
    return true;
}

void FieldList::Clear(InputItem& field)
{
    field.Wipe();
    field.SetValue("");
}

}  // namespace Tolm

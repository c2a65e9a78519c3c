#include "ui/Form.h"

#include "frame/Keys.h"
#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/Item.h"
#include "ui/ItemList.h"
#include "ui/MessageDialog.h"

namespace Tolm {

Form::Form(Dialog& dialog) : _dialog(dialog)
{
    if (Window* content = dialog.Content())
        _list = content->AddChild<ItemList>(0, 0, content->Width(), content->Height());
}

Form::~Form()
{
    for (auto& item : _items)
        if (auto* input = dynamic_cast<InputItem*>(item.get())) Clear(*input);
}

template <class T>
T& Form::Add(std::unique_ptr<T> item, KeyFilter filter, int group)
{
    T& added = *item;
    _items.push_back(std::move(item));
    _filters.push_back(std::move(filter));
    _groups.push_back(group);
    std::vector<Item*> rows;
    for (auto& row : _items) rows.push_back(row.get());
    if (_list) _list->SetItems(std::move(rows));
    return added;
}

InputItem& Form::AddInput(std::string label, std::string value, int fieldWidth, KeyFilter filter)
{
    return Add(std::make_unique<InputItem>(std::move(label), std::move(value), fieldWidth), std::move(filter));
}

CheckItem& Form::AddCheck(std::string label, bool checked, int leadingSpaces)
{
    return Add(std::make_unique<CheckItem>(std::move(label), checked, leadingSpaces));
}

RadioItem& Form::AddRadio(std::string label, int group, bool selected, int leadingSpaces)
{
    return Add(std::make_unique<RadioItem>(std::move(label), selected, leadingSpaces), {}, group);
}

LabelItem& Form::AddLabel(std::string label, bool selectable)
{
    return Add(std::make_unique<LabelItem>(std::move(label), selectable));
}

void Form::SetItems(std::vector<std::unique_ptr<Item>> items)
{
    _items.clear();
    _filters.clear();
    _groups.clear();
    for (auto& item : items) {
        const bool input = dynamic_cast<InputItem*>(item.get()) != nullptr;
        Add(std::move(item), input ? KeyFilters::Chars(KeyFilters::Printable) : KeyFilter());
    }
}

Item* Form::At(int index) const
{
    return index >= 0 && index < Count() ? _items[static_cast<size_t>(index)].get() : nullptr;
}

int Form::Focused() const { return _list ? _list->SelectedIndex() : -1; }

void Form::Focus(int index)
{
    Item* item = At(index);
    if (!_list || !item || !item->selectable) return;
    int ordinal = 0;
    for (int i = 0; i < index; ++i) ordinal += _items[static_cast<size_t>(i)]->selectable ? 1 : 0;
    _list->SelectByOrdinal(ordinal);
    _list->Redraw();
}

void Form::SetEnabled(int index, bool enabled)
{
    Item* item = At(index);
    if (!item) return;
    item->SetEnabled(enabled);
    if (_list && !enabled && Focused() == index) {
        _list->Down();
        if (Focused() == index) _list->Up();
    }
    Redraw();
}

void Form::Redraw()
{
    if (_list) _list->Redraw();
}

void Form::Reject(int index, TextId title, TextId text)
{
    MessageDialog message(&_dialog, title, text);
    Frame::Run(&message);
    Focus(index);
}

int Form::NextRow(int index) const
{
    for (int i = index + 1; i < Count(); ++i) {
        const Item& item = *_items[static_cast<size_t>(i)];
        if (item.selectable && item.enabled) return i;
    }
    return -1;
}

void Form::Toggle(int index, const Handlers& handlers)
{
    Item* item = At(index);
    if (auto* check = dynamic_cast<CheckItem*>(item)) {
        check->SetChecked(!check->IsChecked());
    } else if (dynamic_cast<RadioItem*>(item)) {
        const int group = _groups[static_cast<size_t>(index)];
        for (int i = 0; i < Count(); ++i)
            if (auto* other = dynamic_cast<RadioItem*>(At(i)); other && _groups[static_cast<size_t>(i)] == group)
                other->SetSelected(i == index);
    } else {
        return;
    }
    if (handlers.toggled) handlers.toggled(index);
    Redraw();
}

bool Form::HandleKey(int key, const Handlers& handlers)
{
    _done = false;
    const int focused = Focused();
    if (handlers.key && handlers.key(key)) return _done;
    if (key == Key::Escape) {
        Finish(0);
    } else if (key == Key::Enter) {
        const int next = handlers.enterAdvances ? NextRow(focused) : -1;
        if (next >= 0)
            Focus(next);
        else if (!handlers.accept || handlers.accept())
            Finish(1);
    } else if (key == Key::Tab) {
        const int next = NextRow(focused);
        Focus(next >= 0 ? next : NextRow(-1));
    } else if (key == Key::Up || key == Key::Down) {
        if (_list) key == Key::Up ? _list->Up() : _list->Down();
    } else if (key == ' ' && !dynamic_cast<InputItem*>(At(focused))) {
        Toggle(focused, handlers);
    } else {
        Edit(key);
    }
    return _done;
}

void Form::Finish(int result)
{
    _done = true;
    _result = result;
}

int Form::Run(const Handlers& handlers)
{
    while (!HandleKey(Frame::GetKey(&_dialog, true), handlers)) {
    }
    Window::ShowCursor(false);
    return _result;
}

bool Form::Edit(int key)
{
    const int focused = Focused();
    auto* input = dynamic_cast<InputItem*>(At(focused));
    if (!input) return false;
    const KeyFilter& filter = _filters[static_cast<size_t>(focused)];
    if (!filter || !filter(key)) return false;
    input->HandleKey(key);
    Redraw();
    return true;
}

void Form::Clear(InputItem& field)
{
    field.Wipe();
    field.SetValue("");
}

}  // namespace Tolm

#pragma once
// The item list in a dialog's content area, for dialogs that keep their own
// focus rules: it owns the rows, moves the highlight by index and hands the
// editing keys to the focused input field.
#include <memory>
#include <string>
#include <vector>

namespace Tolm {

class Dialog;
class InputItem;
class Item;
class ItemList;

class FieldList {
public:
    explicit FieldList(Dialog& dialog);
    ~FieldList();
    FieldList(const FieldList&) = delete;
    FieldList& operator=(const FieldList&) = delete;

    // Replace the rows (the list owns them) and highlight the first one.
    void SetItems(std::vector<std::unique_ptr<Item>> items);
    int Count() const { return static_cast<int>(_items.size()); }
    Item* At(int index) const;

    // Index of the highlighted row, -1 when none.
    int Focused() const;
    // Highlight row `index` (ignored when out of range) and redraw.
    void Focus(int index);
    void Redraw();

    // Printable characters, Delete, Backspace (also Ctrl-H), Left, Right, Home, End.
    static bool IsEditKey(int key);
    // Hands an editing key to the focused input field; false when `key` is no
    // editing key or the focus is not on an input field.
    bool Edit(int key);

    // Overwrite the field's text before emptying it (passwords).
    static void Clear(InputItem& field);

private:
    ItemList* _list = nullptr;  // owned by the dialog's window tree
    std::vector<std::unique_ptr<Item>> _items;
};

}  // namespace Tolm

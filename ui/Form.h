#pragma once
// The form kit: the rows of a dialog's content area and the dialog's key
// loop. A dialog builds its rows (inputs with key filters, check boxes, radio
// groups, labels) in its constructor, and its Execute is Run with a validate
// function; a failed field is refused with Reject.
//
//     Run: Esc ends with 0. Enter calls `accept` (none: accepted) and ends
//     with 1 when it says so. Up/Down move over the enabled rows, Tab cycles,
//     Space toggles a check box or marks a radio row (clearing its group),
//     and the editing keys go to the focused input through its filter.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/TextId.h"
#include "ui/KeyFilter.h"

namespace Tolm {

class CheckItem;
class Dialog;
class InputItem;
class Item;
class ItemList;
class LabelItem;
class RadioItem;

class Form {
public:
    explicit Form(Dialog& dialog);
    ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    // Rows are appended in order and owned by the form; the row index of
    // the first one is 0. The first enabled row gets the highlight.
    InputItem& AddInput(std::string label, std::string value, int fieldWidth,
                        KeyFilter filter = KeyFilters::Chars(KeyFilters::Printable));
    CheckItem& AddCheck(std::string label, bool checked = false, int leadingSpaces = 0);
    // Rows of the same `group` are exclusive: marking one clears the others.
    RadioItem& AddRadio(std::string label, int group, bool selected = false, int leadingSpaces = 0);
    LabelItem& AddLabel(std::string label, bool selectable = true);
    // Replace all rows at once (every input takes printable characters).
    void SetItems(std::vector<std::unique_ptr<Item>> items);

    int Count() const { return static_cast<int>(_items.size()); }
    Item* At(int index) const;
    // Index of the highlighted row, -1 when none.
    int Focused() const;
    // Highlight row `index` (ignored when out of range or not selectable)
    // and redraw.
    void Focus(int index);
    // A disabled row keeps its place but the highlight skips it; a highlight
    // on it moves on.
    void SetEnabled(int index, bool enabled);
    void Redraw();

    // Refuse the field on row `index`: a message box with the catalogue
    // title and text, then the focus on that row. The user's text stays.
    void Reject(int index, TextId title, TextId text);

    struct Handlers {
        // Enter: validate; true ends Run with 1.
        std::function<bool()> accept;
        // Sees every key first; true when it took the key.
        std::function<bool(int key)> key;
        // After Space changed the check box or radio row `index`.
        std::function<void(int index)> toggled;
        // Enter on a row before the last enabled one moves to the next row;
        // only Enter on the last one calls `accept`.
        bool enterAdvances = false;
    };

    // The dialog's key loop; returns the dialog's result.
    int Run(const Handlers& handlers);
    // One key of that loop; true when the dialog is done (see Result).
    bool HandleKey(int key, const Handlers& handlers);
    // End Run with `result` once the current key is handled (for `key`).
    void Finish(int result);
    int Result() const { return _result; }

    // Hands an editing key to the focused input field when its filter takes
    // it; false when it did not.
    bool Edit(int key);

    // Overwrite the field's text before emptying it (passwords).
    static void Clear(InputItem& field);

private:
    template <class T>
    T& Add(std::unique_ptr<T> item, KeyFilter filter = {}, int group = -1);
    void Toggle(int index, const Handlers& handlers);
    // The next enabled, selectable row after `index`, or -1.
    int NextRow(int index) const;

    Dialog& _dialog;
    ItemList* _list = nullptr;  // owned by the dialog's window tree
    std::vector<std::unique_ptr<Item>> _items;
    std::vector<KeyFilter> _filters;  // per row; empty for rows that are no input
    std::vector<int> _groups;         // per row; -1 outside a radio group
    bool _done = false;
    int _result = 0;
};

}  // namespace Tolm

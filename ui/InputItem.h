#pragma once
// A labelled text-input field. The first editing key after the value was set
// (or after the field gained or lost the focus) replaces the whole value;
// a movement key keeps it.
#include <string>

#include "ui/Item.h"

namespace Tolm {

class InputItem : public Item {
public:
    // `fieldWidth` -1: half the row's width minus one.
    InputItem(std::string label, std::string value, int fieldWidth = -1);
    ~InputItem() override;

    void Changed() override { _fresh = true; }
    void Render(TextArea& row) override;

    // Replace the value; the cursor goes to its end and the next editing key
    // replaces it.
    void SetValue(std::string value);
    const std::string& Value() const { return _value; }
    const std::string& Label() const { return _label; }

    // Apply one key (Home, End, Left, Right, Delete, Backspace or Ctrl-H,
    // printable characters).
    void HandleKey(int key);

    // Passwords show one "*" per visible character, and a masked value is
    // kept in one buffer that is overwritten when emptied or destroyed.
    void SetMasked(bool masked);
    bool IsMasked() const { return _masked; }

    // Overwrite the value's storage, then empty it.
    void Wipe();

    int Cursor() const { return _cursor; }
    int FirstVisible() const { return _first; }
    bool IsFresh() const { return _fresh; }

    // The row markup for a text area `rowWidth` wide (adjusts the view so the
    // cursor stays inside the field) and the cursor column within that row.
    std::string RowText(int rowWidth);
    int CursorColumn(int rowWidth) const;

private:
    int FieldWidth(int rowWidth) const;
    void Empty();

    std::string _label;
    std::string _value;
    int _fieldWidth;
    bool _masked = false;
    int _cursor = 0;
    int _first = 0;
    bool _fresh = true;
};

}  // namespace Tolm

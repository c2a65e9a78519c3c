#pragma once
// Rows of a dialog's item list: labels, check boxes, radio buttons and text
// input fields. Items never read keys; the owning dialog does and calls the
// list's movement or the focused item's editing.
#include <string>

#include "frame/Colors.h"

namespace Tolm {

class TextArea;

class Item {
public:
    explicit Item(bool selectable = true) : selectable(selectable) {}

    // The item's appearance changed.
    virtual void Changed() {}
    virtual ~Item() = default;
    // Write the item's markup into the row's text area.
    virtual void Render(TextArea& row) = 0;
    virtual void SetFocus(bool focus);

    // Disabled items keep their place but the highlight skips them.
    void SetEnabled(bool enable);

    bool selectable;
    bool focused = false;
    bool enabled = true;
    int background = Color::Yellow;
    int foreground = Color::Black;
};

class LabelItem : public Item {
public:
    explicit LabelItem(std::string label, bool selectable = true)
        : Item(selectable), _label(std::move(label)) {}
    void Render(TextArea& row) override;

    const std::string& Label() const { return _label; }
    void SetLabel(std::string label) { _label = std::move(label); }

protected:
    std::string _label;
};

class CheckItem : public LabelItem {
public:
    CheckItem(std::string label, bool checked = false, int leadingSpaces = 0)
        : LabelItem(std::move(label)), _checked(checked), _leadingSpaces(leadingSpaces) {}
    void Render(TextArea& row) override;

    bool IsChecked() const { return _checked; }
    void SetChecked(bool checked) { _checked = checked; }

private:
    bool _checked;
    int _leadingSpaces;
};

class RadioItem : public LabelItem {
public:
    RadioItem(std::string label, bool selected = false, int leadingSpaces = 0)
        : LabelItem(std::move(label)), _selected(selected), _leadingSpaces(leadingSpaces) {}
    void Render(TextArea& row) override;

    bool IsSelected() const { return _selected; }
    void SetSelected(bool selected) { _selected = selected; }

private:
    bool _selected;
    int _leadingSpaces;
};

}  // namespace Tolm

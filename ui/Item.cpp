#include "ui/Item.h"

#include <algorithm>

#include "ui/TextArea.h"

namespace Tolm {

void Item::SetFocus(bool focus)
{
    if (focus == focused) return;
    focused = focus;
    Changed();
}

void Item::SetEnabled(bool enable)
{
    enabled = enable;
    foreground = enable ? Color::Black : Color::DarkGrey;
}

void LabelItem::Render(TextArea& row) { row.SetText(_label); }

void CheckItem::Render(TextArea& row)
{
    row.SetText(std::string(static_cast<std::size_t>(std::max(_leadingSpaces, 0)), ' ') +
                (_checked ? "[X] " : "[ ] ") + _label);
}

void RadioItem::Render(TextArea& row)
{
    row.SetText(std::string(static_cast<std::size_t>(std::max(_leadingSpaces, 0)), ' ') +
                (_selected ? "(o) " : "( ) ") + _label);
}

}  // namespace Tolm

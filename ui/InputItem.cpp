#include "ui/InputItem.h"

#include <string.h>

#include <algorithm>

#include "frame/Keys.h"
#include "ui/Markup.h"
#include "ui/TextArea.h"

namespace Tolm {

namespace {
constexpr int CTRL_H = 8;
constexpr std::size_t MASKED_CAPACITY = 512;
}

InputItem::InputItem(std::string label, std::string value, int fieldWidth)
    : _label(std::move(label)), _fieldWidth(fieldWidth)
{
    SetValue(std::move(value));
}

InputItem::~InputItem()
{
    if (_masked) Wipe();
}

void InputItem::SetMasked(bool masked)
{
    _masked = masked;
    // Room for any password typed by hand, so editing never moves the
    // secret to a new buffer and leaves a copy behind.
    if (_masked) _value.reserve(MASKED_CAPACITY);
}

void InputItem::Wipe()
{
    // Bytes between size and capacity may hold earlier, longer values.
    _value.resize(_value.capacity());
    explicit_bzero(_value.data(), _value.size());
    Empty();
}

void InputItem::SetValue(std::string value)
{
    if (_masked) {
        Wipe();
        _value.append(value);
        explicit_bzero(value.data(), value.size());
        _cursor = static_cast<int>(_value.size());
        _fresh = true;
        return;
    }
    _value = std::move(value);
    _cursor = static_cast<int>(_value.size());
    _fresh = true;
}

void InputItem::Empty()
{
    _value.clear();
    _cursor = 0;
    _first = 0;
}

void InputItem::HandleKey(int key)
{
    const int length = static_cast<int>(_value.size());
    switch (key) {
        case Key::Home:
            _cursor = 0;
            _first = 0;
            _fresh = false;
            return;
        case Key::End:
            _fresh = false;
            if (length > 0) _cursor = length;
            return;
        case Key::Left:
            _fresh = false;
            if (_cursor > 0) {
                if (_cursor == _first) --_first;
                --_cursor;
            }
            return;
        case Key::Right:
            _fresh = false;
            if (_cursor < length) ++_cursor;
            return;
        case Key::Delete:
            if (_fresh) {
                Empty();
                _fresh = false;
            } else if (_cursor < length) {
                _value.erase(static_cast<std::size_t>(_cursor), 1);
            }
            return;
        case Key::Backspace:
        case CTRL_H:
            if (_fresh) {
                Empty();
                _fresh = false;
            } else if (_cursor > 0) {
                _value.erase(static_cast<std::size_t>(_cursor - 1), 1);
                --_cursor;
                // Deleting past the left edge of a scrolled field shows it
                // from the start again, with the cursor at the end.
                if (_cursor < _first) {
                    _first = 0;
                    _cursor = static_cast<int>(_value.size());
                }
            }
            return;
        default:
            if (_fresh) {
                Empty();
                _fresh = false;
            }
            if (key >= 32 && key < 127) {
                _value.insert(static_cast<std::size_t>(_cursor), 1, static_cast<char>(key));
                ++_cursor;
            }
            return;
    }
}

int InputItem::FieldWidth(int rowWidth) const
{
    return std::max(_fieldWidth == -1 ? rowWidth / 2 - 1 : _fieldWidth, 0);
}

std::string InputItem::RowText(int rowWidth)
{
    const int field = FieldWidth(rowWidth);
    const int length = static_cast<int>(_value.size());
    if (field > length) {
        _first = 0;
    } else if (_cursor - _first > field) {
        _first = _cursor - field;
    }
    _first = std::clamp(_first, 0, length);

    const std::size_t shown = std::min(_value.size() - static_cast<std::size_t>(_first), static_cast<std::size_t>(field));
    // A masked value is never copied, not even for drawing.
    const std::string visible =
        _masked ? std::string(shown, '*') : Markup::Literal(_value.substr(static_cast<std::size_t>(_first), shown));

    std::string text = _label;
    const int labelColumns = rowWidth - 5 - field;
    if (static_cast<int>(text.size()) < labelColumns) text.append(static_cast<std::size_t>(labelColumns) - text.size(), ' ');
    text += " [ ";
    if (focused) {
        text += _fresh ? "{bgcolor:white}{color:black}" : "{bgcolor:black}{color:white}";
        text += visible;
        text += "{/color}{/bgcolor}";
        if (static_cast<int>(visible.size()) < field)
            text.append(static_cast<std::size_t>(field) - visible.size(), ' ');
    } else {
        text += visible;
    }
    return text + " ]";
}

int InputItem::CursorColumn(int rowWidth) const
{
    return rowWidth - FieldWidth(rowWidth) - 2 + (_cursor - _first);
}

void InputItem::Render(TextArea& row)
{
    row.SetText(RowText(row.Width()));
    // Only the window in front shows the cursor: not one that a message box
    // covers, nor one dimmed while idle.
    if (focused && row.IsActive()) {
        Window::ShowCursor(true);
        row.MoveCursor(CursorColumn(row.Width()), 0);
    }
}

}  // namespace Tolm

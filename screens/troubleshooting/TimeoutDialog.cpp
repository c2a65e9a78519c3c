#include "screens/troubleshooting/TimeoutDialog.h"

#include <charconv>
#include <optional>
#include <string>

#include "catalogue/Footers.h"
#include "ui/InputItem.h"
#include "ui/MessageDialog.h"

namespace Tolm {

namespace {

// Wide enough for the largest value and a digit more to see it refused.
constexpr int FIELD_WIDTH = 6;

// The row's number, or nothing when it is empty; a number too large for
// an int counts as too large.
std::optional<long long> Minutes(const std::string& text)
{
    if (text.empty()) return std::nullopt;
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) return TimeoutDialog::MAX_MINUTES + 1LL;
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

}  // namespace

TimeoutDialog::TimeoutDialog(Frame* parent, int width, int height, int titleHeight, TextId title, TextId text)
    : Dialog(parent, width, height, titleHeight), _form(*this), _title(title), _text(text)
{
}

void TimeoutDialog::AddRow(TextId label, int shown, int current)
{
    InputItem& field = _form.AddInput(Text(label), shown >= 0 ? std::to_string(shown) : "", FIELD_WIDTH,
                                      KeyFilters::Chars(KeyFilters::Digits));
    _rows.push_back({&field, current});
}

bool TimeoutDialog::Accept()
{
    // Rows are taken in order: a row above the range ends the dialog with
    // the message box, and rows before it keep what they wrote.
    for (size_t i = 0; i < _rows.size(); ++i) {
        const std::optional<long long> minutes = Minutes(_rows[i].field->Value());
        if (!minutes) continue;
        if (*minutes > MAX_MINUTES) {
            MessageDialog message(this, TextId::InvalidTimeoutValue, TextId::TimeoutValueRange);
            Frame::Run(&message);
            return true;
        }
        if (*minutes != _rows[i].current) Apply(static_cast<int>(i), static_cast<int>(*minutes));
    }
    return true;
}

int TimeoutDialog::Execute()
{
    SetTitle(Text(_title));
    SetText(Text(_text));
    SetFooter(FOOTER_OK_CANCEL);
    _form.Focus(0);
    Form::Handlers handlers;
    handlers.accept = [this] { return Accept(); };
    return _form.Run(handlers);
}

}  // namespace Tolm

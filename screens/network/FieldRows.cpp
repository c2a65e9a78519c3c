#include "screens/network/FieldRows.h"

#include "ui/Form.h"
#include "ui/InputItem.h"

namespace Tolm {

void FieldRows::Add(std::string label, std::string value, int width, KeyFilter filter)
{
    if (_first < 0) _first = _form.Count();
    _inputs.push_back(&_form.AddInput(std::move(label), std::move(value), width, std::move(filter)));
}

const std::string& FieldRows::Value(int field) const { return _inputs.at(static_cast<size_t>(field))->Value(); }

void FieldRows::SetEnabled(bool enabled)
{
    // The rows follow a choice row, which keeps the highlight; the form
    // redraws once after the toggle.
    for (InputItem* input : _inputs) input->SetEnabled(enabled);
}

bool FieldRows::Passes(const std::optional<FieldError>& error)
{
    if (!error) return true;
    _form.Reject(_first + error->field, error->title, error->text);
    return false;
}

}  // namespace Tolm

#pragma once
// A run of input rows of a form that are enabled together, while one choice
// is marked, and checked together on Enter: the shape the address dialogs
// share.
#include <optional>
#include <string>
#include <vector>

#include "screens/network/FieldChecks.h"
#include "ui/KeyFilter.h"

namespace Tolm {

class Form;
class InputItem;

class FieldRows {
public:
    explicit FieldRows(Form& form) : _form(form) {}

    // Appends an input row to the form; the first one is field 0.
    void Add(std::string label, std::string value, int width, KeyFilter filter);
    const std::string& Value(int field) const;
    // For a choice row's toggle (the highlight is on that row, and the form
    // redraws after it).
    void SetEnabled(bool enabled);

    // True when there is no error; otherwise the field it names is refused
    // (a message box, then the focus on it, the text kept).
    bool Passes(const std::optional<FieldError>& error);

private:
    Form& _form;
    int _first = -1;
    std::vector<InputItem*> _inputs;
};

}  // namespace Tolm

#pragma once
// The shape the timeout dialogs share: rows of minutes from 0 (disabled) to
// 1440, digits only, pre-filled with the current values. On Enter every row
// is checked before anything is written; a row above 1440 is refused with a
// message box and keeps its text.
#include <optional>
#include <vector>

#include "catalogue/TextId.h"
#include "ui/Dialog.h"
#include "ui/Form.h"

namespace Tolm {

class InputItem;

class TimeoutDialog : public Dialog {
public:
    static constexpr int MAX_MINUTES = 1440;

    // 0 on Esc, 1 otherwise.
    int Execute() final;

protected:
    TimeoutDialog(Frame* parent, int width, int height, int titleHeight, TextId title, TextId text);

    // A row labelled `label` showing `shown` minutes (empty when negative:
    // not known); an entry equal to `current` is no change.
    void AddRow(TextId label, int shown, int current);
    void AddRow(TextId label, int current) { AddRow(label, current, current); }

    // Called once all rows are valid, with the minutes of each row that
    // changed (empty rows and rows equal to their current value did not).
    virtual void Apply(const std::vector<std::optional<int>>& changed) = 0;

private:
    struct Row {
        InputItem* field;
        int current;
    };
    bool Accept();

    Form _form;
    std::vector<Row> _rows;
    TextId _title;
    TextId _text;
};

}  // namespace Tolm

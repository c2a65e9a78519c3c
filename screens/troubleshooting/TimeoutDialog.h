#pragma once
// The shape the timeout dialogs share: rows of minutes from 0 (disabled) to
// 1440, digits only, pre-filled with the current values. On Enter every row
// is taken in turn; a row above 1440 shows a message box and closes the
// dialog, without changing that row or the rows after it.
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

    // Called for each row, in order, whose minutes changed (empty rows and
    // rows equal to their current value did not).
    virtual void Apply(int row, int minutes) = 0;

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

#pragma once
// Asks whether to apply the management network changes: Y or N answers
// (result 1, read Answer()), Esc goes back to the screen (result 0).
#include "ui/Dialog.h"

namespace Tolm {

class ApplyChangesDialog : public Dialog {
public:
    static constexpr int WIDTH = 70;
    static constexpr int HEIGHT = 15;

    // rebootNeeded: IPv6 was switched on or off, so applying restarts the host.
    ApplyChangesDialog(Frame* parent, bool rebootNeeded);
    int Execute() override;

    // After result 1: true for yes.
    bool Answer() const { return _answer; }

private:
    bool _rebootNeeded;
    bool _answer = false;
};

}  // namespace Tolm

#pragma once
// Asks whether to keep a new password that equals the old one.
#include "ui/Dialog.h"

namespace Tolm {

class SamePasswordConfirmDialog : public Dialog {
public:
    explicit SamePasswordConfirmDialog(Frame* parent);
    // 1 for Enter (go ahead), 0 for Esc.
    int Execute() override;
};

}  // namespace Tolm

#pragma once
// Asks whether to keep a new password that equals the old one: 1 Enter, 0 Esc.
#include "ui/ConfirmDialog.h"

namespace Tolm {

class SamePasswordConfirmDialog : public ConfirmDialog {
public:
    explicit SamePasswordConfirmDialog(Frame* parent);
};

}  // namespace Tolm

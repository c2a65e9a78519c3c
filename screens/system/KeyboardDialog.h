#pragma once
// Chooses the console keyboard layout.
#include "ui/Dialog.h"

namespace Tolm {

class KeyboardDialog : public Dialog {
public:
    explicit KeyboardDialog(Frame* parent);
    int Execute() override;
};

}  // namespace Tolm

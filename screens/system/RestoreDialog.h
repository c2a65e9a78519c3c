#pragma once
// Resets the system configuration (F11), then restarts the host on Enter.
#include "ui/Dialog.h"

namespace Tolm {

class RestoreDialog : public Dialog {
public:
    explicit RestoreDialog(Frame* parent);
    int Execute() override;
};

}  // namespace Tolm

#pragma once
// Shut down (F2) or restart (F11) the host.
#include "ui/Dialog.h"

namespace Tolm {

class ShutdownDialog : public Dialog {
public:
    explicit ShutdownDialog(Frame* parent);
    int Execute() override;
};

}  // namespace Tolm

#pragma once
// Powers the VMs off and shuts the host down; returns only if the command cannot start.
#include "ui/Dialog.h"

namespace Tolm {

class ShutdownConfirmDialog : public Dialog {
public:
    ShutdownConfirmDialog(Frame* parent, bool force);
    int Execute() override;
};

}  // namespace Tolm

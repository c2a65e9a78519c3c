#pragma once
// Powers the VMs off and restarts the host; returns only if the command cannot start.
#include "ui/Dialog.h"

namespace Tolm {

class RebootConfirmDialog : public Dialog {
public:
    RebootConfirmDialog(Frame* parent, bool force);
    int Execute() override;
};

}  // namespace Tolm

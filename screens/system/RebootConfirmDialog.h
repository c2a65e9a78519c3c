#pragma once
// Powers the VMs off and restarts the host; returns only if the command cannot start.
#include "screens/system/PowerConfirmDialog.h"

namespace Tolm {

class RebootConfirmDialog : public PowerConfirmDialog {
public:
    RebootConfirmDialog(Frame* parent, bool force);
};

}  // namespace Tolm

#pragma once
// Powers the VMs off and shuts the host down; returns only if the command cannot start.
#include "screens/system/PowerConfirmDialog.h"

namespace Tolm {

class ShutdownConfirmDialog : public PowerConfirmDialog {
public:
    ShutdownConfirmDialog(Frame* parent, bool force);
};

}  // namespace Tolm

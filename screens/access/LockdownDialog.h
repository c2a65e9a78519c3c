#pragma once
// Turns lockdown mode on or off through the management agent.
#include "ui/Dialog.h"

namespace Tolm {

class LockdownDialog : public Dialog {
public:
    explicit LockdownDialog(Frame* parent);
    int Execute() override;
};

}  // namespace Tolm

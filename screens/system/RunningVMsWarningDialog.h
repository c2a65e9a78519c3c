#pragma once
// Yes/no warning before an operation that disturbs running VMs: 1 Enter, 0 Esc.
#include "ui/Dialog.h"

namespace Tolm {

class RunningVMsWarningDialog : public Dialog {
public:
    explicit RunningVMsWarningDialog(Frame* parent);
    int Execute() override;
};

}  // namespace Tolm

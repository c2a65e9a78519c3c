#pragma once
// Yes/no warning before an operation that disturbs running VMs: 1 Enter, 0 Esc.
#include "ui/ConfirmDialog.h"

namespace Tolm {

class RunningVMsWarningDialog : public ConfirmDialog {
public:
    explicit RunningVMsWarningDialog(Frame* parent);
};

}  // namespace Tolm

#pragma once
// Turns lockdown mode on or off through the management agent.
#include "ui/Form.h"
#include "ui/Dialog.h"

namespace Tolm {

class CheckItem;

class LockdownDialog : public Dialog {
public:
    explicit LockdownDialog(Frame* parent);
    // 0 on Esc; 1 after Enter, whether or not a request ran or succeeded.
    int Execute() override;

private:
    // Runs the enter or exit request and logs its outcome.
    void Request(bool enable);

    bool _enabled;
    Form _fields;
    CheckItem* _check = nullptr;
};

}  // namespace Tolm

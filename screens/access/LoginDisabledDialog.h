#pragma once
// Shown instead of the login when console login is switched off.
#include "ui/Dialog.h"

namespace Tolm {

class LoginDisabledDialog : public Dialog {
public:
    explicit LoginDisabledDialog(Frame* parent);
    int Execute() override;
};

}  // namespace Tolm

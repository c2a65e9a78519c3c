#pragma once
// Asks for a login name and password (or smart-card PIN) and checks them through PAM.
#include "ui/Dialog.h"

namespace Tolm {

class LoginDialog : public Dialog {
public:
    explicit LoginDialog(Frame* parent);
    // 1 when the user was authenticated (the frame knows the name), 0 on Esc.
    int Execute() override;
};

}  // namespace Tolm

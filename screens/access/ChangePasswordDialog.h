#pragma once
// Changes the logged-in user's password.
#include "ui/Dialog.h"

namespace Tolm {

class ChangePasswordDialog : public Dialog {
public:
    explicit ChangePasswordDialog(Frame* parent);
    int Execute() override;
};

}  // namespace Tolm

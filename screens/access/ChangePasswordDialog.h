#pragma once
// Changes the logged-in user's password.
#include "ui/Form.h"
#include "catalogue/TextId.h"
#include "ui/Dialog.h"

namespace Tolm {

class InputItem;

class ChangePasswordDialog : public Dialog {
public:
    explicit ChangePasswordDialog(Frame* parent);
    // 1 when the password was changed, 0 on Esc.
    int Execute() override;

private:
    enum Field { OLD = 0, NEW = 1, CONFIRM = 2 };

    // True when the old password is right; otherwise says so and empties it.
    bool CheckOldPassword();
    // True when the password was changed.
    bool Submit();
    void ShowError(TextId messageId);
    // The password dialog moves between its fields by its own rules.
    bool OwnKey(int key);

    Form _fields;
    InputItem* _old = nullptr;
    InputItem* _new = nullptr;
    InputItem* _confirm = nullptr;
};

}  // namespace Tolm

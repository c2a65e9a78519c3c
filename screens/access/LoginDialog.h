#pragma once
// Asks for a login name and password (or smart-card PIN) and checks them through PAM.
#include <memory>

#include "ui/Form.h"
#include "ui/Dialog.h"

namespace Tolm {

class InputItem;
class LabelItem;

class LoginDialog : public Dialog {
public:
    explicit LoginDialog(Frame* parent);
    // 1 when the user was authenticated (the frame knows the name), 0 on Esc.
    int Execute() override;

    bool PinMode() const { return _pinMode; }

private:
    // Title, prompt, footer and field values for the current mode.
    void Fill();
    void UpdateKeyboardLine();
    // True when the user got in.
    bool TryLogin();
    // Keys of its own: the keyboard row and the PIN switch.
    bool OwnKey(int key);

    Form _fields;
    LabelItem* _keyboard = nullptr;  // absent over a serial line
    InputItem* _name = nullptr;
    InputItem* _password = nullptr;
    int _nameIndex = 0;
    bool _pinMode = false;
};

}  // namespace Tolm

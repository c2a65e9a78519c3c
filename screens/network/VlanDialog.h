#pragma once
// The VLAN ID of the management network: one digits-only row, empty for none.
#include "ui/Dialog.h"
#include "ui/Form.h"

namespace Tolm {

class InputItem;

class VlanDialog : public Dialog {
public:
    VlanDialog(Frame* parent, int vlanId);  // 0 = none
    // 1 after OK, 0 on Esc.
    int Execute() override;
    // After OK: 0 when the row is empty.
    int VlanId() const { return _vlanId; }

private:
    bool Accept();

    Form _form;
    InputItem* _row = nullptr;
    int _vlanId;
};

}  // namespace Tolm

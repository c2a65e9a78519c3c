#include "screens/network/VlanDialog.h"

#include <string>

#include "screens/network/FieldChecks.h"
#include "ui/InputItem.h"
#include "ui/MessageDialog.h"

namespace Tolm {

namespace {
constexpr int WIDTH = 70;
constexpr int HEIGHT = 12;
constexpr int TITLE_HEIGHT = 6;
constexpr int FIELD_WIDTH = 5;
}  // namespace

VlanDialog::VlanDialog(Frame* parent, int vlanId) : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _form(*this), _vlanId(vlanId)
{
    _row = &_form.AddInput(Text(TextId::VlanIdLabel), vlanId == 0 ? "" : std::to_string(vlanId), FIELD_WIDTH,
                           KeyFilters::Chars(KeyFilters::Digits));
}

bool VlanDialog::Accept()
{
    const auto id = ParseVlanId(_row->Value());
    if (!id) {
        _form.Reject(0, TextId::InvalidVLANID, TextId::PleaseReenterValidVLANID);
        return false;
    }
    if (*id == VLAN_ALL) {
        MessageDialog warning(this, TextId::Warning, TextId::Vlan4095Warning);
        Frame::Run(&warning);
    }
    _vlanId = *id;
    return true;
}

int VlanDialog::Execute()
{
    SetTitle(Text(TextId::VLANOptional));
    SetText(Text(TextId::VlanText));
    SetFooter(FOOTER_OK_CANCEL);
    Form::Handlers handlers;
    handlers.accept = [this] { return Accept(); };
    return _form.Run(handlers);
}

}  // namespace Tolm

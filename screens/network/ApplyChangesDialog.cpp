#include "screens/network/ApplyChangesDialog.h"

#include "catalogue/Footers.h"
#include "frame/Keys.h"
#include "ui/TextArea.h"

namespace Tolm {

namespace {

constexpr int TITLE_HEIGHT = 9;

}  // namespace

ApplyChangesDialog::ApplyChangesDialog(Frame* parent, bool rebootNeeded)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _rebootNeeded(rebootNeeded)
{
}

int ApplyChangesDialog::Execute()
{
    SetTitle(Text(TextId::ConfigureManagementNetworkConfirm));
    SetText(Text(TextId::ApplyNetworkChangesText));
    if (Content())
        Content()->AddChild<TextArea>(1, 0, WIDTH - 6, 1)->SetText(Text(_rebootNeeded ? TextId::ApplyChangesRebootHost : TextId::ApplyChangesRestartManagement));
    SetFooter(FOOTER_YES_NO_CANCEL);
    for (;;) {
        switch (Frame::GetKey(this, true)) {
        case 'y':
        case 'Y':
            _answer = true;
            return 1;
        case 'n':
        case 'N':
            _answer = false;
            return 1;
        case Key::Escape:
            return 0;
        default:
            break;
        }
    }
}

}  // namespace Tolm

#include "screens/network/ApplyChangesDialog.h"

#include "frame/Keys.h"
#include "ui/TextArea.h"

namespace Tolm {

namespace {

constexpr int TITLE_HEIGHT = 9;
constexpr unsigned ID_TITLE = 211;
constexpr unsigned ID_TEXT = 212;
constexpr unsigned ID_RESTART_NETWORK = 213;
constexpr unsigned ID_REBOOT_HOST = 214;
constexpr const char* FOOTER_YES_NO_CANCEL =
    "{color:black}<Y>{/color} {color:dark-grey}Yes{/color}  {color:black}<N>{/color} {color:dark-grey}No{/color}"
    "{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

}  // namespace

ApplyChangesDialog::ApplyChangesDialog(Frame* parent, bool rebootNeeded)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _rebootNeeded(rebootNeeded)
{
}

int ApplyChangesDialog::Execute()
{
    SetTitle(Text(ID_TITLE));
    SetText(Text(ID_TEXT));
    if (Content())
        Content()->AddChild<TextArea>(1, 0, WIDTH - 6, 1)->SetText(Text(_rebootNeeded ? ID_REBOOT_HOST : ID_RESTART_NETWORK));
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

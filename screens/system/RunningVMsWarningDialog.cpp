#include "screens/system/RunningVMsWarningDialog.h"

#include "frame/Keys.h"
#include "screens/system/Texts.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 10;
constexpr int TITLE_HEIGHT = 7;

constexpr unsigned ID_TITLE = 173;
constexpr unsigned ID_TEXT = 174;

constexpr const char* FOOTER =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}{align:right}{color:black}<Esc>{/color} "
    "{color:dark-grey}Cancel{/color}{/align}";

}  // namespace

RunningVMsWarningDialog::RunningVMsWarningDialog(Frame* parent) : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT) {}

int RunningVMsWarningDialog::Execute()
{
    SetTitle(CatalogueText(_factory, ID_TITLE));
    SetText(CatalogueText(_factory, ID_TEXT));
    SetFooter(FOOTER);
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Enter) return 1;
        if (key == Key::Escape) return 0;
    }
}

}  // namespace Tolm

#include "screens/access/SamePasswordConfirmDialog.h"

#include "frame/Keys.h"
#include "ui/catalogue/StringFactory.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 70;
constexpr int HEIGHT = 8;
constexpr int TITLE_HEIGHT = 5;

constexpr unsigned ID_TITLE = 162;
constexpr unsigned ID_TEXT = 166;

constexpr const char* FOOTER =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}"
    "{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

}  // namespace

SamePasswordConfirmDialog::SamePasswordConfirmDialog(Frame* parent) : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT) {}

int SamePasswordConfirmDialog::Execute()
{
    SetTitle(_factory ? _factory->GetString(ID_TITLE) : "");
    SetText(_factory ? _factory->GetString(ID_TEXT) : "");
    SetFooter(FOOTER);
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Enter) return 1;
        if (key == Key::Escape) return 0;
    }
}

}  // namespace Tolm

#include "screens/access/LoginDisabledDialog.h"

#include <string>

#include "frame/Keys.h"
#include "screens/access/HostAndDomain.h"
#include "catalogue/StringFactory.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 9;
// Room for a two-line text in the title band.
constexpr int TITLE_HEIGHT = 6;

constexpr TextId ID_TITLE = TextId::AuthenticationDenied;
constexpr TextId ID_TEXT = TextId::DirectConsoleAccessDisabled;

}  // namespace

LoginDisabledDialog::LoginDisabledDialog(Frame* parent) : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT) {}

int LoginDisabledDialog::Execute()
{
    const auto text = [this](TextId id) { return std::string(Text(id)); };
    SetTitle(text(ID_TITLE));
    SetText(text(ID_TEXT) + HostAndDomain() + ".");
    SetFooter(FOOTER_ENTER_OK);

    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Enter || key == Key::Escape) return 0;
    }
}

}  // namespace Tolm

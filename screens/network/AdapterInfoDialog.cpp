#include "screens/network/AdapterInfoDialog.h"

#include "ui/Form.h"
#include "ui/Markup.h"

namespace Tolm {

namespace {
constexpr int WIDTH = 70;
constexpr int HEIGHT = 13;
constexpr int TITLE_HEIGHT = 9;
constexpr const char* TITLE = "Adapter Details";
}  // namespace

AdapterInfoDialog::AdapterInfoDialog(Frame* parent, std::string name, std::string label, std::string mac,
                                     std::string status, std::string usedBy)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT)
{
    _details = "Device Name: " + Markup::Literal(name) + "\nHardware Label: " + Markup::Literal(label) +
               "\nMAC Address: " + Markup::Literal(mac) + "\nConnection Status: " + Markup::Literal(status) +
               "\nUsed By: " + (usedBy.empty() ? std::string("None") : Markup::Literal(usedBy));
}

int AdapterInfoDialog::Execute()
{
    SetTitle(TITLE);
    SetText(_details);
    SetFooter(FOOTER_ENTER_OK);
    Form nothing(*this);
    return nothing.Run({});
}

}  // namespace Tolm

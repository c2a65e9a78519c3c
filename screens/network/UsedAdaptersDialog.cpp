#include "screens/network/UsedAdaptersDialog.h"

#include "ui/Form.h"
#include "ui/Markup.h"

namespace Tolm {

namespace {
constexpr int WIDTH = 70;
constexpr int HEIGHT = 14;
constexpr int TITLE_HEIGHT = 11;
}  // namespace

UsedAdaptersDialog::UsedAdaptersDialog(Frame* parent, std::vector<std::string> adapters)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _adapters(std::move(adapters))
{
}

int UsedAdaptersDialog::Execute()
{
    std::string names;
    for (const auto& name : _adapters) names += (names.empty() ? "" : ", ") + Markup::Literal(name);
    SetTitle(Text(TextId::NetworkAdaptersWarning));
    SetText(Text(TextId::OneMoreSelectedAdapters) + "\n\n" + names + "\n\n" + Text(TextId::RemoveTheseAdaptersTheir));
    SetFooter(FOOTER_OK_CANCEL);
    // No rows: Enter and Esc are the only keys that do anything.
    Form answer(*this);
    return answer.Run({});
}

}  // namespace Tolm

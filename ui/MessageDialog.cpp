#include "ui/MessageDialog.h"

#include "frame/Keys.h"
#include "ui/catalogue/StringFactory.h"

namespace Tolm {

namespace {
std::string Lookup(StringFactory* factory, unsigned id) { return factory ? factory->GetString(id) : ""; }
}  // namespace

MessageDialog::MessageDialog(Frame* parent, unsigned titleId, unsigned messageId)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _titleId(titleId), _messageId(messageId),
      _message(Lookup(_factory, messageId))
{
}

MessageDialog::MessageDialog(Frame* parent, unsigned titleId, std::string message)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _titleId(titleId), _message(std::move(message))
{
}

int MessageDialog::Execute()
{
    SetTitle(Lookup(_factory, _titleId));
    SetText(_message);
    SetFooter(FOOTER_ENTER_OK);
    while (Frame::GetKey(this, true) != Key::Enter) {
    }
    return 1;
}

}  // namespace Tolm

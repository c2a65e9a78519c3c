#include "ui/MessageDialog.h"

#include "frame/Keys.h"

namespace Tolm {

MessageDialog::MessageDialog(Frame* parent, TextId titleId, TextId messageId)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _titleId(titleId), _message(Text(messageId))
{
}

MessageDialog::MessageDialog(Frame* parent, TextId titleId, std::string message)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _titleId(titleId), _message(std::move(message))
{
}

int MessageDialog::Execute()
{
    SetTitle(Text(_titleId));
    SetText(_message);
    SetFooter(FOOTER_ENTER_OK);
    AwaitKey(Key::Enter);
    return 1;
}

}  // namespace Tolm

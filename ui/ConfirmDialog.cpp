#include "ui/ConfirmDialog.h"

#include "frame/Keys.h"

namespace Tolm {

ConfirmDialog::ConfirmDialog(Frame* parent, int width, int height, int titleHeight, TextId titleId,
                             TextId textId)
    : Dialog(parent, width, height, titleHeight), _titleId(titleId), _textId(textId)
{
}

int ConfirmDialog::Execute()
{
    SetTitle(Text(_titleId));
    SetText(Text(_textId));
    SetFooter(FOOTER_CONFIRM_CANCEL);
    return AwaitChoice(Key::Enter) ? 1 : 0;
}

}  // namespace Tolm

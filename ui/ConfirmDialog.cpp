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
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Enter) return 1;
        if (key == Key::Escape) return 0;
    }
}

}  // namespace Tolm

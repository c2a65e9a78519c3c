#pragma once
// A titled question answered with Enter (1) or Esc (0); other keys are ignored.
#include "ui/Dialog.h"

namespace Tolm {

class ConfirmDialog : public Dialog {
public:
    ConfirmDialog(Frame* parent, int width, int height, int titleHeight, TextId titleId, TextId textId);
    int Execute() override;

private:
    TextId _titleId;
    TextId _textId;
};

}  // namespace Tolm

#pragma once
// A titled question answered with Enter (1) or Esc (0); other keys are ignored.
#include "ui/Dialog.h"

namespace Tolm {

class ConfirmDialog : public Dialog {
public:
    ConfirmDialog(Frame* parent, int width, int height, int titleHeight, unsigned titleId, unsigned textId);
    int Execute() override;

private:
    unsigned _titleId;
    unsigned _textId;
};

inline constexpr const char* FOOTER_CONFIRM_CANCEL =
    "{color:black}<Enter>{/color} {color:dark-grey}Confirm{/color}"
    "{align:right}{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

}  // namespace Tolm

#include "screens/system/RunningVMsWarningDialog.h"

namespace Tolm {

namespace {

constexpr unsigned ID_TITLE = 173;
constexpr unsigned ID_TEXT = 174;

}  // namespace

RunningVMsWarningDialog::RunningVMsWarningDialog(Frame* parent)
    : ConfirmDialog(parent, 60, 10, 7, ID_TITLE, ID_TEXT)
{
}

}  // namespace Tolm

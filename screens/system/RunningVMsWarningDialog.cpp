#include "screens/system/RunningVMsWarningDialog.h"

namespace Tolm {

namespace {

constexpr TextId ID_TITLE = TextId::WarningVMsRunningHost;
constexpr TextId ID_TEXT = TextId::HostHasVMsRunning;

}  // namespace

RunningVMsWarningDialog::RunningVMsWarningDialog(Frame* parent)
    : ConfirmDialog(parent, 60, 10, 7, ID_TITLE, ID_TEXT)
{
}

}  // namespace Tolm

#include "screens/system/RebootConfirmDialog.h"

namespace Tolm {

namespace {
constexpr TextId ID_TITLE = TextId::RestartHost;
constexpr TextId ID_TEXT = TextId::RestartInProgress;
}  // namespace

RebootConfirmDialog::RebootConfirmDialog(Frame* parent, bool force)
    : PowerConfirmDialog(parent, force, {ID_TITLE, ID_TEXT, "reboot"})
{
}

}  // namespace Tolm

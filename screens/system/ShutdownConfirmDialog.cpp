#include "screens/system/ShutdownConfirmDialog.h"

namespace Tolm {

namespace {
constexpr TextId ID_TITLE = TextId::ShutDownHost;
constexpr TextId ID_TEXT = TextId::ShutdownInProgress;
}  // namespace

ShutdownConfirmDialog::ShutdownConfirmDialog(Frame* parent, bool force)
    : PowerConfirmDialog(parent, force, {ID_TITLE, ID_TEXT, "poweroff"})
{
}

}  // namespace Tolm

#include "screens/system/ShutdownConfirmDialog.h"

namespace Tolm {

namespace {
constexpr unsigned ID_TITLE = 171;  // "Shut Down Host"
constexpr unsigned ID_TEXT = 172;   // "Shutdown in progress..."
}  // namespace

ShutdownConfirmDialog::ShutdownConfirmDialog(Frame* parent, bool force)
    : PowerConfirmDialog(parent, force, {ID_TITLE, ID_TEXT, "poweroff"})
{
}

}  // namespace Tolm

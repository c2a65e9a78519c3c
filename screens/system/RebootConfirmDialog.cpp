#include "screens/system/RebootConfirmDialog.h"

namespace Tolm {

namespace {
constexpr unsigned ID_TITLE = 175;  // "Restart Host"
constexpr unsigned ID_TEXT = 176;   // "Restart in progress..."
}  // namespace

RebootConfirmDialog::RebootConfirmDialog(Frame* parent, bool force)
    : PowerConfirmDialog(parent, force, {ID_TITLE, ID_TEXT, "reboot"})
{
}

}  // namespace Tolm

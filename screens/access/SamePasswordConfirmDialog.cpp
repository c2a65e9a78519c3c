#include "screens/access/SamePasswordConfirmDialog.h"

namespace Tolm {

namespace {

constexpr unsigned ID_TITLE = 162;
constexpr unsigned ID_TEXT = 166;

}  // namespace

SamePasswordConfirmDialog::SamePasswordConfirmDialog(Frame* parent)
    : ConfirmDialog(parent, 70, 8, 5, ID_TITLE, ID_TEXT)
{
}

}  // namespace Tolm

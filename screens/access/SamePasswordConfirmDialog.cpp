#include "screens/access/SamePasswordConfirmDialog.h"

namespace Tolm {

namespace {

constexpr TextId ID_TITLE = TextId::ConfigurePasswordWarning;
constexpr TextId ID_TEXT = TextId::NewPasswordSameAsOld;

}  // namespace

SamePasswordConfirmDialog::SamePasswordConfirmDialog(Frame* parent)
    : ConfirmDialog(parent, 70, 8, 5, ID_TITLE, ID_TEXT)
{
}

}  // namespace Tolm

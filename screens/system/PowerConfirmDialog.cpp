#include "screens/system/PowerConfirmDialog.h"

#include "exec/Exec.h"
#include "exec/ShellCommand.h"
#include "screens/system/HostDown.h"
#include "screens/system/Texts.h"

namespace Tolm {

PowerConfirmDialog::PowerConfirmDialog(Frame* parent, bool force, Action action)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _force(force), _action(action)
{
}

int PowerConfirmDialog::Execute()
{
    SetTitle(CatalogueText(_factory, _action.titleId));
    SetText(CatalogueText(_factory, _action.textId));
    PowerOffVms(!_force);
    if (RunShellCommand(_action.command) == -1) return 0;
    AwaitHostDown(this);
}

}  // namespace Tolm

#include "screens/system/PowerConfirmDialog.h"

#include "exec/Exec.h"
#include "exec/ShellCommand.h"
#include "screens/system/HostDown.h"
#include "catalogue/StringFactory.h"

namespace Tolm {

PowerConfirmDialog::PowerConfirmDialog(Frame* parent, bool force, Action action)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _force(force), _action(action)
{
}

int PowerConfirmDialog::Execute()
{
    SetTitle(Text(_action.titleId));
    SetText(Text(_action.textId));
    PowerOffVms(!_force);
    if (RunShellCommand(_action.command) == -1) return 0;
    AwaitHostDown(this);
}

}  // namespace Tolm

#pragma once
// The shape the shut-down and restart confirmations share: show the
// progress text, stop the virtual machines, run the power command and wait
// for the host to go down. They differ only in texts and command.
#include "ui/Dialog.h"

namespace Tolm {

class PowerConfirmDialog : public Dialog {
public:
    static constexpr int WIDTH = 70;
    static constexpr int HEIGHT = 10;
    static constexpr int TITLE_HEIGHT = 7;

    struct Action {
        TextId titleId;
        TextId textId;
        const char* command;  // run through the system shell
    };

    // Returns 0 only when the command could not be started; otherwise the
    // process ends with the host.
    int Execute() override;

protected:
    // force: running VMs are terminated rather than handled by their
    // shutdown policy.
    PowerConfirmDialog(Frame* parent, bool force, Action action);

private:
    bool _force;
    Action _action;
};

}  // namespace Tolm

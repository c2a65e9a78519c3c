#pragma once
// Asks before the management network is restarted: F11 restarts it through
// DoRestartNetworkDialog, Esc cancels, every other key (Enter too) is ignored.
#include "ui/Dialog.h"

namespace HostCtl::Network {
class TarnNic;
}

namespace Tolm {

class TextArea;

class RestartNetworkDialog : public Dialog {
public:
    // `nic` stays the caller's and must outlive the dialog.
    RestartNetworkDialog(Frame* parent, HostCtl::Network::TarnNic& nic);
    // 1 when the restart ran, 0 when cancelled. A host-library failure
    // passes out as HostCtl::Lib::HostCtlException.
    int Execute() override;

    // The menu's side: runs the confirmation for `nic` and reports a host
    // failure in the menu's error box, so the console stays usable.
    static int Open(Frame* menu, HostCtl::Network::TarnNic* nic);

private:
    HostCtl::Network::TarnNic& _nic;
    TextArea* _question = nullptr;
};

}  // namespace Tolm

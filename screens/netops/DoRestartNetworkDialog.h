#pragma once
// Restarts the management interface (stop, refresh, start), shows the
// progress as it goes and the addresses it came back with, and waits for
// Enter. Nothing can be left while the restart runs.
#include <string>
#include <vector>

#include "ui/Dialog.h"

namespace HostCtl::Network {
class Ipv6Network;
class TarnNic;
}  // namespace HostCtl::Network

namespace Tolm {

class TextArea;

class DoRestartNetworkDialog : public Dialog {
public:
    // `nic` stays the caller's and must outlive the dialog.
    DoRestartNetworkDialog(Frame* parent, HostCtl::Network::TarnNic& nic);
    // 1 once the user pressed Enter. Host-library failures pass out.
    int Execute() override;

    // The IPv6 address lines: static networks that are not link-local, at
    // most two and a "   ..." line, unless the list holds exactly three.
    static std::string Ipv6Lines(const std::vector<HostCtl::Network::Ipv6Network>& networks,
                                 const std::string& label);

private:
    // Show the progress so far before the host keeps us waiting.
    void Show(const std::string& progress);

    HostCtl::Network::TarnNic& _nic;
    TextArea* _progress = nullptr;
};

}  // namespace Tolm

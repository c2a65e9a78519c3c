#pragma once
// The screen "Configure Management Network": reads the management interface's
// settings on entry into a pending configuration, lets the dialogs edit it,
// and on Esc asks whether to apply it.
#include <functional>
#include <memory>
#include <string>

#include "host/TarnNic.h"
#include "screens/network/PendingNetwork.h"
#include "ui/MenuTable.h"
#include "ui/RootWindow.h"

namespace Tolm {

class NetworkWindow : public RootWindow {
public:
    explicit NetworkWindow(Frame* parent);
    ~NetworkWindow() override;
    int Execute() override;
    // Redraws the rows and the summary of the selected one.
    void Refresh() override;

private:
    // Reads the host into the pending configuration; false: leave the screen.
    bool Enter();
    // Runs one read of the host; a failure is shown and answers false.
    bool ReadHost(const std::function<void()>& read);
    void ReadInterface();
    void ReadNamesAndRoutes();
    // Esc: true when the screen is to close.
    bool Leave();

    // The right-hand panel of each row.
    std::string AdaptersPane();
    std::string VlanPane() const;
    std::string Ipv4Pane() const;
    std::string Ipv6Pane();
    std::string DnsPane() const;
    std::string SuffixesPane() const;
    std::string ValueLine(TextId label, const std::string& value) const;
    std::string Description(TextId text) const;

    // What Enter opens on each row.
    int EditAdapters();
    int EditVlan();
    int EditIpv4();
    int EditIpv6();
    int EditDns();
    int EditSuffixes();

    MenuTable _menu;
    std::unique_ptr<HostCtl::Network::TarnNic> _mgmtIntf;
    PendingNetwork _pending;
};

}  // namespace Tolm

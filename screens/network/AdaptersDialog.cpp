#include "screens/network/AdaptersDialog.h"

#include <algorithm>

#include "exec/HostCall.h"
#include "host/TarnCtlNetwork.h"
#include "screens/network/AdapterInfoDialog.h"
#include "screens/network/AdapterRows.h"
#include "screens/network/UsedAdaptersDialog.h"
#include "ui/Item.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"

namespace Tolm {

namespace {
constexpr int WIDTH = 74;
constexpr int HEIGHT = 20;
constexpr int TITLE_HEIGHT = 7;
// The header lines up with the text after a row's "[X] ".
constexpr const char* HEADER_INDENT = "    ";

std::string Label(const HostCtl::Network::Pnic& pnic)
{
    const auto pci = pnic.GetPciDevice();
    return pci ? pci->GetHardwareLabel() : "";
}
}  // namespace

AdaptersDialog::AdaptersDialog(Frame* parent, std::vector<std::string> adapters, int maxActiveUplinks)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT),
      _adapters(std::move(adapters)),
      _maxActiveUplinks(maxActiveUplinks),
      _form(*this)
{
}

bool AdaptersDialog::ReadAdapters()
{
    TarnCtl::Network::NetworkInfoImpl info;
    const auto failed = HostCall("Getting physical nics failed:", [&] { _pnics = info.GetPnics(); });
    if (failed) {
        MessageDialog message(this, TextId::NetworkConfigurationError, Markup::Literal(*failed));
        Frame::Run(&message);
        return false;
    }
    // Without the scan no adapter is known to serve elsewhere; the host
    // still refuses such an adapter when the change is applied.
    std::string ownSwitch;
    std::vector<HostCtl::Network::VirtualSwitch> switches;
    std::vector<HostCtl::Network::Dlswitch> dlswitches;
    HostCall("Scanning virtual switches failed:", [&] {
        info.UpdateManagementInterface();
        if (const auto nic = info.GetManagementInterface()) ownSwitch = nic->GetConnectionPoint().GetSwitchName();
        switches = info.GetVirtualSwitches();
    });
    HostCall("Scanning dlswitches failed:", [&] { dlswitches = info.GetDlswitches(); });
    _users = AdapterUsers(switches, dlswitches, ownSwitch);

    _form.AddLabel(HEADER_INDENT + std::string(ADAPTER_LIST_HEADER), false);
    for (const auto& pnic : _pnics) {
        const bool pending = std::find(_adapters.begin(), _adapters.end(), pnic.GetName()) != _adapters.end();
        _rows.push_back(&_form.AddCheck(AdapterRowText(pnic.GetName(), Label(pnic),
                                                       pnic.GetMacAddress().GetStringAddress(), pnic.IsLinkUp(),
                                                       _users.count(pnic.GetName()) > 0),
                                        pending));
    }
    _form.Redraw();
    return true;
}

void AdaptersDialog::ShowDetails()
{
    const auto row = std::find(_rows.begin(), _rows.end(), _form.At(_form.Focused()));
    if (row == _rows.end()) return;
    const auto& pnic = _pnics[static_cast<size_t>(row - _rows.begin())];
    const auto user = _users.find(pnic.GetName());
    AdapterInfoDialog details(this, pnic.GetName(), Label(pnic), pnic.GetMacAddress().GetStringAddress(),
                              AdapterStatusText(pnic.IsLinkUp()), user == _users.end() ? "" : user->second);
    Frame::Run(&details);
}

bool AdaptersDialog::Accept()
{
    std::vector<std::string> marked;
    std::vector<std::string> used;
    for (size_t i = 0; i < _rows.size(); ++i) {
        if (!_rows[i]->IsChecked()) continue;
        const std::string& name = _pnics[i].GetName();
        marked.push_back(name);
        if (_users.count(name) > 0) used.push_back(name);
    }
    if (!used.empty()) {
        // Cancelling the warning goes back to the list, marks as they are.
        UsedAdaptersDialog warning(this, used);
        if (Frame::Run(&warning) != 1) return false;
    }
    _taken = std::move(used);
    _adapters = NewAdapterOrder(_adapters, marked);
    return true;
}

int AdaptersDialog::Execute()
{
    SetTitle(Text(TextId::NetworkAdaptersTitle));
    SetText(Text(TextId::SelectAdaptersHostS));
    SetFooter(FOOTER_DETAILS_TOGGLE_OK_CANCEL);
    if (!ReadAdapters()) return 0;
    Form::Handlers handlers;
    handlers.accept = [this] { return Accept(); };
    handlers.key = [this](int key) {
        // Either case: nobody expects Shift for a letter key here.
        if (key != 'D' && key != 'd') return false;
        ShowDetails();
        return true;
    };
    return _form.Run(handlers);
}

}  // namespace Tolm

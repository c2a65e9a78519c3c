#pragma once
// Which physical adapters carry the management network, in team order.
#include <map>
#include <string>
#include <vector>

#include "host/HostCtlNetwork.h"
#include "ui/Dialog.h"
#include "ui/Form.h"

namespace Tolm {

class CheckItem;

class AdaptersDialog : public Dialog {
public:
    AdaptersDialog(Frame* parent, std::vector<std::string> adapters, int maxActiveUplinks);
    // 1 after OK, 0 on Esc (or when the adapters cannot be read).
    int Execute() override;

    // The new ordered list after OK.
    const std::vector<std::string>& Adapters() const { return _adapters; }
    // Left as it was: the team's standby policy is not this dialog's.
    int MaxActiveUplinks() const { return _maxActiveUplinks; }
    // The adapters the operator agreed to take from other switches; the
    // apply step removes them there before adding them as uplinks.
    const std::vector<std::string>& TakenFromOtherSwitches() const { return _taken; }

private:
    // Reads the adapters and who uses them into rows; false when the
    // adapters cannot be read.
    bool ReadAdapters();
    void ShowDetails();
    bool Accept();

    std::vector<std::string> _adapters;
    int _maxActiveUplinks;
    std::vector<std::string> _taken;
    std::vector<HostCtl::Network::Pnic> _pnics;  // one per row, in list order
    std::map<std::string, std::string> _users;   // adapter to its other connection
    Form _form;
    std::vector<CheckItem*> _rows;
};

}  // namespace Tolm

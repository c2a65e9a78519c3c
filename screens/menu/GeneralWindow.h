#pragma once
// The System Customization menu.
#include <memory>
#include <string>
#include <vector>

#include "host/TarnNic.h"
#include "ui/MenuTable.h"
#include "ui/RootWindow.h"

namespace Tolm {

class GeneralWindow : public RootWindow {
public:
    // passwordSet: the logged-in user's password is not empty.
    GeneralWindow(Frame* parent, bool passwordSet);
    ~GeneralWindow() override;
    // Returns when the user logs out (Esc).
    int Execute() override;
    // Re-reads which entries are available and redraws the panes.
    void Refresh() override;
    // Writes the footer of the selected entry.
    virtual void WriteFooter();

    // The management interface found when the menu was built (null when
    // there is none or the look-up failed).
    static std::unique_ptr<HostCtl::Network::TarnNic> _mgmtIntf;

    // For the entries' actions.
    const std::vector<std::string>& SupportPages() const { return _supportPages; }

private:
    // Asks the host which entries can be used now.
    void ReadHost();
    void LookUpManagementInterface();
    // The panes and actions of the entries that need more than a text.
    std::string PasswordPane() const;
    std::string ManagementAddresses();
    std::string LogList();
    std::string SupportPane() const;
    std::string SupportTitle() const;
    int ChangePassword();
    void TurnSupportPage(int delta);
    template <class Screen>
    int Open()
    {
        Screen screen(this);
        return Frame::Run(&screen);
    }

    MenuTable _menu;

    std::vector<std::string> _supportPages;
    size_t _supportPage = 0;
    bool _passwordSet;

    // What the host allows, read at construction and on each refresh.
    bool _lockdownAvailable = false;
    bool _managementUsable = false;
    bool _driverVmSupported = false;
    bool _pxeBoot = false;
};

}  // namespace Tolm

#include "screens/system/GeneralWindow.h"

#include "exec/Exec.h"
#include "frame/Display.h"
#include "frame/Keys.h"
#include "host/HostCtlException.h"
#include "host/HostPaths.h"
#include "host/Log.h"
#include "host/TarnCtlAdv.h"
#include "host/TarnCtlSystem.h"
#include "screens/access/ChangePasswordDialog.h"
#include "screens/access/LockdownDialog.h"
#include "screens/system/KeyboardDialog.h"
#include "screens/system/LogViewer.h"
#include "screens/system/RestoreDialog.h"
#include "screens/system/SupportPages.h"
#include "ui/catalogue/StringFactory.h"
#include "ui/Item.h"
#include "ui/ItemList.h"
#include "ui/TextArea.h"

namespace Tolm {

std::unique_ptr<HostCtl::Network::TarnNic> GeneralWindow::_mgmtIntf;

namespace {

// When an entry can be chosen.
enum class Enable { Always, Never, Lockdown, DriverVm, Management, NoPxeBoot };

constexpr const char* FOOTER_CHANGE =
    "{color:white}<Enter>{/color}{color:light-grey} Change{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char* FOOTER_MORE =
    "{color:white}<Enter>{/color}{color:light-grey} More{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char* FOOTER_RESTART =
    "{color:white}<Enter>{/color} {color:light-grey}Restart{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char* FOOTER_RUN_TEST =
    "{color:white}<Enter>{/color}{color:light-grey} Run Test{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char* FOOTER_RESET =
    "{color:white}<Enter>{/color}{color:light-grey} Reset{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
// The logs open by their own keys, listed in the help pane.
constexpr const char* FOOTER_LOG_OUT =
    "{align:right}{color:white}<Esc>{/color}{color:light-grey} Log Out{/color}{/align}";
constexpr const char* FOOTER_PAGES =
    "{color:white}<Page Up>{/color} {color:white}<Page Down>{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";
constexpr const char* FOOTER_LEFT = "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}";

constexpr unsigned ID_SPACER = 3;
constexpr unsigned ID_MENU_TITLE = 4;
constexpr unsigned ID_PASSWORD = 5;
constexpr unsigned ID_MANAGEMENT = 8;
constexpr unsigned ID_SUPPORT = 12;
constexpr unsigned ID_LOGS = 13;
constexpr unsigned ID_PASSWORD_EMPTY_HELP = 35;
constexpr unsigned ID_HOSTNAME = 42;
constexpr unsigned ID_IPV4 = 37;
constexpr unsigned ID_IPV6 = 38;
constexpr unsigned ID_NOT_SET = 120;

constexpr const char* SUPPORT_FILE = "/etc/pellor/support";

template <class Screen>
int RunScreen(Frame* parent)
{
    Screen screen(parent);
    return Frame::Run(&screen);
}

}  // namespace

// One row of the menu. `open` is null for a spacer and for the entries whose
// screens this console does not have yet: they keep their place and rules.
struct GeneralMenuEntry {
    unsigned id;
    unsigned helpId;  // 0: the help pane is built otherwise
    Enable enable;
    const char* footer;
    int (*open)(Frame* parent);
};

namespace {

const GeneralMenuEntry kMenu[] = {
    {5, 22, Enable::Always, FOOTER_CHANGE, RunScreen<ChangePasswordDialog>},
    {6, 23, Enable::Lockdown, FOOTER_CHANGE, RunScreen<LockdownDialog>},
    {ID_SPACER, 0, Enable::Never, "", nullptr},
    {7, 24, Enable::DriverVm, FOOTER_CHANGE, nullptr},
    {ID_MANAGEMENT, 25, Enable::Management, FOOTER_MORE, nullptr},
    {9, 26, Enable::Management, FOOTER_RESTART, nullptr},
    {10, 27, Enable::Management, FOOTER_RUN_TEST, nullptr},
    {11, 28, Enable::Always, FOOTER_MORE, nullptr},
    {ID_SPACER, 0, Enable::Never, "", nullptr},
    {16, 34, Enable::Always, FOOTER_CHANGE, RunScreen<KeyboardDialog>},
    {14, 30, Enable::Always, FOOTER_MORE, nullptr},
    {ID_SPACER, 0, Enable::Never, "", nullptr},
    {ID_LOGS, 29, Enable::Always, FOOTER_LOG_OUT, nullptr},
    {ID_SPACER, 0, Enable::Never, "", nullptr},
    {ID_SUPPORT, 0, Enable::Always, FOOTER_PAGES, nullptr},
    {ID_SPACER, 0, Enable::Never, "", nullptr},
    {15, 31, Enable::NoPxeBoot, FOOTER_RESET, RunScreen<RestoreDialog>},
};
constexpr int MENU_SIZE = sizeof(kMenu) / sizeof(kMenu[0]);

}  // namespace

GeneralWindow::GeneralWindow(Frame* parent, bool passwordSet) : RootWindow(parent), _passwordSet(passwordSet)
{
    ReadHost();
    _supportPages = ReadSupportPages(HostPath::Resolve(SUPPORT_FILE));

    std::vector<Item*> rows;
    for (const GeneralMenuEntry& entry : kMenu) {
        const bool spacer = entry.id == ID_SPACER;
        _items.push_back(std::make_unique<LabelItem>(Text(entry.id), !spacer));
        rows.push_back(_items.back().get());
    }
    for (int i = 0; i < MENU_SIZE; ++i) _items[i]->SetEnabled(IsEnabled(kMenu[i]));
    _leftContent->SetItems(rows);
    _leftTitle->SetText(Text(ID_MENU_TITLE));
    _leftFooter->SetText(FOOTER_LEFT);
}

GeneralWindow::~GeneralWindow() = default;


void GeneralWindow::ReadHost()
{
    _lockdownAvailable = OrlaCmdGetBool("orlasvc/auth/lockdown_is_enabled") ||
                         OrlaCmdGetBool("orlasvc/auth/lockdown_is_possible");
    LookUpManagementInterface();
    try {
        _driverVmSupported = TarnCtl::System::SystemInfoImpl().IsDriverVmSupported();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting DriverVM support failed: %s", e.what());
        _driverVmSupported = false;
    }
    try {
        _pxeBoot = TarnCtl::Adv::AdvancedOptionImpl().HasUserOption("PXEBootEnabled");
    } catch (const HostCtl::Lib::HostCtlException& e) {
        // Unknown: keep the reset away rather than offer it on a PXE-booted host.
        Log::Write(LOG_ERR, "Getting user option PXEBootEnabled failed: %s", e.what());
        _pxeBoot = true;
    }
}

void GeneralWindow::LookUpManagementInterface()
{
    _managementUsable = false;
    try {
        _networkInfo.UpdateManagementInterface();
        _mgmtIntf = _networkInfo.GetManagementInterface();
        _managementUsable = _mgmtIntf && _mgmtIntf->IsUsable();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting management interface failed: %s", e.what());
        _mgmtIntf.reset();
    }
}

bool GeneralWindow::IsEnabled(const GeneralMenuEntry& entry) const
{
    switch (entry.enable) {
    case Enable::Always: return true;
    case Enable::Never: return false;
    case Enable::Lockdown: return _lockdownAvailable;
    case Enable::DriverVm: return _driverVmSupported;
    case Enable::Management: return _managementUsable;
    case Enable::NoPxeBoot: return !_pxeBoot;
    }
    return false;
}

void GeneralWindow::ApplyEnabled()
{
    for (int i = 0; i < MENU_SIZE; ++i) _items[i]->SetEnabled(IsEnabled(kMenu[i]));
    const Item* selected = _leftContent->Selected();
    if (selected && !selected->enabled) {
        _leftContent->Down();
        selected = _leftContent->Selected();
        if (selected && !selected->enabled) _leftContent->Up();
    }
    _leftContent->Redraw();
}

const GeneralMenuEntry* GeneralWindow::Selected() const
{
    const int index = _leftContent->SelectedIndex();
    if (index < 0 || index >= MENU_SIZE || kMenu[index].id == ID_SPACER) return nullptr;
    return &kMenu[index];
}

std::string GeneralWindow::ManagementAddresses()
{
    if (!_mgmtIntf) return "";
    std::string text;
    try {
        text += "\n\n" + Text(ID_HOSTNAME) + ":\n  " + _dnsConfig.GetHostname();
        const auto ipv4 = _mgmtIntf->GetIpConfig().GetIpv4Address();
        text += "\n\n" + Text(ID_IPV4) + ":\n  " +
                (ipv4.GetBinaryAddress() != 0 ? ipv4.GetStringAddress() : Text(ID_NOT_SET));
        const auto networks = _mgmtIntf->GetIpv6Config().GetIpv6Network();
        if (!networks.empty()) {
            text += "\n\n" + Text(ID_IPV6) + ":";
            for (const auto& network : networks) text += "\n  " + network.GetStringAddress();
        }
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting management addresses failed: %s", e.what());
    }
    // A host name is the host's text, not markup.
    std::erase_if(text, [](char c) { return c == '{' || c == '}'; });
    return "{color:white}" + text + "{/color}";
}

std::string GeneralWindow::LogList()
{
    std::string text = "\n";
    for (int i = 0; i < kHostLogCount; ++i)
        text += std::string("\n{color:white}<") + kHostLogs[i].keyName + "> {color:light-grey}" +
                kHostLogs[i].name + "{/color}{/color}";
    return text;
}

std::string GeneralWindow::HelpText(const GeneralMenuEntry& entry)
{
    switch (entry.id) {
    case ID_PASSWORD:
        return Text(_passwordSet ? entry.helpId : ID_PASSWORD_EMPTY_HELP);
    case ID_MANAGEMENT:
        return Text(entry.helpId) + ManagementAddresses();
    case ID_LOGS:
        return Text(entry.helpId) + LogList();
    case ID_SUPPORT:
        return _supportPages.empty() ? "" : _supportPages[_supportPage];
    default:
        return Text(entry.helpId);
    }
}

void GeneralWindow::WriteFooter()
{
    const GeneralMenuEntry* entry = Selected();
    _rightFooter->SetText(entry ? entry->footer : "");
}

void GeneralWindow::ShowSelection()
{
    const GeneralMenuEntry* entry = Selected();
    std::string title = entry ? Text(entry->id) : "";
    if (entry && entry->id == ID_SUPPORT && _supportPages.size() > 1)
        title += " (" + std::to_string(_supportPage + 1) + "/" + std::to_string(_supportPages.size()) + ")";
    _rightTitle->SetText(title);
    // The list's last row shares its line with the left footer; a redraw of
    // the list wipes it.
    _leftFooter->SetText(FOOTER_LEFT);
    _rightContent->SetText(entry ? HelpText(*entry) : "");
    WriteFooter();
}

void GeneralWindow::Refresh()
{
    ReadHost();
    ApplyEnabled();
    ShowSelection();
}

void GeneralWindow::TurnSupportPage(int delta)
{
    const long page = static_cast<long>(_supportPage) + delta;
    if (page < 0 || page >= static_cast<long>(_supportPages.size())) return;
    _supportPage = static_cast<size_t>(page);
    ShowSelection();
}

void GeneralWindow::Open(const GeneralMenuEntry& entry)
{
    if (!entry.open || !IsEnabled(entry)) return;
    const int result = entry.open(this);
    if (entry.id == ID_PASSWORD && result == 1) _passwordSet = true;
    // What the host allows may have changed behind the dialog.
    Refresh();
}

int GeneralWindow::Execute()
{
    ShowSelection();
    for (;;) {
        const int key = Frame::GetKey(this, true);
        const GeneralMenuEntry* entry = Selected();
        switch (key) {
        case Key::Escape:
            return 0;
        case Key::Up:
            _leftContent->Up();
            ShowSelection();
            continue;
        case Key::Down:
            _leftContent->Down();
            ShowSelection();
            continue;
        case Key::Enter:
            if (entry) Open(*entry);
            continue;
        case Key::PageUp:
        case Key::PageDown:
            if (entry && entry->id == ID_SUPPORT) TurnSupportPage(key == Key::PageDown ? 1 : -1);
            continue;
        default:
            break;
        }
        if (entry && entry->id == ID_LOGS) {
            if (const HostLog* log = FindHostLog(key)) {
                ViewHostLog(*log);
                Display::ForceFullRepaint();
                Draw(true);
            }
        }
    }
}

}  // namespace Tolm

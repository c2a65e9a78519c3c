#include "screens/menu/GeneralWindow.h"

#include "exec/Exec.h"
#include "frame/Display.h"
#include "frame/Keys.h"
#include "exec/HostCall.h"
#include "host/HostPaths.h"
#include "host/Log.h"
#include "host/TarnCtlAdv.h"
#include "host/TarnCtlSystem.h"
#include "screens/access/ChangePasswordDialog.h"
#include "screens/access/LockdownDialog.h"
#include "screens/system/KeyboardDialog.h"
#include "screens/menu/LogViewer.h"
#include "screens/network/NetworkWindow.h"
#include "screens/system/RestoreDialog.h"
#include "screens/menu/SupportPages.h"
#include "screens/netops/RestartNetworkDialog.h"
#include "screens/netops/TestDialog.h"
#include "screens/troubleshooting/TroubleShootingWindow.h"
#include "catalogue/StringFactory.h"
#include "catalogue/Footers.h"
#include "ui/Markup.h"

namespace Tolm {

std::unique_ptr<HostCtl::Network::TarnNic> GeneralWindow::_mgmtIntf;

namespace {

constexpr TextId ID_HOSTNAME = TextId::Hostname;
constexpr TextId ID_IPV4 = TextId::IPv4Address;
constexpr TextId ID_IPV6 = TextId::IPv6Addresses;
constexpr TextId ID_NOT_SET = TextId::NotSet;

constexpr const char* SUPPORT_FILE = "/etc/pellor/support";

}  // namespace

GeneralWindow::GeneralWindow(Frame* parent, bool passwordSet)
    : RootWindow(parent), _menu(*this), _passwordSet(passwordSet)
{
    ReadHost();
    _supportPages = ReadSupportPages(HostPath::Resolve(SUPPORT_FILE));

    const auto help = [this](TextId id) { return [this, id] { return Text(id); }; };
    const auto always = std::function<bool()>();
    const std::function<bool()> management = [this] { return _managementUsable; };
    const auto notYet = std::function<int()>();
    _menu.SetEntries(TextId::SystemCustomization, {
        {TextId::ConfigurePassword, [this] { return PasswordPane(); }, always, Fixed(FOOTER_MENU_CHANGE),
         [this] { return ChangePassword(); }},
        {TextId::ConfigureLockdownMode, help(TextId::ConfigureLockdownModeHelp),
         [this] { return _lockdownAvailable; }, Fixed(FOOTER_MENU_CHANGE), [this] { return Open<LockdownDialog>(); }},
        MenuEntry::Spacer(),
        {TextId::ConfigureDriverVMDevices, help(TextId::DriverVMHelp), [this] { return _driverVmSupported; },
         Fixed(FOOTER_MENU_CHANGE), notYet},
        {TextId::ConfigureManagementNetwork, [this] { return Text(TextId::ConfigureManagementNetworkHelp) + ManagementAddresses(); },
         management, Fixed(FOOTER_MENU_MORE), [this] { return Open<NetworkWindow>(); }},
        {TextId::RestartManagementNetwork, help(TextId::RestartManagementNetworkHelp), management,
         Fixed(FOOTER_MENU_RESTART), [this] { return RestartNetworkDialog::Open(this, _mgmtIntf.get()); }},
        {TextId::TestManagementNetwork, help(TextId::TestManagementNetworkHelp), management,
         Fixed(FOOTER_MENU_RUN_TEST), [this] { return Open<TestDialog>(); }},
        {TextId::NetworkRestoreOptions, help(TextId::NetworkRestoreOptionsHelp), always, Fixed(FOOTER_MENU_MORE), notYet},
        MenuEntry::Spacer(),
        {TextId::ConfigureKeyboard, help(TextId::ConfigureKeyboardHelp), always, Fixed(FOOTER_MENU_CHANGE),
         [this] { return Open<KeyboardDialog>(); }},
        {TextId::TroubleshootingOptions, help(TextId::TroubleshootingOptionsHelp), always, Fixed(FOOTER_MENU_MORE), [this] { return Open<TroubleShootingWindow>(); }},
        MenuEntry::Spacer(),
        {TextId::ViewSystemLogs, [this] { return Text(TextId::ViewSystemLogsHelp) + LogList(); }, always,
         Fixed(FOOTER_MENU_LOG_OUT), notYet},
        MenuEntry::Spacer(),
        {TextId::ViewSupportInformation, [this] { return SupportPane(); }, always, Fixed(FOOTER_MENU_PAGES), notYet,
         [this] { return SupportTitle(); }},
        MenuEntry::Spacer(),
        {TextId::ResetSystemConfiguration, help(TextId::ResetSystemConfigurationHelp), [this] { return !_pxeBoot; },
         Fixed(FOOTER_MENU_RESET), [this] { return Open<RestoreDialog>(); }},
    });
}

GeneralWindow::~GeneralWindow() = default;


void GeneralWindow::ReadHost()
{
    _lockdownAvailable = OrlaCmdGetBool("orlasvc/auth/lockdown_is_enabled") ||
                         OrlaCmdGetBool("orlasvc/auth/lockdown_is_possible");
    LookUpManagementInterface();
    _driverVmSupported = HostValue(
        "Getting DriverVM support failed:", [] { return TarnCtl::System::SystemInfoImpl().IsDriverVmSupported(); },
        false);
    // Unknown: keep the reset away rather than offer it on a PXE-booted host.
    _pxeBoot = HostValue(
        "Getting user option PXEBootEnabled failed:",
        [] { return TarnCtl::Adv::AdvancedOptionImpl().HasUserOption("PXEBootEnabled"); }, true);
}

void GeneralWindow::LookUpManagementInterface()
{
    _managementUsable = false;
    const auto error = HostCall("Getting management interface failed:", [this] {
        _networkInfo.UpdateManagementInterface();
        _mgmtIntf = _networkInfo.GetManagementInterface();
        _managementUsable = _mgmtIntf && _mgmtIntf->IsUsable();
    });
    if (error) _mgmtIntf.reset();
}

std::string GeneralWindow::ManagementAddresses()
{
    if (!_mgmtIntf) return "";
    std::string text;
    HostCall("Getting management addresses failed:", [&] {
        text += "\n\n" + Text(ID_HOSTNAME) + ":\n  " + _dnsConfig.GetHostname();
        const auto ipv4 = _mgmtIntf->GetIpConfig().GetIpv4Address();
        text += "\n\n" + Text(ID_IPV4) + ":\n  " +
                (ipv4.GetBinaryAddress() != 0 ? ipv4.GetStringAddress() : Text(ID_NOT_SET));
        const auto networks = _mgmtIntf->GetIpv6Config().GetIpv6Network();
        if (!networks.empty()) {
            text += "\n\n" + Text(ID_IPV6) + ":";
            for (const auto& network : networks) text += "\n  " + network.GetStringAddress();
        }
    });
    return "{color:white}" + Markup::Literal(text) + "{/color}";
}

std::string GeneralWindow::LogList()
{
    std::string text = "\n";
    for (int i = 0; i < kHostLogCount; ++i)
        text += std::string("\n{color:white}<") + kHostLogs[i].keyName + "> {color:light-grey}" +
                kHostLogs[i].name + "{/color}{/color}";
    return text;
}

std::string GeneralWindow::PasswordPane() const
{
    return Text(_passwordSet ? TextId::ConfigurePasswordHelp : TextId::ChangeDefaultPasswordHelp);
}

std::string GeneralWindow::SupportPane() const
{
    return _supportPages.empty() ? "" : _supportPages[_supportPage];
}

std::string GeneralWindow::SupportTitle() const
{
    std::string title = Text(TextId::ViewSupportInformation);
    if (_supportPages.size() > 1)
        title += " (" + std::to_string(_supportPage + 1) + "/" + std::to_string(_supportPages.size()) + ")";
    return title;
}

int GeneralWindow::ChangePassword()
{
    const int result = Open<ChangePasswordDialog>();
    if (result == 1) _passwordSet = true;
    return result;
}

void GeneralWindow::WriteFooter() { _menu.WriteFooter(); }

void GeneralWindow::Refresh()
{
    ReadHost();
    _menu.Show();
}

void GeneralWindow::TurnSupportPage(int delta)
{
    const long page = static_cast<long>(_supportPage) + delta;
    if (page < 0 || page >= static_cast<long>(_supportPages.size())) return;
    _supportPage = static_cast<size_t>(page);
    _menu.ShowSelection();
}

int GeneralWindow::Execute()
{
    _menu.ShowSelection();
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Escape) return 0;
        if (_menu.HandleKey(key)) continue;
        const MenuEntry* entry = _menu.Selected();
        if (!entry) continue;
        if (entry->text == TextId::ViewSupportInformation && (key == Key::PageUp || key == Key::PageDown)) {
            TurnSupportPage(key == Key::PageDown ? 1 : -1);
        } else if (entry->text == TextId::ViewSystemLogs) {
            if (const HostLog* log = FindHostLog(key)) {
                ViewHostLog(*log);
                Display::ForceFullRepaint();
                Draw(true);
            }
        }
    }
}

}  // namespace Tolm

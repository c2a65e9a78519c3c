#include "screens/network/NetworkWindow.h"

#include "catalogue/Footers.h"
#include "exec/HostCall.h"
#include "frame/Keys.h"
#include "host/Log.h"
#include "host/TarnCtlNetwork.h"
#include "screens/network/AdaptersDialog.h"
#include "screens/network/ApplyChangesDialog.h"
#include "screens/network/DNSConfigurationDialog.h"
#include "screens/network/IPConfigurationDialog.h"
#include "screens/network/IPv6ConfigurationDialog.h"
#include "screens/network/NetworkApply.h"
#include "screens/network/SuffixesDialog.h"
#include "screens/network/Uplinks.h"
#include "screens/network/VlanDialog.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"

namespace Tolm {

using namespace HostCtl::Network;
using TarnCtl::Network::PnicImpl;

NetworkWindow::NetworkWindow(Frame* parent) : RootWindow(parent), _menu(*this)
{
    const std::function<bool()> onStandardSwitch = [this] { return !_pending._onDistributedSwitch; };
    const auto always = std::function<bool()>();
    const MenuText footer = Fixed(FOOTER_NETWORK_CHANGE_EXIT);
    _menu.SetEntries(TextId::ConfigureManagementNetworkTitle, {
        {TextId::NetworkAdapters, [this] { return AdaptersPane(); }, onStandardSwitch, footer,
         [this] { return EditAdapters(); }},
        {TextId::VLANOptional, [this] { return VlanPane(); }, onStandardSwitch, footer, [this] { return EditVlan(); }},
        MenuEntry::Spacer(),
        {TextId::IPv4Configuration, [this] { return Ipv4Pane(); }, always, footer, [this] { return EditIpv4(); }},
        {TextId::IPv6Configuration, [this] { return Ipv6Pane(); }, always, footer, [this] { return EditIpv6(); }},
        {TextId::DNSConfiguration, [this] { return DnsPane(); }, always, footer, [this] { return EditDns(); }},
        {TextId::CustomDNSSuffixes, [this] { return SuffixesPane(); }, always, footer,
         [this] { return EditSuffixes(); }},
    });
}

NetworkWindow::~NetworkWindow() = default;

int NetworkWindow::Execute()
{
    if (!Enter())
        return 0;
    _menu.Show();
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Escape) {
            if (Leave())
                return 0;
            continue;
        }
        _menu.HandleKey(key);
    }
}

void NetworkWindow::Refresh() { _menu.Show(); }

bool NetworkWindow::Enter()
{
    _pending = PendingNetwork();
    _mgmtIntf.reset();
    if (!ReadHost([this] { ReadInterface(); }))
        return false;
    if (!_mgmtIntf) {
        Log::Write(LOG_ERR, "Could not get a suitable management interface");
        MessageDialog box(this, TextId::EnableManagementNetworkError, TextId::ManagementInterfaceNotFound);
        Frame::Run(&box);
        return false;
    }
    _pending._onDistributedSwitch = Uplinks::IsOnDistributedSwitch();
    // Each has logged why it failed.
    if (!_pending._onDistributedSwitch &&
        (!Uplinks::GetUplinks(*_mgmtIntf, _pending._adapters) ||
         !Uplinks::GetMaxActiveUplinks(*_mgmtIntf, _pending._maxActiveUplinks) ||
         !Uplinks::GetVlanId(*_mgmtIntf, _pending._vlanId)))
        return false;
    // A host failure here is not the screen's to handle: it reaches the
    // menu's caller, which logs it and ends the console in order.
    ReadNamesAndRoutes();
    return true;
}

bool NetworkWindow::ReadHost(const std::function<void()>& read)
{
    // A host that fails to answer leaves the screen with the reason shown,
    // rather than taking the console down.
    const auto error = HostCall("Reading the management network failed:", read);
    if (!error)
        return true;
    MessageDialog box(this, TextId::EnableManagementNetworkError, Markup::Literal(*error));
    Frame::Run(&box);
    return false;
}

void NetworkWindow::ReadInterface()
{
    _pending._ipv6Enabled = _pending._ipv6EnabledAtEntry = _networkInfo.IsTarnIpv6Enabled();
    _networkInfo.UpdateManagementInterface();
    _mgmtIntf = _networkInfo.GetManagementInterface();
    if (!_mgmtIntf)
        return;
    _pending._ipConfig = _mgmtIntf->GetIpConfig();
    _pending._ipv6IpConfig = _mgmtIntf->GetIpv6Config();
}

void NetworkWindow::ReadNamesAndRoutes()
{
    _pending._ipConfig.SetIpv4Gateway(_routingInfo.GetTarnDefaultGateway());
    // The name as the host knows it, domain included, so that applying it
    // unchanged keeps the domain.
    const std::string domain = _dnsConfig.GetDomain();
    _pending._hostname = _dnsConfig.GetHostname() + (domain.empty() ? "" : "." + domain);
    const Ipv6Address ipv6Gateway = _routingInfo.GetIpv6TarnDefaultGateway();
    _pending._ipConfig.SetIpv6Gateway(ipv6Gateway);
    _pending._ipv6IpConfig.SetIpv6Gateway(ipv6Gateway);
    _pending._searchDomains = _dnsConfig.GetSearchDomains();

    DnsPair servers = DeriveDnsServers(_dnsConfig.GetNameServers(), _dnsConfig.GetIpv6NameServers());
    _pending._primaryDns = std::move(servers.primary);
    _pending._alternateDns = std::move(servers.alternate);
    _pending._suffixes = JoinSuffixes(_pending._searchDomains);
}

bool NetworkWindow::Leave()
{
    if (!_pending.NeedsConfirmation())
        return true;
    ApplyChangesDialog confirm(this, _pending.Ipv6Switched());
    if (Frame::Run(&confirm) == 0)
        return false;
    if (confirm.Answer()) {
        ApplyNetworkChanges(this, _pending, *_mgmtIntf);
        Log::Write(LOG_INFO, "Network settings changed.");
    }
    return true;
}

// ---- Panels ----------------------------------------------------------------

std::string NetworkWindow::ValueLine(TextId label, const std::string& value) const
{
    return "{color:white}" + Text(label) + ": " + Markup::Literal(value) + "{/color}\n";
}

std::string NetworkWindow::Description(TextId text) const
{
    return "\n{color:light-grey}" + Text(text) + "{/color}";
}

namespace {

std::string White(const std::string& text) { return "{color:white}" + text + "{/color}\n"; }

std::string Ipv4Text(const Ipv4Address& address, const std::string& notSet)
{
    return address.GetBinaryAddress() != 0 ? address.GetStringAddress() : notSet;
}

}  // namespace

std::string NetworkWindow::AdaptersPane()
{
    std::string text;
    for (const auto& name : _pending._adapters) {
        const std::string label = HostValue(
            "Getting adapter details failed:",
            [&] {
                PnicImpl pnic(name);
                const auto pci = pnic.GetPciDevice();
                return pci && !pci->GetHardwareLabel().empty() ? pci->GetHardwareLabel()
                                                                : pnic.GetMacAddress().GetStringAddress();
            },
            std::string());
        text += White(Markup::Literal(name + " (" + label + ")"));
    }
    return text + Description(TextId::NetworkAdaptersHelp);
}

std::string NetworkWindow::VlanPane() const
{
    return White(_pending._vlanId ? std::to_string(_pending._vlanId) : Text(TextId::NotSet)) +
           Description(TextId::VlanHelp);
}

std::string NetworkWindow::Ipv4Pane() const
{
    const IpConfig& config = _pending._ipConfig;
    const std::string notSet = Text(TextId::NotSet);
    const TextId mode = config.GetUseDhcp() ? TextId::Automatic
                        : config.GetIpv4UseNone() ? TextId::None
                                                  : TextId::Manual;
    return White(Text(mode)) + "\n" + ValueLine(TextId::IPv4Address, Ipv4Text(config.GetIpv4Address(), notSet)) +
           ValueLine(TextId::SubnetMask, Ipv4Text(config.GetIpv4Netmask(), notSet)) +
           ValueLine(TextId::DefaultGateway, Ipv4Text(config.GetIpv4Gateway(), notSet)) +
           Description(TextId::IPv4ConfigurationHelp);
}

std::string NetworkWindow::Ipv6Pane()
{
    std::string text = White(Text(_pending._ipv6Enabled ? TextId::IPv6Enabled : TextId::IPv6Disabled));
    if (_pending._ipv6Enabled && !_pending._ipv6EnabledAtEntry)
        text += White(Text(TextId::IPv6EnabledAfterReboot));
    // Asked again: the kernel's state, not the pending choice, decides what
    // there is to show.
    const bool kernelIpv6 = HostValue(
        "Getting IPv6 state failed:", [this] { return _networkInfo.IsTarnIpv6Enabled(); }, false);
    if (!kernelIpv6)
        return text + Description(TextId::IPv6SupportHelp);
    const IpConfig& config = _pending._ipv6IpConfig;
    const bool automatic = config.GetUseIpv6Dhcp() || config.GetUseIpv6RouterAdvertised();
    text += "\n" + White(Text(automatic ? TextId::Automatic : TextId::Manual)) + "\n";
    const auto lines = Ipv6AddressLines(config.GetIpv6Network());
    if (lines.empty()) {
        text += ValueLine(TextId::IPv6Addresses, Text(TextId::NotSet));
    } else {
        text += White(Text(TextId::IPv6Addresses) + ":");
        for (const auto& line : lines)
            text += White("  " + Markup::Literal(line));
    }
    const std::string gateway = config.GetIpv6Gateway().GetStringAddress();
    text += ValueLine(TextId::DefaultGateway, gateway == "::" ? Text(TextId::NotSet) : gateway);
    return text + Description(TextId::IPv6ConfigurationHelp);
}

std::string NetworkWindow::DnsPane() const
{
    const std::string notSet = Text(TextId::NotSet);
    auto server = [&](TextId label, const IpAddress* address) {
        if (address && address->IsIpv6())
            label = TextId::IPv6DNSServer;
        return ValueLine(label, address ? address->GetStringAddress() : notSet);
    };
    return White(Text(_pending._ipConfig.GetDhcpDns() ? TextId::Automatic : TextId::Manual)) + "\n" +
           server(TextId::PrimaryDNSServer, _pending._primaryDns.get()) +
           server(TextId::AlternateDNSServer, _pending._alternateDns.get()) +
           ValueLine(TextId::Hostname, _pending._hostname.empty() ? notSet : _pending._hostname) +
           Description(TextId::DNSConfigurationHelp);
}

std::string NetworkWindow::SuffixesPane() const
{
    return White(_pending._suffixes.empty() ? Text(TextId::NotSet) : Markup::Literal(_pending._suffixes)) +
           Description(TextId::CustomDNSSuffixesHelp);
}

// ---- Rows ------------------------------------------------------------------

int NetworkWindow::EditAdapters()
{
    std::string switchName;
    if (!Uplinks::SwitchName(*_mgmtIntf, switchName))
        return 0;
    AdaptersDialog dialog(this, _pending._adapters, _pending._maxActiveUplinks);
    const int result = Frame::Run(&dialog);
    if (result == 1)
        _pending.TakeAdapters(dialog.Adapters(), dialog.MaxActiveUplinks(), dialog.TakenFromOtherSwitches());
    return result;
}

int NetworkWindow::EditVlan()
{
    VlanDialog dialog(this, _pending._vlanId);
    const int result = Frame::Run(&dialog);
    if (result == 1)
        _pending.TakeVlan(dialog.VlanId());
    return result;
}

int NetworkWindow::EditIpv4()
{
    IPConfigurationDialog dialog(this, _pending._ipConfig);
    const int result = Frame::Run(&dialog);
    if (result == 1)
        _pending.TakeIpv4(dialog.Config());
    return result;
}

int NetworkWindow::EditIpv6()
{
    IPv6ConfigurationDialog dialog(this, _pending._ipv6Enabled, _pending._ipv6IpConfig);
    const int result = Frame::Run(&dialog);
    if (result == 1)
        _pending.TakeIpv6(dialog.Ipv6Enabled(), dialog.Config());
    return result;
}

int NetworkWindow::EditDns()
{
    DNSConfigurationDialog dialog(this, _pending._ipConfig.GetDhcpDns(), _pending._primaryDns.get(),
                                  _pending._alternateDns.get(), _pending._hostname);
    const int result = Frame::Run(&dialog);
    if (result == 1)
        _pending.TakeDns(dialog.DhcpDns(), dialog.Primary(), dialog.Alternate(), dialog.Hostname());
    return result;
}

int NetworkWindow::EditSuffixes()
{
    SuffixesDialog dialog(this, _pending._suffixes);
    const int result = Frame::Run(&dialog);
    if (result == 1)
        _pending.TakeSuffixes(dialog.Suffixes());
    return result;
}

}  // namespace Tolm

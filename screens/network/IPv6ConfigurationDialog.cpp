#include "screens/network/IPv6ConfigurationDialog.h"

#include <array>

#include "ui/Item.h"

namespace Tolm {

using HostCtl::Network::Ipv6Address;
using HostCtl::Network::Ipv6Network;

namespace {
constexpr int WIDTH = 78;
constexpr int HEIGHT = 21;
constexpr int TITLE_HEIGHT = 7;
constexpr int FIELD_WIDTH = 42;
constexpr int CHOICES = 0;  // the radio group
constexpr int INDENT = 4;
}  // namespace

IPv6ConfigurationDialog::IPv6ConfigurationDialog(Frame* parent, bool ipv6Enabled,
                                                 const HostCtl::Network::IpConfig& config)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT),
      _enabled(ipv6Enabled),
      _original(config),
      _config(config),
      _form(*this),
      _fields(_form)
{
    _disable = &_form.AddCheck(Text(TextId::DisableIPv6RestartRequiredRow));
    _dynamic = &_form.AddRadio(Text(TextId::UseDynamicIPv6Address), CHOICES);
    _dhcpv6 = &_form.AddCheck(Text(TextId::UseDHCPv6), false, INDENT);
    _static = &_form.AddRadio(Text(TextId::SetStaticIPv6Address), CHOICES);

    const std::vector<std::string> shown = TakeStaticNetworks(_config);
    const std::string indent(INDENT, ' ');
    const auto filter = KeyFilters::Chars(KeyFilters::Ipv6);
    for (int row = 0; row < NETWORK_ROWS; ++row) {
        const size_t at = static_cast<size_t>(row);
        _fields.Add(indent + Text(TextId::StaticAddress) + " #" + std::to_string(row + 1),
                    at < shown.size() ? shown[at] : "", FIELD_WIDTH, filter);
    }
    const Ipv6Address& gateway = _config.GetIpv6Gateway();
    _fields.Add(indent + Text(TextId::DefaultGatewayRow), gateway.IsUnset() ? "" : gateway.GetStringAddress(),
                FIELD_WIDTH, filter);
    Show();
}

void IPv6ConfigurationDialog::Show()
{
    const bool dynamic = _config.GetUseIpv6Dhcp() || _config.GetUseIpv6RouterAdvertised();
    _disable->SetChecked(!_enabled);
    _dynamic->SetSelected(dynamic);
    _dhcpv6->SetChecked(_config.GetUseIpv6Dhcp());
    _static->SetSelected(!dynamic);
    for (int row : {DYNAMIC, DHCPV6, STATIC}) _form.At(row)->SetEnabled(_enabled);
    _fields.SetEnabled(_enabled && !dynamic);
}

void IPv6ConfigurationDialog::Toggled(int row)
{
    switch (row) {
    case DISABLE:
        _enabled = !_disable->IsChecked();
        break;
    case DYNAMIC:
    case DHCPV6:
        // The DHCPv6 row picks between the two dynamic kinds.
        _config.SetUseIpv6Dhcp(_dhcpv6->IsChecked());
        _config.SetUseIpv6RouterAdvertised(!_dhcpv6->IsChecked());
        break;
    case STATIC:
        _config.SetUseIpv6Dhcp(false);
        _config.SetUseIpv6RouterAdvertised(false);
        break;
    default:
        break;
    }
    Show();
}

bool IPv6ConfigurationDialog::Accept()
{
    if (!_enabled) {
        // Switching IPv6 off changes nothing else, so switching it on again
        // finds the settings as they were.
        _config = _original;
        return true;
    }
    if (_config.GetUseIpv6Dhcp() || _config.GetUseIpv6RouterAdvertised()) return true;

    const std::array<std::string, NETWORK_ROWS> networks{_fields.Value(NETWORK_1), _fields.Value(NETWORK_2),
                                                         _fields.Value(NETWORK_3)};
    if (!_fields.Passes(CheckIpv6Static(networks, _fields.Value(GATEWAY)))) return false;
    // The rows go first, ahead of the networks not shown, so that the same
    // ones fill the rows next time.
    const std::vector<Ipv6Network> kept = _config.GetIpv6Network();
    _config.ClearIpv6Networks();
    for (const std::string& text : networks)
        if (!text.empty())
            _config.AddIpv6Network(Ipv6Network(text, HostCtl::Network::IPV6_TYPE_STATIC,
                                               HostCtl::Network::IPV6_SCOPE_GLOBAL));
    for (const Ipv6Network& network : kept) _config.AddIpv6Network(network);
    const std::string& gateway = _fields.Value(GATEWAY);
    _config.SetIpv6Gateway(gateway.empty() ? Ipv6Address() : Ipv6Address(gateway));
    return true;
}

int IPv6ConfigurationDialog::Execute()
{
    SetTitle(Text(TextId::IPv6ConfigurationTitle));
    SetText(Text(TextId::IPv6ConfigurationText));
    SetFooter(FOOTER_SELECT_MARK_OK_CANCEL);
    Form::Handlers handlers;
    handlers.accept = [this] { return Accept(); };
    handlers.toggled = [this](int row) { Toggled(row); };
    return _form.Run(handlers);
}

}  // namespace Tolm

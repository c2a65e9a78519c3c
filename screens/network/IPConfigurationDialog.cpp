#include "screens/network/IPConfigurationDialog.h"

#include "ui/Item.h"

namespace Tolm {

using HostCtl::Network::Ipv4Address;

namespace {
constexpr int WIDTH = 72;
constexpr int HEIGHT = 17;
constexpr int TITLE_HEIGHT = 7;
constexpr int FIELD_WIDTH = 16;
constexpr int CHOICES = 0;  // the radio group
constexpr int INDENT = 4;

// An unset address shows as an empty row rather than 0.0.0.0.
std::string Dotted(const Ipv4Address& address)
{
    return address.GetBinaryAddress() == 0 ? "" : address.GetStringAddress();
}
}  // namespace

IPConfigurationDialog::IPConfigurationDialog(Frame* parent, const HostCtl::Network::IpConfig& config)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _config(config), _form(*this), _fields(_form)
{
    const bool none = config.GetIpv4UseNone();
    const bool dhcp = !none && config.GetUseDhcp();
    _disable = &_form.AddRadio(Text(TextId::DisableIPv4ConfigurationManagement), CHOICES, none);
    _dhcp = &_form.AddRadio(Text(TextId::UseDynamicIPv4Address), CHOICES, dhcp);
    _static = &_form.AddRadio(Text(TextId::SetStaticIPv4Address), CHOICES, !none && !dhcp);
    const std::string indent(INDENT, ' ');
    const auto filter = KeyFilters::Chars(KeyFilters::Ipv4);
    _fields.Add(indent + Text(TextId::IPv4Address), Dotted(config.GetIpv4Address()), FIELD_WIDTH, filter);
    _fields.Add(indent + Text(TextId::SubnetMask), Dotted(config.GetIpv4Netmask()), FIELD_WIDTH, filter);
    _fields.Add(indent + Text(TextId::DefaultGateway), Dotted(config.GetIpv4Gateway()), FIELD_WIDTH, filter);
    _fields.SetEnabled(_static->IsSelected());
}

bool IPConfigurationDialog::Accept()
{
    _config.SetUseDhcp(_dhcp->IsSelected());
    // Cleared too, so that leaving "disabled" for another choice takes.
    _config.SetIpv4UseNone(_disable->IsSelected());
    if (!_static->IsSelected()) {
        _config.SetIpv4Gateway(Ipv4Address());
        return true;
    }
    if (!_fields.Passes(CheckIpv4Static(_fields.Value(ADDRESS), _fields.Value(NETMASK), _fields.Value(GATEWAY))))
        return false;
    _config.SetIpv4Address(Ipv4Address(_fields.Value(ADDRESS)));
    _config.SetIpv4Netmask(Ipv4Address(_fields.Value(NETMASK)));
    _config.SetIpv4Gateway(Ipv4Address(_fields.Value(GATEWAY)));
    return true;
}

int IPConfigurationDialog::Execute()
{
    SetTitle(Text(TextId::IPv4ConfigurationTitle));
    SetText(Text(TextId::IPv4ConfigurationText));
    SetFooter(FOOTER_SELECT_MARK_OK_CANCEL);
    Form::Handlers handlers;
    handlers.accept = [this] { return Accept(); };
    handlers.toggled = [this](int) { _fields.SetEnabled(_static->IsSelected()); };
    return _form.Run(handlers);
}

}  // namespace Tolm

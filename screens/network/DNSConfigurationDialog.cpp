#include "screens/network/DNSConfigurationDialog.h"

#include "ui/Item.h"

namespace Tolm {

using HostCtl::Network::IpAddress;

namespace {
constexpr int WIDTH = 72;
constexpr int HEIGHT = 15;
constexpr int TITLE_HEIGHT = 6;
constexpr int FIELD_WIDTH = 40;
constexpr int CHOICES = 0;  // the radio group
constexpr int INDENT = 4;

std::unique_ptr<IpAddress> Copy(const IpAddress* address) { return address ? address->Clone() : nullptr; }
std::string Shown(const IpAddress* address) { return address ? address->GetStringAddress() : ""; }
}  // namespace

DNSConfigurationDialog::DNSConfigurationDialog(Frame* parent, bool dhcpDns, const IpAddress* primary,
                                               const IpAddress* alternate, std::string hostname)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT),
      _dhcpDns(dhcpDns),
      _primary(Copy(primary)),
      _alternate(Copy(alternate)),
      _hostname(std::move(hostname)),
      _form(*this),
      _fields(_form)
{
    _automatic = &_form.AddRadio(Text(TextId::ObtainDNSServerAddresses), CHOICES, dhcpDns);
    _manual = &_form.AddRadio(Text(TextId::UseFollowingDNSServer), CHOICES, !dhcpDns);
    const std::string indent(INDENT, ' ');
    const auto server = KeyFilters::Chars(KeyFilters::IpAddress);
    _fields.Add(indent + Text(TextId::PrimaryDNSServer), Shown(primary), FIELD_WIDTH, server);
    _fields.Add(indent + Text(TextId::AlternateDNSServer), Shown(alternate), FIELD_WIDTH, server);
    // End moves nowhere in the hostname row.
    _fields.Add(indent + Text(TextId::Hostname), _hostname, FIELD_WIDTH,
                KeyFilters::Chars(KeyFilters::Hostname, false));
    _fields.SetEnabled(!dhcpDns);
}

bool DNSConfigurationDialog::Accept()
{
    _dhcpDns = _automatic->IsSelected();
    if (_dhcpDns) return true;
    if (!_fields.Passes(CheckDnsServers(_fields.Value(PRIMARY), _fields.Value(ALTERNATE)))) return false;
    _primary = DnsServer(_fields.Value(PRIMARY));
    _alternate = DnsServer(_fields.Value(ALTERNATE));
    _hostname = _fields.Value(HOSTNAME);
    return true;
}

int DNSConfigurationDialog::Execute()
{
    SetTitle(Text(TextId::DNSConfigurationTitle));
    SetText(Text(TextId::DNSConfigurationText));
    SetFooter(FOOTER_SELECT_MARK_OK_CANCEL);
    Form::Handlers handlers;
    handlers.accept = [this] { return Accept(); };
    handlers.toggled = [this](int) { _fields.SetEnabled(_manual->IsSelected()); };
    return _form.Run(handlers);
}

}  // namespace Tolm

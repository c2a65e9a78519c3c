#include "screens/netops/TestDialog.h"

#include "exec/HostCall.h"
#include "host/TarnCtlNetwork.h"
#include "screens/netops/RunTestDialog.h"
#include "ui/InputItem.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 70;
constexpr int HEIGHT = 14;
constexpr int TITLE_HEIGHT = 6;
constexpr int FIELD_WIDTH = 30;

bool IsAddress(const std::string& text)
{
    return HostCtl::Network::Ipv6Address::IsValidAddress(text) || HostCtl::Network::Ipv4Address::IsValidAddress(text);
}

}  // namespace

TestDialog::TestDialog(Frame* parent) : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _form(*this)
{
    const auto defaults = DefaultAddresses();
    for (int row = 0; row < ADDRESS_ROWS; ++row)
        _addressRows[row] = &_form.AddInput(Text(TextId::PingAddress) + " #" + std::to_string(row + 1), defaults[row],
                                            FIELD_WIDTH, KeyFilters::Chars(KeyFilters::IpAddress));
    _hostnameRow = &_form.AddInput(Text(TextId::ResolveHostname), DefaultHostname(), FIELD_WIDTH,
                                   KeyFilters::Chars(KeyFilters::Hostname));
}

std::array<std::string, TestDialog::ADDRESS_ROWS> TestDialog::DefaultAddresses() const
{
    using namespace TarnCtl::Network;
    std::array<std::string, ADDRESS_ROWS> rows;
    HostCall("Getting default gateway failed:", [&] {
        const auto gateway = RoutingInfoImpl().GetTarnDefaultGateway();
        if (gateway.GetBinaryAddress() != 0) rows[0] = gateway.GetStringAddress();
    });
    // Each next address takes the first free row from `from` on.
    auto offer = [&rows](const std::string& address, int from) {
        for (int row = from; row < ADDRESS_ROWS; ++row)
            if (rows[row].empty()) {
                rows[row] = address;
                return;
            }
    };
    HostCall("Getting DNS servers failed:", [&] {
        for (const auto& server : DnsConfigImpl().GetNameServers()) offer(server.GetStringAddress(), 1);
    });
    if (!HostValue("Getting IPv6 state failed:", [] { return NetworkInfoImpl().IsTarnIpv6Enabled(); }, false))
        return rows;
    HostCall("Getting IPv6 default gateway failed:", [&] {
        const auto gateway = RoutingInfoImpl().GetIpv6TarnDefaultGateway();
        if (!gateway.IsUnset()) offer(gateway.GetStringAddress(), 0);
    });
    HostCall("Getting IPv6 DNS servers failed:", [&] {
        for (const auto& server : DnsConfigImpl().GetIpv6NameServers()) offer(server.GetStringAddress(), 0);
    });
    return rows;
}

std::string TestDialog::DefaultHostname() const
{
    std::string name;
    HostCall("Getting hostname failed:", [&] {
        TarnCtl::Network::DnsConfigImpl dns;
        name = dns.GetHostname();
        const std::string domain = dns.GetDomain();
        if (!domain.empty()) name += "." + domain;
    });
    return name;
}

bool TestDialog::Validate()
{
    for (int row = 0; row < ADDRESS_ROWS; ++row) {
        const std::string& text = _addressRows[row]->Value();
        if (text.empty() || IsAddress(text)) continue;
        _form.Reject(row, TextId::InvalidIPAddress, TextId::InvalidIPIPv6Address);
        return false;
    }
    return true;
}

int TestDialog::Execute()
{
    SetTitle(Text(TextId::TestManagementNetworkTitle));
    SetText(Text(TextId::TestManagementNetworkText));
    SetFooter(FOOTER_SELECT_OK_CANCEL);
    Form::Handlers handlers;
    handlers.accept = [this] { return Validate(); };
    if (_form.Run(handlers) == 0) return 0;

    std::array<RunTestDialog::Address, RunTestDialog::ROWS> addresses;
    for (int row = 0; row < ADDRESS_ROWS; ++row)
        if (const std::string& text = _addressRows[row]->Value(); !text.empty())
            addresses[row] = HostCtl::Network::ParseIpAddress(text);
    RunTestDialog run(this, std::move(addresses), _hostnameRow->Value());
    Frame::Run(&run);
    return 1;
}

}  // namespace Tolm

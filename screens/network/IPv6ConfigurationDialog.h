#pragma once
// IPv6 of the management network: on or off (after a restart), dynamic
// (DHCPv6 or router advertisement) or static with up to three networks and
// a default gateway.
#include "host/HostCtlNetwork.h"
#include "screens/network/FieldRows.h"
#include "ui/Dialog.h"
#include "ui/Form.h"

namespace Tolm {

class CheckItem;
class RadioItem;

class IPv6ConfigurationDialog : public Dialog {
public:
    IPv6ConfigurationDialog(Frame* parent, bool ipv6Enabled, const HostCtl::Network::IpConfig& config);
    // 1 after OK, 0 on Esc.
    int Execute() override;
    bool Ipv6Enabled() const { return _enabled; }
    // DHCPv6, router advertised, networks (those not shown kept), gateway.
    const HostCtl::Network::IpConfig& Config() const { return _config; }

private:
    enum Row { DISABLE, DYNAMIC, DHCPV6, STATIC };
    enum Field { NETWORK_1, NETWORK_2, NETWORK_3, GATEWAY };
    static constexpr int NETWORK_ROWS = 3;

    void Toggled(int row);
    // Marks and enabled rows follow the enabled flag and the DHCPv6 and
    // router-advertisement settings.
    void Show();
    bool Accept();

    bool _enabled;
    // As handed in: what a switch to "off" leaves untouched.
    const HostCtl::Network::IpConfig _original;
    // Without the networks shown in the rows.
    HostCtl::Network::IpConfig _config;
    Form _form;
    FieldRows _fields;
    CheckItem* _disable = nullptr;
    RadioItem* _dynamic = nullptr;
    CheckItem* _dhcpv6 = nullptr;
    RadioItem* _static = nullptr;
};

}  // namespace Tolm

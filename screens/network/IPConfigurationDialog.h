#pragma once
// IPv4 of the management network: disabled, from DHCP, or static with
// address, subnet mask and default gateway.
#include "host/HostCtlNetwork.h"
#include "screens/network/FieldRows.h"
#include "ui/Dialog.h"
#include "ui/Form.h"

namespace Tolm {

class RadioItem;

class IPConfigurationDialog : public Dialog {
public:
    IPConfigurationDialog(Frame* parent, const HostCtl::Network::IpConfig& config);
    // 1 after OK, 0 on Esc.
    int Execute() override;
    // Use-DHCP, use-none, address, netmask, gateway.
    const HostCtl::Network::IpConfig& Config() const { return _config; }

private:
    enum Field { ADDRESS, NETMASK, GATEWAY };
    bool Accept();

    HostCtl::Network::IpConfig _config;
    Form _form;
    FieldRows _fields;
    RadioItem* _disable = nullptr;
    RadioItem* _dhcp = nullptr;
    RadioItem* _static = nullptr;
};

}  // namespace Tolm

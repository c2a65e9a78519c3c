#pragma once
// DNS of the management network: servers and hostname from DHCP, or two
// servers (either family) and a hostname typed in.
#include <memory>
#include <string>

#include "host/HostCtlNetwork.h"
#include "screens/network/FieldRows.h"
#include "ui/Dialog.h"
#include "ui/Form.h"

namespace Tolm {

class RadioItem;

class DNSConfigurationDialog : public Dialog {
public:
    DNSConfigurationDialog(Frame* parent, bool dhcpDns, const HostCtl::Network::IpAddress* primary,
                           const HostCtl::Network::IpAddress* alternate, std::string hostname);
    // 1 after OK, 0 on Esc.
    int Execute() override;

    bool DhcpDns() const { return _dhcpDns; }
    const HostCtl::Network::IpAddress* Primary() const { return _primary.get(); }      // null = none
    const HostCtl::Network::IpAddress* Alternate() const { return _alternate.get(); }  // null = none
    const std::string& Hostname() const { return _hostname; }

private:
    enum Field { PRIMARY, ALTERNATE, HOSTNAME };
    bool Accept();

    bool _dhcpDns;
    std::unique_ptr<HostCtl::Network::IpAddress> _primary;
    std::unique_ptr<HostCtl::Network::IpAddress> _alternate;
    std::string _hostname;
    Form _form;
    FieldRows _fields;
    RadioItem* _automatic = nullptr;
    RadioItem* _manual = nullptr;
};

}  // namespace Tolm

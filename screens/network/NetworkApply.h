#pragma once
// Writes a confirmed management network configuration to the host, group by
// group, logging each change before it is made.
#include <functional>
#include <string>

#include "host/TarnNic.h"
#include "screens/network/PendingNetwork.h"

namespace Tolm {

class Frame;

class NetworkApply {
public:
    // Shows one failure to the operator.
    using Report = std::function<void(const std::string& text)>;

    NetworkApply(const PendingNetwork& pending, const HostCtl::Network::TarnNic& nic, Report report);

    // Every group in order. A failed group is logged and reported, and the
    // groups after it still run: they are independent settings, and stopping
    // half-way would leave later ones unapplied without a word while the
    // operator has already seen the screen close.
    void WriteToHost();

private:
    void Adapters();
    void IpSettings();
    void Gateways();
    void Vlan();
    void RenewLease();
    void Hostname();
    void NameServers();
    void Suffixes();
    bool DnsFromDhcp() const;
    // Runs `body`; a host failure is logged and reported as prefix + detail.
    template <typename Body>
    bool Group(const char* prefix, Body body);
    void Failed(const std::string& text);

    const PendingNetwork& _pending;
    HostCtl::Network::TarnNic _nic;
    Report _report;
    bool _pathChanged = false;  // uplinks or VLAN changed under the interface
};

// The whole step as the screen runs it: the host changes with a message box
// for each failure, the restart when IPv6 was switched on or off, then the
// agent refresh.
void ApplyNetworkChanges(Frame* parent, const PendingNetwork& pending, const HostCtl::Network::TarnNic& nic);

}  // namespace Tolm

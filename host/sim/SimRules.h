#pragma once
#ifndef TOLM_HOST_BACKEND_SIM
#error "Only the program that chooses the host backend, tolm-hostsim and tests use the simulated host directly"
#endif
// The rules the simulated host applies on its own: DHCP leases, dynamic
// IPv6 addresses and what a restart does. Shared by the host library and the
// host tools; all work on the whole state object inside one update.
#include <nlohmann/json.hpp>

namespace Tolm::HostSim {

// Asks the DHCP server for `nic` (an element of /network/kernelNics) when
// its IPv4 mode is "dhcp"; records the lease or the failed lookup.
void AcquireDhcpLease(nlohmann::json& state, nlohmann::json& nic);

// Recomputes the DHCPv6 and router-advertised addresses of `nic` from its
// flags, keeping static and link-local ones; adds a link-local address when
// none is listed.
void RefreshIpv6Addresses(nlohmann::json& state, nlohmann::json& nic);

// What the host does when it comes back from a restart: the pending IPv6
// choice takes effect, interfaces come up and ask DHCP again, the power
// state is "running" and the boot count goes up.
void Restart(nlohmann::json& state);

}  // namespace Tolm::HostSim

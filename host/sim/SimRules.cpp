#include "host/sim/SimRules.h"

#include "host/HostCtlNetwork.h"
#include "host/sim/SimJson.h"

namespace Tolm::HostSim {
namespace {

using HostCtl::Network::Ipv6Address;
using HostCtl::Network::MacAddress;

// The interface identifier a host derives from its MAC (modified EUI-64).
Ipv6Address WithInterfaceId(Ipv6Address::Bytes prefix, const std::string& macText)
{
    const MacAddress mac(macText);
    const auto& m = mac.GetBytes();
    Ipv6Address::Bytes b = prefix;
    b[8] = m[0] ^ 0x02;
    b[9] = m[1];
    b[10] = m[2];
    b[11] = 0xff;
    b[12] = 0xfe;
    b[13] = m[3];
    b[14] = m[4];
    b[15] = m[5];
    return Ipv6Address(b);
}

json AddressEntry(const std::string& address, int prefix, const char* type, const char* scope)
{
    return {{"address", address}, {"prefixLength", prefix}, {"type", type}, {"scope", scope}};
}

}  // namespace

void AcquireDhcpLease(json& state, json& nic)
{
    json& ipv4 = nic["ipv4"];
    if (ipv4.value("mode", std::string()) != "dhcp")
        return;
    bool available = GetOr<bool>(state, "/network/dhcpServer/available", false);
    std::string address = GetOr<std::string>(state, "/network/dhcpServer/lease/address", "");
    if (!available || !HostCtl::Network::Ipv4Address::IsValidAddress(address)) {
        ipv4["address"] = "0.0.0.0";
        ipv4["netmask"] = "0.0.0.0";
        ipv4["dhcpFailed"] = true;
        return;
    }
    const json& lease = state["network"]["dhcpServer"]["lease"];
    ipv4["address"] = address;
    ipv4["netmask"] = lease.value("netmask", std::string("255.255.255.0"));
    ipv4["dhcpFailed"] = false;
    if (lease.contains("gateway"))
        state["network"]["routing"]["defaultTcpipStack"]["ipv4Gateway"] = lease["gateway"];
    if (nic.value("dhcpDns", false)) {
        json& dns = state["network"]["dns"];
        if (lease.contains("nameServers"))
            dns["nameServers"] = lease["nameServers"];
        if (lease.contains("domain"))
            dns["domain"] = lease["domain"];
        if (lease.contains("hostname") && !dns.value("hostnameUserSet", false))
            dns["hostname"] = lease["hostname"];
    }
}

void RefreshIpv6Addresses(json& state, json& nic)
{
    json& ipv6 = nic["ipv6"];
    json kept = json::array();
    bool haveLinkLocal = false;
    for (const auto& entry : Items(ipv6, "addresses")) {
        std::string type = entry.value("type", std::string("static"));
        std::string scope = entry.value("scope", std::string("global"));
        if (scope == "linkLocal")
            haveLinkLocal = true;
        if (type == "dhcp" || (type == "autoconf" && scope != "linkLocal"))
            continue;
        kept.push_back(entry);
    }
    std::string mac = nic.value("mac", std::string());
    if (!haveLinkLocal && MacAddress::IsValidAddress(mac)) {
        Ipv6Address::Bytes fe80{};
        fe80[0] = 0xfe;
        fe80[1] = 0x80;
        kept.insert(kept.begin(), AddressEntry(WithInterfaceId(fe80, mac).GetStringAddress(), 64, "autoconf", "linkLocal"));
    }
    if (ipv6.value("dhcp", false) && GetOr<bool>(state, "/network/dhcpServer/available", false)) {
        std::string lease = GetOr<std::string>(state, "/network/dhcpServer/ipv6Lease", "");
        if (Ipv6Address::IsValidAddress(lease))
            kept.push_back(AddressEntry(Ipv6Address(lease).GetStringAddress(), 128, "dhcp", "global"));
    }
    if (ipv6.value("routerAdvertised", false) && MacAddress::IsValidAddress(mac)) {
        HostCtl::Network::Ipv6Network prefix(GetOr<std::string>(state, "/network/dhcpServer/ipv6Prefix", ""));
        if (prefix.GetPrefixLength() > 0) {
            Ipv6Address addr = WithInterfaceId(prefix.GetAddress().GetBinaryAddress(), mac);
            kept.push_back(AddressEntry(addr.GetStringAddress(), prefix.GetPrefixLength(), "autoconf", "global"));
        }
    }
    ipv6["addresses"] = kept;
}

void Restart(json& state)
{
    json& ipv6 = state["network"]["ipv6"];
    ipv6["enabled"] = ipv6.value("pendingEnabled", ipv6.value("enabled", true));
    ipv6["pendingEnabled"] = ipv6["enabled"];
    for (auto& nic : ArrayAt(state, "/network/kernelNics")) {
        nic["up"] = true;
        AcquireDhcpLease(state, nic);
        RefreshIpv6Addresses(state, nic);
    }
    state["power"]["state"] = "running";
    state["power"]["bootCount"] = state["power"].value("bootCount", 0) + 1;
}

}  // namespace Tolm::HostSim

// Network side of the simulated host: adapters, switches, kernel
// interfaces, routing and DNS.
#include "host/sim/SimBackend.h"
#include "host/sim/SimRules.h"

#include <algorithm>
#include <ctime>

namespace Tolm::HostSim {

using HostCtl::Lib::HostCtlException;
using namespace HostCtl::Network;

json& KernelNicIn(json& state, const std::string& name)
{
    json* nic = FindNamed(ArrayAt(state, "/network/kernelNics"), name);
    if (!nic)
        throw HostCtlException("Kernel interface " + name + " not found");
    return *nic;
}

json& VirtualSwitchIn(json& state, const std::string& name)
{
    json* sw = FindNamed(ArrayAt(state, "/network/virtualSwitches"), name);
    if (!sw)
        throw HostCtlException("Virtual switch " + name + " not found");
    return *sw;
}

json& DlswitchIn(json& state, const std::string& name)
{
    json* sw = FindNamed(ArrayAt(state, "/network/dlswitches"), name);
    if (!sw)
        throw HostCtlException("Dlswitch " + name + " not found");
    return *sw;
}

json& PortGroupIn(json& sw, const std::string& name)
{
    json* pg = FindNamed(sw["portGroups"], name);
    if (!pg)
        throw HostCtlException("Port group " + name + " not found on " + sw.value("name", std::string()));
    return *pg;
}

void CheckStack(const std::string& stack)
{
    if (stack != "defaultTcpipStack")
        throw HostCtlException("Network stack " + stack + " not found");
}

namespace {

std::vector<std::string> Strings(const json& j)
{
    std::vector<std::string> out;
    if (j.is_array())
        for (const auto& s : j)
            if (s.is_string())
                out.push_back(s.get<std::string>());
    return out;
}

NicTeamingPolicy Teaming(const json& sw)
{
    NicTeamingPolicy policy;
    const json& t = Member(sw, "teaming");
    policy.uplinkOrder = Strings(Items(t, "uplinkOrder"));
    policy.maxActiveUplinks = t.value("maxActiveUplinks", 1);
    return policy;
}

std::vector<PortGroup> PortGroups(const json& sw)
{
    std::vector<PortGroup> out;
    for (const auto& pg : Items(sw, "portGroups"))
        out.push_back({pg.value("name", std::string()), pg.value("vlanId", 0), pg.value("key", std::string())});
    return out;
}

int ConnecteeType(const std::string& type)
{
    if (type == "portGroup")
        return CONNECTEE_PORTGROUP;
    if (type == "dvsPort")
        return CONNECTEE_DVSPORT;
    if (type == "opaque")
        return CONNECTEE_OPAQUE;
    return 0;
}

int Ipv6TypeNumber(const std::string& type)
{
    if (type == "static")
        return IPV6_TYPE_STATIC;
    if (type == "dhcp")
        return IPV6_TYPE_DHCP;
    if (type == "autoconf")
        return IPV6_TYPE_AUTOCONF;
    return IPV6_TYPE_OTHER;
}

int Ipv6ScopeNumber(const std::string& scope)
{
    if (scope == "linkLocal")
        return IPV6_SCOPE_LINK_LOCAL;
    if (scope == "siteLocal")
        return IPV6_SCOPE_SITE_LOCAL;
    if (scope == "global")
        return IPV6_SCOPE_GLOBAL;
    return IPV6_SCOPE_UNKNOWN;
}

const char* ScopeName(const Ipv6Address& a)
{
    if (a.IsLinkLocal())
        return "linkLocal";
    const auto& b = a.GetBinaryAddress();
    if (b[0] == 0xfe && (b[1] & 0xc0) == 0xc0)
        return "siteLocal";
    return "global";
}

// The switch carrying a kernel interface has an uplink adapter.
bool HasUplink(const json& state, const json& nic)
{
    const json& conn = Member(nic, "connection");
    std::string type = conn.value("type", std::string());
    std::string sw = conn.value("switch", std::string());
    if (type == "portGroup") {
        const json* list = Find(state, "/network/virtualSwitches");
        const json* s = list ? FindNamed(*list, sw) : nullptr;
        return s && !Items(*s, "uplinks").empty();
    }
    if (type == "dvsPort") {
        const json* list = Find(state, "/network/dlswitches");
        const json* s = list ? FindNamed(*list, sw) : nullptr;
        if (!s)
            return false;
        for (const auto& port : Items(*s, "uplinkPorts"))
            if (!port.value("pnic", std::string()).empty())
                return true;
        return false;
    }
    return type == "opaque";
}

}  // namespace

void SimBackend::UpdateManagementInterface()
try {
    Change([](json& state) {
        json& nics = ArrayAt(state, "/network/kernelNics");
        std::string current = GetOr<std::string>(state, "/network/managementInterface", "");
        if (!current.empty() && FindNamed(nics, current))
            return;
        json chosen = nullptr;
        for (const auto& nic : nics)
            if (nic.value("management", false)) {
                chosen = nic.value("name", std::string());
                break;
            }
        state["network"]["managementInterface"] = chosen;
    });
} catch (...) {
    RethrowAsHostFailure();
}

std::optional<std::string> SimBackend::GetManagementInterface()
try {
    json state = Load();
    std::string name = GetOr<std::string>(state, "/network/managementInterface", "");
    if (name.empty() || !FindNamed(ArrayAt(state, "/network/kernelNics"), name))
        return std::nullopt;
    return name;
} catch (...) {
    RethrowAsHostFailure();
}

std::vector<std::string> SimBackend::GetKernelNicNames()
try {
    json state = Load();
    std::vector<std::string> out;
    for (const auto& nic : ArrayAt(state, "/network/kernelNics"))
        out.push_back(nic.value("name", std::string()));
    return out;
} catch (...) {
    RethrowAsHostFailure();
}

std::vector<Pnic> SimBackend::GetPnics()
try {
    json state = Load();
    std::vector<Pnic> out;
    for (const auto& j : ArrayAt(state, "/network/pnics")) {
        Pnic p;
        p.name = j.value("name", std::string());
        p.mac = MacAddress(j.value("mac", std::string()));
        p.linkUp = j.value("linkUp", false);
        p.speedMbps = p.linkUp ? j.value("speedMbps", 0) : 0;
        p.fullDuplex = j.value("fullDuplex", false);
        p.driver = j.value("driver", std::string());
        if (j.contains("pci") && j["pci"].is_object()) {
            const json& pci = j["pci"];
            p.pci = PciDevice{pci.value("address", std::string()), pci.value("vendorName", std::string()),
                              pci.value("deviceName", std::string()), pci.value("hardwareLabel", std::string())};
        }
        out.push_back(std::move(p));
    }
    std::sort(out.begin(), out.end(), [](const Pnic& a, const Pnic& b) {
        return a.name.size() != b.name.size() ? a.name.size() < b.name.size() : a.name < b.name;
    });
    return out;
} catch (...) {
    RethrowAsHostFailure();
}

bool SimBackend::IsIpv6Enabled()
try {
    return GetOr<bool>(Load(), "/network/ipv6/enabled", true);
} catch (...) {
    RethrowAsHostFailure();
}

bool SimBackend::IsIpv6EnabledAfterRestart()
try {
    json state = Load();
    return GetOr<bool>(state, "/network/ipv6/pendingEnabled", GetOr<bool>(state, "/network/ipv6/enabled", true));
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetIpv6Enabled(bool enabled)
try {
    Change([&](json& state) { state["network"]["ipv6"]["pendingEnabled"] = enabled; });
} catch (...) {
    RethrowAsHostFailure();
}

std::vector<VirtualSwitch> SimBackend::GetVirtualSwitches()
try {
    json state = Load();
    std::vector<VirtualSwitch> out;
    for (const auto& j : ArrayAt(state, "/network/virtualSwitches"))
        out.push_back({j.value("name", std::string()), Strings(Items(j, "uplinks")), Teaming(j),
                       PortGroups(j), j.value("mtu", 1500)});
    return out;
} catch (...) {
    RethrowAsHostFailure();
}

std::vector<Dlswitch> SimBackend::GetDlswitches()
try {
    json state = Load();
    std::vector<Dlswitch> out;
    for (const auto& j : ArrayAt(state, "/network/dlswitches")) {
        Dlswitch d{j.value("name", std::string()), j.value("uuid", std::string()), {}, Teaming(j), PortGroups(j)};
        for (const auto& port : Items(j, "uplinkPorts"))
            d.uplinkPorts.push_back({port.value("key", std::string()), port.value("pnic", std::string())});
        out.push_back(std::move(d));
    }
    return out;
} catch (...) {
    RethrowAsHostFailure();
}

Host::KernelNicInfo SimBackend::GetKernelNic(const std::string& name)
try {
    json state = Load();
    json& nic = KernelNicIn(state, name);
    Host::KernelNicInfo info;
    info.name = name;
    info.mac = MacAddress(nic.value("mac", std::string()));
    const json& conn = Member(nic, "connection");
    info.connection.connecteeType = ConnecteeType(conn.value("type", std::string()));
    info.connection.switchName = conn.value("switch", std::string());
    info.connection.portGroup = conn.value("portGroup", std::string());
    info.connection.portKey = conn.value("portKey", std::string());
    info.connection.networkId = conn.value("networkId", std::string());
    info.up = nic.value("up", true);
    info.usable = info.up && HasUplink(state, nic);
    info.dhcpFailed = nic["ipv4"].value("mode", std::string()) == "dhcp" && nic["ipv4"].value("dhcpFailed", false);
    return info;
} catch (...) {
    RethrowAsHostFailure();
}

IpConfig SimBackend::GetIpConfig(const std::string& name)
try {
    json state = Load();
    json& nic = KernelNicIn(state, name);
    IpConfig config;
    const json& v4 = Member(nic, "ipv4");
    std::string mode = v4.value("mode", std::string("none"));
    config.SetUseDhcp(mode == "dhcp");
    config.SetIpv4UseNone(mode == "none");
    config.SetIpv4Address(Ipv4Address(v4.value("address", std::string("0.0.0.0"))));
    config.SetIpv4Netmask(Ipv4Address(v4.value("netmask", std::string("0.0.0.0"))));
    config.SetIpv4Gateway(Ipv4Address(GetOr<std::string>(state, "/network/routing/defaultTcpipStack/ipv4Gateway", "")));
    config.SetDhcpDns(nic.value("dhcpDns", false));
    const json& v6 = Member(nic, "ipv6");
    config.SetUseIpv6Dhcp(v6.value("dhcp", false));
    config.SetUseIpv6RouterAdvertised(v6.value("routerAdvertised", false));
    if (GetOr<bool>(state, "/network/ipv6/enabled", true)) {
        for (const auto& a : Items(v6, "addresses"))
            config.AddIpv6Network(Ipv6Network(Ipv6Address(a.value("address", std::string())), a.value("prefixLength", 64),
                                              Ipv6TypeNumber(a.value("type", std::string("static"))),
                                              Ipv6ScopeNumber(a.value("scope", std::string("global")))));
    }
    config.SetIpv6Gateway(Ipv6Address(GetOr<std::string>(state, "/network/routing/defaultTcpipStack/ipv6Gateway", "")));
    return config;
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetIpConfig(const std::string& name, const IpConfig& config, Host::IpFamilies families)
try {
    if (families & Host::IPV4_FAMILY) {
        if (!config.GetUseDhcp() && !config.GetIpv4UseNone()) {
            if (config.GetIpv4Address().GetBinaryAddress() == 0)
                throw HostCtlException("Invalid IPv4 address 0.0.0.0 for " + name);
            if (!config.GetIpv4Netmask().IsValidNetmask())
                throw HostCtlException("Invalid netmask " + config.GetIpv4Netmask().GetStringAddress());
        }
    }
    if (families & Host::IPV6_FAMILY) {
        for (const auto& n : config.GetIpv6Network())
            if (n.GetIpv6AddressType() == IPV6_TYPE_STATIC && n.GetAddress().IsLinkLocal())
                throw HostCtlException("Cannot add link-local address " + n.GetStringAddress() + " as static address");
    }
    Change([&](json& state) {
        json& nic = KernelNicIn(state, name);
        if (families & Host::IPV4_FAMILY) {
            json& v4 = nic["ipv4"];
            if (config.GetUseDhcp()) {
                v4["mode"] = "dhcp";
            } else if (config.GetIpv4UseNone()) {
                v4 = {{"mode", "none"}, {"address", "0.0.0.0"}, {"netmask", "0.0.0.0"}, {"dhcpFailed", false}};
            } else {
                v4 = {{"mode", "static"},
                      {"address", config.GetIpv4Address().GetStringAddress()},
                      {"netmask", config.GetIpv4Netmask().GetStringAddress()},
                      {"dhcpFailed", false}};
            }
            nic["dhcpDns"] = config.GetDhcpDns() && config.GetUseDhcp();
            AcquireDhcpLease(state, nic);
        }
        if (families & Host::IPV6_FAMILY) {
            json& v6 = nic["ipv6"];
            v6["dhcp"] = config.GetUseIpv6Dhcp();
            v6["routerAdvertised"] = config.GetUseIpv6RouterAdvertised();
            json addresses = json::array();
            for (const auto& a : Items(v6, "addresses"))
                if (a.value("type", std::string("static")) != "static")
                    addresses.push_back(a);
            for (const auto& n : config.GetIpv6Network())
                if (n.GetIpv6AddressType() == IPV6_TYPE_STATIC)
                    addresses.push_back({{"address", n.GetAddress().GetStringAddress()},
                                         {"prefixLength", n.GetPrefixLength()},
                                         {"type", "static"},
                                         {"scope", ScopeName(n.GetAddress())}});
            v6["addresses"] = addresses;
            RefreshIpv6Addresses(state, nic);
        }
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetKernelNicMac(const std::string& name, const MacAddress& mac)
try {
    Change([&](json& state) {
        json& nic = KernelNicIn(state, name);
        bool known = false;
        for (const auto& p : ArrayAt(state, "/network/pnics"))
            known = known || MacAddress(p.value("mac", std::string())) == mac;
        if (!known)
            throw HostCtlException("MAC address " + mac.GetStringAddress() + " belongs to no physical adapter");
        nic["mac"] = mac.GetStringAddress();
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::StopKernelNic(const std::string& name)
try {
    Change([&](json& state) { KernelNicIn(state, name)["up"] = false; });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::StartKernelNic(const std::string& name)
try {
    Change([&](json& state) {
        json& nic = KernelNicIn(state, name);
        nic["up"] = true;
        AcquireDhcpLease(state, nic);
        RefreshIpv6Addresses(state, nic);
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::RenewDhcpLease(const std::string& name)
try {
    Change([&](json& state) {
        json& nic = KernelNicIn(state, name);
        if (nic["ipv4"].value("mode", std::string()) != "dhcp")
            throw HostCtlException("Interface " + name + " does not use DHCP");
        if (!nic.value("up", true))
            throw HostCtlException("Interface " + name + " is down");
        AcquireDhcpLease(state, nic);
        RefreshIpv6Addresses(state, nic);
    });
} catch (...) {
    RethrowAsHostFailure();
}

Ipv4Address SimBackend::GetDefaultGateway(const std::string& stack)
try {
    CheckStack(stack);
    return Ipv4Address(GetOr<std::string>(Load(), "/network/routing/" + stack + "/ipv4Gateway", ""));
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetDefaultGateway(const std::string& stack, const Ipv4Address& gw)
try {
    CheckStack(stack);
    Change([&](json& state) { state["network"]["routing"][stack]["ipv4Gateway"] = gw.GetStringAddress(); });
} catch (...) {
    RethrowAsHostFailure();
}

Ipv6Address SimBackend::GetIpv6DefaultGateway(const std::string& stack)
try {
    CheckStack(stack);
    return Ipv6Address(GetOr<std::string>(Load(), "/network/routing/" + stack + "/ipv6Gateway", ""));
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetIpv6DefaultGateway(const std::string& stack, const Ipv6Address& gw)
try {
    CheckStack(stack);
    Change([&](json& state) { state["network"]["routing"][stack]["ipv6Gateway"] = gw.GetStringAddress(); });
} catch (...) {
    RethrowAsHostFailure();
}

Host::DnsRecord SimBackend::GetDns(const std::string& stack)
try {
    CheckStack(stack);
    json state = Load();
    Host::DnsRecord dns;
    dns.hostname = GetOr<std::string>(state, "/network/dns/hostname", "localhost");
    dns.domain = GetOr<std::string>(state, "/network/dns/domain", "");
    for (const auto& s : Strings(ListAt(state, "/network/dns/nameServers")))
        if (Ipv4Address::IsValidAddress(s))
            dns.nameServers.emplace_back(s);
    for (const auto& s : Strings(ListAt(state, "/network/dns/ipv6NameServers")))
        if (Ipv6Address::IsValidAddress(s))
            dns.ipv6NameServers.emplace_back(s);
    dns.searchDomains = Strings(ListAt(state, "/network/dns/searchDomains"));
    return dns;
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetHostname(const std::string& stack, const std::string& host, bool userSet,
                             const std::optional<std::string>& domain)
try {
    CheckStack(stack);
    if (host.empty())
        throw HostCtlException("Hostname cannot be empty");
    Change([&](json& state) {
        json& dns = state["network"]["dns"];
        dns["hostname"] = host;
        dns["hostnameUserSet"] = userSet;
        if (domain)
            dns["domain"] = *domain;
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetDomain(const std::string& stack, const std::string& domain)
try {
    CheckStack(stack);
    Change([&](json& state) { state["network"]["dns"]["domain"] = domain; });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::RemoveNameServers(const std::string& stack)
try {
    CheckStack(stack);
    Change([&](json& state) {
        state["network"]["dns"]["nameServers"] = json::array();
        state["network"]["dns"]["ipv6NameServers"] = json::array();
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::AddNameServer(const std::string& stack, const IpAddress& server)
try {
    CheckStack(stack);
    std::string text = server.GetStringAddress();
    if (!server.IsIpv6() && static_cast<const Ipv4Address&>(server).GetBinaryAddress() == 0)
        throw HostCtlException("Invalid name server 0.0.0.0");
    Change([&](json& state) {
        json& list = ArrayAt(state, server.IsIpv6() ? "/network/dns/ipv6NameServers" : "/network/dns/nameServers");
        if (std::find(list.begin(), list.end(), json(text)) == list.end())
            list.push_back(text);
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetSearchDomains(const std::string& stack, const std::vector<std::string>& domains)
try {
    CheckStack(stack);
    Change([&](json& state) { state["network"]["dns"]["searchDomains"] = domains; });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::AddSearchDomain(const std::string& stack, const std::string& domain)
try {
    CheckStack(stack);
    if (domain.empty())
        return;
    Change([&](json& state) {
        json& list = ArrayAt(state, "/network/dns/searchDomains");
        if (std::find(list.begin(), list.end(), json(domain)) == list.end())
            list.push_back(domain);
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SaveDnsConfig(const std::string& stack)
try {
    CheckStack(stack);
    Change([](json& state) {
        if (GetOr<std::string>(state, "/network/dns/hostname", "").empty())
            throw HostCtlException("DNS configuration has no hostname");
        state["network"]["dns"]["savedAt"] = static_cast<int64_t>(std::time(nullptr));
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::AddUplink(const std::string& switchName, const std::string& pnic)
try {
    Change([&](json& state) {
        if (!FindNamed(ArrayAt(state, "/network/pnics"), pnic))
            throw HostCtlException("Physical nic " + pnic + " not found");
        json& sw = VirtualSwitchIn(state, switchName);
        for (const auto& other : ArrayAt(state, "/network/virtualSwitches")) {
            const json& uplinks = Items(other, "uplinks");
            if (std::find(uplinks.begin(), uplinks.end(), json(pnic)) != uplinks.end()) {
                if (other.value("name", std::string()) == switchName)
                    return;
                throw HostCtlException("Physical nic " + pnic + " is already used by " + other.value("name", std::string()));
            }
        }
        for (const auto& d : ArrayAt(state, "/network/dlswitches"))
            for (const auto& port : Items(d, "uplinkPorts"))
                if (port.value("pnic", std::string()) == pnic)
                    throw HostCtlException("Physical nic " + pnic + " is already used by " + d.value("name", std::string()));
        ArrayAt(sw, "/uplinks").push_back(pnic);
        ArrayAt(sw, "/teaming/uplinkOrder").push_back(pnic);
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::RemoveUplink(const std::string& switchName, const std::string& pnic)
try {
    Change([&](json& state) {
        json& sw = VirtualSwitchIn(state, switchName);
        json& uplinks = ArrayAt(sw, "/uplinks");
        auto it = std::find(uplinks.begin(), uplinks.end(), json(pnic));
        if (it == uplinks.end())
            throw HostCtlException("Physical nic " + pnic + " is not an uplink of " + switchName);
        uplinks.erase(it);
        json& order = ArrayAt(sw, "/teaming/uplinkOrder");
        order.erase(std::remove(order.begin(), order.end(), json(pnic)), order.end());
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetMaxActiveUplinks(const std::string& switchName, int count)
try {
    if (count < 1)
        throw HostCtlException("Maximum number of active uplinks must be at least 1");
    Change([&](json& state) { VirtualSwitchIn(state, switchName)["teaming"]["maxActiveUplinks"] = count; });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetVlanId(const std::string& sw, bool distributed, const std::string& portGroup, int vlanId)
try {
    if (vlanId < 0 || vlanId > 4095)
        throw HostCtlException("Invalid VLAN ID " + std::to_string(vlanId));
    Change([&](json& state) {
        json& s = distributed ? DlswitchIn(state, sw) : VirtualSwitchIn(state, sw);
        PortGroupIn(s, portGroup)["vlanId"] = vlanId;
    });
} catch (...) {
    RethrowAsHostFailure();
}

}  // namespace Tolm::HostSim

// Name resolution on the simulated host: the root's hosts file first, then
// the host's DNS servers as the state models them (whether the management
// interface is up, which servers answer, which names they know). The
// machine's own resolver is never asked, so a test sees the host's network.
#include "host/HostPaths.h"
#include "host/sim/SimBackend.h"

#include <netdb.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace Tolm::HostSim {
namespace {

using HostCtl::Network::Ipv4Address;
using HostCtl::Network::Ipv6Address;

std::string Canonical(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    if (!name.empty() && name.back() == '.')
        name.pop_back();
    return name;
}

// The host root the state file lives in.
std::string RootOf(const std::string& statePath)
{
    const std::string tail = "/var/lib/hostsim/host.json";
    if (statePath.size() > tail.size() && statePath.compare(statePath.size() - tail.size(), tail.size(), tail) == 0)
        return statePath.substr(0, statePath.size() - tail.size());
    return HostPath::Root() == "/" ? "" : HostPath::Root();
}

bool InHostsFile(const std::string& root, const std::string& name)
{
    std::ifstream in(root + "/etc/hosts");
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream fields(line.substr(0, line.find('#')));
        std::string field;
        fields >> field;  // the address
        while (fields >> field)
            if (Canonical(field) == name)
                return true;
    }
    return false;
}

bool Listed(const json& list, const std::string& address)
{
    for (const auto& a : list)
        if (a.is_string() && a.get<std::string>() == address)
            return true;
    return false;
}

// Some DNS server of the host answers: the management interface is up and
// a configured server is among the reachable addresses.
bool DnsAnswers(const json& state)
{
    std::string mgmt = GetOr<std::string>(state, "/network/managementInterface", "");
    const json* nics = Find(state, "/network/kernelNics");
    const json* nic = nics && !mgmt.empty() ? FindNamed(*nics, mgmt) : nullptr;
    if (!nic || !nic->value("up", true))
        return false;
    const json reachable = GetOr<json>(state, "/network/reachableAddresses", json::array());
    std::vector<std::string> servers;
    for (const auto& s : GetOr<json>(state, "/network/dns/nameServers", json::array()))
        if (s.is_string() && Ipv4Address::IsValidAddress(s.get<std::string>()))
            servers.push_back(s.get<std::string>());
    if (GetOr<bool>(state, "/network/ipv6/enabled", true))
        for (const auto& s : GetOr<json>(state, "/network/dns/ipv6NameServers", json::array()))
            if (s.is_string() && Ipv6Address::IsValidAddress(s.get<std::string>()))
                servers.push_back(s.get<std::string>());
    return std::any_of(servers.begin(), servers.end(), [&](const std::string& s) { return Listed(reachable, s); });
}

bool DnsKnows(const json& state, const std::string& name)
{
    const json names = GetOr<json>(state, "/network/resolver/names", json::object());
    if (!names.is_object())
        return false;
    for (const auto& [known, addresses] : names.items())
        if (Canonical(known) == name && addresses.is_array() && !addresses.empty())
            return true;
    return false;
}

}  // namespace

int SimBackend::ResolveHostname(const std::string& name)
try {
    json state = Load();
    if (GetOr<bool>(state, "/network/resolver/hang", false))
        for (;;)
            ::pause();  // a lookup that never comes back: only a signal ends it
    const long delayMs = GetOr<long>(state, "/network/resolver/delayMs", 0);
    if (delayMs > 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
        state = Load();
    }

    const std::string wanted = Canonical(name);
    if (wanted.empty())
        return EAI_NONAME;
    // A name without a dot is tried as it is and with each search domain.
    std::vector<std::string> candidates{wanted};
    if (wanted.find('.') == std::string::npos)
        for (const auto& d : GetOr<json>(state, "/network/dns/searchDomains", json::array()))
            if (d.is_string() && !d.get<std::string>().empty())
                candidates.push_back(wanted + "." + Canonical(d.get<std::string>()));

    const std::string root = RootOf(_file.Path());
    for (const auto& c : candidates)
        if (InHostsFile(root, c))
            return 0;
    if (!DnsAnswers(state))
        return EAI_AGAIN;
    for (const auto& c : candidates)
        if (DnsKnows(state, c))
            return 0;
    return EAI_NONAME;
} catch (...) {
    RethrowAsHostFailure();
}

}  // namespace Tolm::HostSim

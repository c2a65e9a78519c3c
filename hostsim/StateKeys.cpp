// Every place in the host state that the tools read or change.
#include "hostsim/StateKeys.h"

#include "hostsim/HostSim.h"

#include <arpa/inet.h>

namespace Tolm::HostSim {
namespace {

Json::json_pointer P(const std::string& text)
{
    return Json::json_pointer(text);
}

template <typename T>
T ValueAt(const Json& state, const std::string& pointer, T fallback)
{
    auto ptr = P(pointer);
    if (!state.contains(ptr))
        return fallback;
    try {
        return state.at(ptr).get<T>();
    } catch (const Json::exception&) {
        return fallback;
    }
}

const Json* KernelNic(const Json& state, const std::string& name)
{
    auto ptr = P("/network/kernelNics");
    if (!state.contains(ptr) || !state.at(ptr).is_array())
        return nullptr;
    for (const Json& nic : state.at(ptr))
        if (nic.is_object() && nic.value("name", "") == name)
            return &nic;
    return nullptr;
}

Json& Slots(Json& state)
{
    Json& slots = state[P("/smartCards/slots")];
    if (!slots.is_array())
        slots = Json::array();
    return slots;
}

bool TokenCarries(const Json& token, const std::string& userId)
{
    if (!token.is_object() || !token.contains("userIds") || !token["userIds"].is_array())
        return false;
    for (const Json& id : token["userIds"])
        if (id.is_string() && id.get<std::string>() == userId)
            return true;
    return false;
}

}  // namespace

bool LoginEnabled(const Json& state)
{
    return ValueAt(state, "/system/loginEnabled", true);
}

std::string HostName(const Json& state)
{
    return ValueAt<std::string>(state, "/network/dns/hostname", "");
}

std::string DomainName(const Json& state)
{
    return ValueAt<std::string>(state, "/network/dns/domain", "");
}

std::string ManagementAddress(const Json& state)
{
    std::string name = ValueAt<std::string>(state, "/network/managementInterface", "");
    const Json* nic = KernelNic(state, name);
    if (nic == nullptr)
        return "";
    std::string address = ValueAt<std::string>(*nic, "/ipv4/address", "");
    return address == "0.0.0.0" ? "" : address;
}

bool IsKnownUser(const Json& state, const std::string& user)
{
    if (user == "tolm" || user == "root")
        return true;
    auto ptr = P("/users");
    return state.contains(ptr) && state.at(ptr).is_object() && state.at(ptr).contains(user);
}

bool ToolHangs(const Json& state, const std::string& tool)
{
    auto ptr = P("/tools/hang");
    return state.contains(ptr) && state.at(ptr).is_object() && state.at(ptr).value(tool, false);
}

std::optional<std::string> FaultFor(const Json& state, const std::string& operation)
{
    auto ptr = P("/faults");
    if (!state.contains(ptr) || !state.at(ptr).is_object() || !state.at(ptr).contains(operation))
        return std::nullopt;
    const Json& message = state.at(ptr).at(operation);
    return message.is_string() ? message.get<std::string>() : message.dump();
}

bool LockdownEnabled(const Json& state)
{
    return ValueAt(state, "/system/lockdown/enabled", false);
}

bool LockdownPossible(const Json& state)
{
    return ValueAt(state, "/system/lockdown/possible", false);
}

void SetLockdownEnabled(Json& state, bool enabled)
{
    state[P("/system/lockdown/enabled")] = enabled;
}

Json& Service(Json& state, const std::string& name)
{
    Json& service = state[P("/services/" + name)];
    if (!service.is_object())
        service = Json{{"enabled", false}, {"running", false}};
    return service;
}

bool ServiceEnabled(const Json& state, const std::string& name)
{
    return ValueAt(state, "/services/" + name + "/enabled", false);
}

bool ServiceRunning(const Json& state, const std::string& name)
{
    return ValueAt(state, "/services/" + name + "/running", false);
}

int PowerOffVms(Json& state, bool terminate, bool autostartOnly)
{
    auto ptr = P("/vms");
    if (!state.contains(ptr) || !state[ptr].is_array())
        return 0;
    int stopped = 0;
    for (Json& vm : state[ptr]) {
        if (!vm.is_object() || vm.value("powerState", "") != "poweredOn")
            continue;
        if (autostartOnly && !vm.value("autoStart", false))
            continue;
        // Without --terminate each machine follows its shutdown policy.
        bool suspend = !terminate && vm.value("shutdownPolicy", "powerOff") == "suspend";
        vm["powerState"] = suspend ? "suspended" : "poweredOff";
        ++stopped;
    }
    return stopped;
}

Json* AdvancedOption(Json& state, const std::string& path)
{
    if (path.empty() || path[0] != '/' || path.find("//") != std::string::npos)
        return nullptr;
    Json::json_pointer ptr;
    try {
        ptr = P("/advancedOptions" + path);
    } catch (const Json::exception&) {
        return nullptr;
    }
    if (!state.contains(ptr))
        return nullptr;
    Json& option = state[ptr];
    // An option is a leaf carrying its type; a group of options is not one.
    if (!option.is_object() || !option.contains("type"))
        return nullptr;
    return &option;
}

namespace {

// The address in one spelling ("FE80::0001" and "fe80::1" are one address).
std::string AddressKey(const std::string& text)
{
    unsigned char bytes[16];
    char out[INET6_ADDRSTRLEN];
    for (int family : {AF_INET, AF_INET6})
        if (::inet_pton(family, text.c_str(), bytes) == 1 && ::inet_ntop(family, bytes, out, sizeof out) != nullptr)
            return out;
    return text;
}

}  // namespace

bool IsReachable(const Json& state, const std::string& address, const std::string& interface)
{
    // Packets leave through the named interface, else the management one;
    // a stopped interface, or IPv4 without an address, gets no answer.
    std::string via = interface.empty() ? ValueAt<std::string>(state, "/network/managementInterface", "") : interface;
    if (const Json* nic = KernelNic(state, via)) {
        if (!nic->value("up", true))
            return false;
        if (address.find(':') == std::string::npos &&
            ValueAt<std::string>(*nic, "/ipv4/address", "0.0.0.0") == "0.0.0.0")
            return false;
    }
    auto ptr = P("/network/reachableAddresses");
    if (!state.contains(ptr) || !state.at(ptr).is_array())
        return false;
    const std::string wanted = AddressKey(address);
    for (const Json& a : state.at(ptr))
        if (a.is_string() && AddressKey(a.get<std::string>()) == wanted)
            return true;
    return false;
}

bool InterfaceExists(const Json& state, const std::string& name)
{
    return KernelNic(state, name) != nullptr;
}

std::vector<std::string> CimLines(const Json& state)
{
    std::vector<std::string> lines;
    auto tag = [&](const char* name, const std::string& pointer) {
        std::string value = ValueAt<std::string>(state, pointer, "");
        if (!value.empty())
            lines.push_back(std::string("CIM_Chassis OtherIdentifyingInfo ") + name + "=" + value);
    };
    tag("ServiceTag", "/hardware/serialNumber");
    tag("AssetTag", "/hardware/assetTag");
    struct Firmware {
        const char* cls;
        const char* name;
    };
    static const Firmware firmware[] = {
        {"OMC_SMASHFirmwareIdentity", "BIOS"},
        {"OMC_MCFirmwareIdentity", "BMC"},
        {"Pellor_HHRCWrapperSoftwareIdentity", "CPLD"},
        {"Pellor_HHRCWrapperSoftwareIdentity", "PLSA"},
    };
    for (const Firmware& f : firmware) {
        std::string value = ValueAt<std::string>(state, std::string("/hardware/firmware/") + f.name, "");
        if (!value.empty())
            lines.push_back(std::string(f.cls) + " VersionString " + f.name + "=" + value);
    }
    return lines;
}

bool AgentsRunning(const Json& state)
{
    return ValueAt(state, "/services/agents/running", true);
}

void SetAgentsRunning(Json& state, bool running)
{
    Json& agents = state[P("/services/agents")];
    if (!agents.is_object())
        agents = Json{{"running", true}, {"restarts", 0}};
    if (running && !agents.value("running", true))
        agents["restarts"] = agents.value("restarts", 0) + 1;
    agents["running"] = running;
}

std::vector<std::string> CardUserIds(const Json& state)
{
    std::vector<std::string> ids;
    auto ptr = P("/smartCards/slots");
    if (!state.contains(ptr) || !state.at(ptr).is_array())
        return ids;
    for (const Json& slot : state.at(ptr)) {
        if (!slot.is_object() || !slot.contains("token") || !slot["token"].is_object())
            continue;
        const Json& token = slot["token"];
        if (token.contains("userIds") && token["userIds"].is_array())
            for (const Json& id : token["userIds"])
                if (id.is_string() && !id.get<std::string>().empty())
                    ids.push_back(id.get<std::string>());
    }
    return ids;
}

void InsertCard(Json& state, const std::string& userId)
{
    Json& slots = Slots(state);
    for (Json& slot : slots)
        if (slot.is_object() && TokenCarries(slot.value("token", Json()), userId))
            throw Refusal("a smart card with user id " + userId + " is already inserted");
    Json token{{"label", userId + "'s card"}, {"userIds", Json::array({userId})}};
    for (Json& slot : slots) {
        if (slot.is_object() && (!slot.contains("token") || slot["token"].is_null())) {
            slot["token"] = token;
            return;
        }
    }
    // Every reader is busy: plug in one more.
    slots.push_back(Json{{"name", "slot" + std::to_string(slots.size())}, {"token", token}});
}

bool RemoveCard(Json& state, const std::string& userId)
{
    for (Json& slot : Slots(state)) {
        if (slot.is_object() && TokenCarries(slot.value("token", Json()), userId)) {
            slot["token"] = nullptr;
            return true;
        }
    }
    return false;
}

void CountTool(Json& state, const std::string& counter)
{
    Json& counts = state[P("/tools/counts")];
    if (!counts.is_object())
        counts = Json::object();
    counts[counter] = counts.value(counter, 0) + 1;
}

void SetPowerState(Json& state, const std::string& powerState)
{
    state[P("/power/state")] = powerState;
}

void ResetToFactory(Json& state, const Json& factory)
{
    Json keep = Json::object();
    for (const char* key : {"power", "faults", "eventFacility", "tools"})
        if (state.contains(key))
            keep[key] = state[key];
    state = factory;
    for (auto& [key, value] : keep.items())
        state[key] = value;
}

}  // namespace Tolm::HostSim

// System side of the simulated host: faults, options, hardware, smart
// cards, keyboard, alerts, firewall, virtual machines, sysinfo, events and
// command execution.
#include "host/sim/SimBackend.h"

#include "host/HostPaths.h"
#include "host/ShellQuote.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolm::HostSim {

using HostCtl::Lib::HostCtlException;

namespace {

// "/UserVars/TolmTimeOut" → the JSON pointer of its object.
std::string OptionPointer(const std::string& path)
{
    if (path.empty() || path[0] != '/' || path.find("//") != std::string::npos || path.back() == '/')
        throw HostCtlException("Invalid option path '" + path + "'");
    // Options are nested objects, so "~" would be the only character that
    // needs escaping in a pointer; option names never carry it.
    if (path.find('~') != std::string::npos)
        throw HostCtlException("Invalid option path '" + path + "'");
    return "/advancedOptions" + path;
}

std::string UserOptionPointer(const std::string& name)
{
    if (name.empty() || name.find_first_of("/~") != std::string::npos)
        throw HostCtlException("Invalid user option name '" + name + "'");
    return "/userOptions/" + name;
}

// The event log sits in the root that holds the state file.
std::string EventLogPath(const std::string& statePath)
{
    static const std::string suffix = "/var/lib/hostsim/host.json";
    if (statePath.size() >= suffix.size() && statePath.compare(statePath.size() - suffix.size(), suffix.size(), suffix) == 0)
        return statePath.substr(0, statePath.size() - suffix.size()) + "/var/log/evtd.log";
    return std::filesystem::path(statePath).parent_path().string() + "/evtd.log";
}

// Absolute paths in a command line move into the host root; a word is
// taken as a path when it starts with "/" (after an optional redirection).
std::string ResolveCommandLine(const std::string& line)
{
    if (!HostPath::IsSimulated())
        return line;
    std::string out;
    size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ' || line[i] == '\t') {
            out += line[i++];
            continue;
        }
        size_t end = line.find_first_of(" \t", i);
        if (end == std::string::npos)
            end = line.size();
        std::string word = line.substr(i, end - i);
        size_t lead = word.find_first_not_of("<>&0123456789");
        if (lead != std::string::npos && word[lead] == '/' && word.compare(lead, std::string::npos, "/dev/null") != 0 && (lead == 0 || word[lead - 1] == '>' || word[lead - 1] == '<'))
            word = word.substr(0, lead) + ShellQuote(HostPath::Resolve(word.substr(lead)));
        out += word;
        i = end;
    }
    return out;
}

}  // namespace

void SimBackend::CheckFault(const std::string& op)
{
    json state = Load();
    const json* faults = Find(state, "/faults");
    if (!faults || !faults->is_object() || !faults->contains(op))
        return;
    const json& message = (*faults)[op];
    throw HostCtlException(message.is_string() ? message.get<std::string>() : message.dump());
}

std::optional<Host::AdvancedOptionRecord> SimBackend::FindOption(const std::string& path)
{
    json state = Load();
    const json* option = Find(state, OptionPointer(path));
    if (!option || !option->is_object() || !option->contains("type"))
        return std::nullopt;
    Host::AdvancedOptionRecord r;
    r.path = path;
    r.type = option->value("type", std::string());
    r.description = option->value("description", std::string());
    try {
        if (r.type == "integer") {
            r.intValue = option->value("value", int64_t{0});
            r.intDefault = option->value("default", r.intValue);
            r.intMin = option->value("min", int64_t{INT64_MIN});
            r.intMax = option->value("max", int64_t{INT64_MAX});
        } else {
            r.stringValue = option->value("value", std::string());
            r.stringDefault = option->value("default", std::string());
        }
    } catch (const json::exception&) {
        throw HostCtlException("Option " + path + " is malformed");
    }
    return r;
}

void SimBackend::SetIntegerOption(const std::string& path, int64_t value)
{
    std::string pointer = OptionPointer(path);
    Change([&](json& state) {
        const json* option = Find(state, pointer);
        if (!option || option->value("type", std::string()) != "integer")
            throw HostCtlException("Integer option " + path + " not found");
        json& o = state[json::json_pointer(pointer)];
        if (value < o.value("min", int64_t{INT64_MIN}) || value > o.value("max", int64_t{INT64_MAX}))
            throw HostCtlException("Value " + std::to_string(value) + " out of range for option " + path);
        o["value"] = value;
    });
}

void SimBackend::SetStringOption(const std::string& path, const std::string& value)
{
    std::string pointer = OptionPointer(path);
    Change([&](json& state) {
        const json* option = Find(state, pointer);
        if (!option || option->value("type", std::string()) != "string")
            throw HostCtlException("String option " + path + " not found");
        state[json::json_pointer(pointer)]["value"] = value;
    });
}

std::optional<std::string> SimBackend::GetUserOption(const std::string& name)
{
    json state = Load();
    const json* value = Find(state, UserOptionPointer(name));
    if (!value)
        return std::nullopt;
    return value->is_string() ? value->get<std::string>() : value->dump();
}

void SimBackend::SetUserOption(const std::string& name, const std::string& value)
{
    std::string pointer = UserOptionPointer(name);
    Change([&](json& state) { state[json::json_pointer(pointer)] = value; });
}

void SimBackend::RemoveUserOption(const std::string& name)
{
    UserOptionPointer(name);
    Change([&](json& state) {
        if (state.contains("userOptions") && state["userOptions"].is_object())
            state["userOptions"].erase(name);
    });
}

Host::HardwareRecord SimBackend::GetHardware()
{
    json state = Load();
    Host::HardwareRecord r;
    r.vendor = Get<std::string>(state, "/hardware/vendor");
    r.product = Get<std::string>(state, "/hardware/product");
    r.serialNumber = GetOr<std::string>(state, "/hardware/serialNumber", "");
    r.cpuPackages = Get<int>(state, "/hardware/cpu/packages");
    r.cpuCores = GetOr<int>(state, "/hardware/cpu/cores", r.cpuPackages);
    r.cpuThreads = GetOr<int>(state, "/hardware/cpu/threads", r.cpuCores);
    r.cpuModel = Get<std::string>(state, "/hardware/cpu/model");
    r.totalPages = Get<uint64_t>(state, "/hardware/memory/totalPages");
    r.pageSize = Get<uint64_t>(state, "/hardware/memory/pageSize");
    return r;
}

std::vector<HostCtl::Hardware::SmartCardSlot> SimBackend::GetSmartCardSlots()
{
    json state = Load();
    std::vector<HostCtl::Hardware::SmartCardSlot> out;
    for (const auto& s : GetOr<json>(state, "/smartCards/slots", json::array())) {
        HostCtl::Hardware::SmartCardSlot slot;
        slot.name = s.value("name", std::string());
        if (s.contains("token") && s["token"].is_object()) {
            HostCtl::Hardware::SmartCardToken token;
            token.label = s["token"].value("label", std::string());
            for (const auto& id : s["token"].value("userIds", json::array()))
                token.userIds.push_back(id.is_string() ? id.get<std::string>() : std::string());
            slot.token = std::move(token);
        }
        out.push_back(std::move(slot));
    }
    return out;
}

std::string SimBackend::GetPowerState()
{
    // The simulated power tools only record the new state: this is how the
    // console learns that its host went down.
    const json state = Load();
    const json* power = state.contains("power") ? &state["power"] : nullptr;
    if (power != nullptr && power->is_object() && power->contains("state") && (*power)["state"].is_string())
        return (*power)["state"].get<std::string>();
    return "running";
}

std::string SimBackend::GetKeyboardLayout()
{
    return Get<std::string>(Load(), "/system/keyboard/current");
}

std::vector<std::string> SimBackend::GetKeyboardLayouts()
{
    return Get<std::vector<std::string>>(Load(), "/system/keyboard/layouts");
}

void SimBackend::SetKeyboardLayout(const std::string& name)
{
    Change([&](json& state) {
        auto layouts = Get<std::vector<std::string>>(state, "/system/keyboard/layouts");
        if (std::find(layouts.begin(), layouts.end(), name) == layouts.end())
            throw HostCtlException("Unknown keyboard layout '" + name + "'");
        state["system"]["keyboard"]["current"] = name;
    });
}

void SimBackend::LoadKeyboardMappings(const std::string& name)
{
    Change([&](json& state) {
        auto layouts = Get<std::vector<std::string>>(state, "/system/keyboard/layouts");
        if (std::find(layouts.begin(), layouts.end(), name) == layouts.end())
            throw HostCtlException("No key mappings for layout '" + name + "'");
        state["system"]["keyboard"]["loadedMappings"] = name;
    });
}

void SimBackend::AddSystemAlert(const std::string& text)
{
    Change([&](json& state) { ArrayAt(state, "/system/alerts").push_back(text); });
}

std::vector<std::string> SimBackend::GetSystemAlerts()
{
    return GetOr<std::vector<std::string>>(Load(), "/system/alerts", {});
}

bool SimBackend::GetFirewallRulesetEnabled(const std::string& id)
{
    json state = Load();
    const json* rs = Find(state, "/system/firewall/rulesets");
    if (!rs || !rs->is_object() || !rs->contains(id))
        throw HostCtlException("Firewall ruleset " + id + " not found");
    return (*rs)[id].value("enabled", false);
}

void SimBackend::SetFirewallRulesetEnabled(const std::string& id, bool enabled)
{
    Change([&](json& state) {
        const json* rs = Find(state, "/system/firewall/rulesets");
        if (!rs || !rs->is_object() || !rs->contains(id))
            throw HostCtlException("Firewall ruleset " + id + " not found");
        state["system"]["firewall"]["rulesets"][id]["enabled"] = enabled;
    });
}

std::vector<HostCtl::System::VirtualMachine> SimBackend::GetVirtualMachines()
{
    std::vector<HostCtl::System::VirtualMachine> out;
    for (const auto& vm : GetOr<json>(Load(), "/vms", json::array()))
        out.push_back({vm.value("name", std::string()), vm.value("powerState", std::string("poweredOff"))});
    return out;
}

bool SimBackend::IsDriverVmSupported()
{
    return GetOr<bool>(Load(), "/system/driverVm/supported", false);
}

Host::SystemVersion SimBackend::GetSystemVersion()
{
    json state = Load();
    return {Get<std::string>(state, "/system/version/product"), Get<std::string>(state, "/system/version/version"),
            Get<std::string>(state, "/system/version/kernelRelease"), Get<std::string>(state, "/system/version/build")};
}

int32_t SimBackend::GetBootOption()
{
    return GetOr<int32_t>(Load(), "/system/bootOption", 0);
}

bool SimBackend::IsEventFacilityAvailable()
{
    return GetOr<bool>(Load(), "/eventFacility/available", true);
}

void SimBackend::AppendEvent(const std::string& record)
{
    std::string path = EventLogPath(_file.Path());
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ec);
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (fd < 0)
        throw HostCtlException("cannot open event log " + path);
    std::string line = record + "\n";
    // One write with O_APPEND keeps lines of concurrent writers whole.
    ssize_t n = ::write(fd, line.data(), line.size());
    ::close(fd);
    if (n != static_cast<ssize_t>(line.size()))
        throw HostCtlException("cannot write event log " + path);
}

int SimBackend::Exec(const std::string& commandLine)
{
    std::string line = ResolveCommandLine(commandLine);
    pid_t pid = ::fork();
    if (pid < 0)
        return -1;
    if (pid == 0) {
        ::execl("/bin/sh", "sh", "-c", line.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace Tolm::HostSim

// System side of the simulated host: faults, options, hardware, smart
// cards, keyboard, alerts, firewall, virtual machines, sysinfo, events and
// command execution.
#include "host/sim/SimBackend.h"

#include "host/ChildWait.h"
#include "host/HostPaths.h"
#include "host/ShellQuote.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
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

// The absolute word of `line` that starts at or after `from` moves into the
// host root; `from` is left after it. False when the word is not absolute.
bool ResolveWord(std::string& line, size_t& from)
{
    size_t start = line.find_first_not_of(" \t", from);
    if (start == std::string::npos || line[start] != '/')
        return false;
    size_t end = line.find_first_of(" \t", start);
    if (end == std::string::npos)
        end = line.size();
    const std::string resolved = ShellQuote(HostPath::Resolve(line.substr(start, end - start)));
    line.replace(start, end - start, resolved);
    from = start + resolved.size();
    return true;
}

// The program (the command line's first word) is a host path and moves into
// the host root, and so does the script a shell is handed; other arguments
// are the program's own business, and the root's tools resolve the paths
// they are given themselves.
std::string ResolveProgram(const std::string& commandLine)
{
    std::string line = commandLine;
    const size_t start = line.find_first_not_of(" \t");
    if (start == std::string::npos)
        return line;
    const std::string program = line.substr(start, line.find_first_of(" \t", start) - start);
    size_t at = 0;
    if (ResolveWord(line, at) && HostPath::RunsScript(program))
        ResolveWord(line, at);
    return line;
}

// The message planted for the outermost facade operation being served.
void ThrowPlantedFault(const json& state)
{
    auto faults = state.find("faults");
    if (faults == state.end() || !faults->is_object())
        return;
    for (std::string_view op : Host::Operation::Active()) {
        auto fault = faults->find(op);
        if (fault != faults->end())
            throw HostCtlException(fault->is_string() ? fault->get<std::string>() : fault->dump());
    }
}

}  // namespace

void UseSimulatedState(const std::string& statePath)
{
    Host::SetBackend(std::make_unique<SimBackend>(statePath));
}

json SimBackend::Load() const
{
    json state = _file.Read();
    ThrowPlantedFault(state);
    return state;
}

void SimBackend::Change(const std::function<void(json&)>& change) const
{
    _file.Update([&](json& state) {
        ThrowPlantedFault(state);
        change(state);
    });
}

std::optional<Host::AdvancedOptionRecord> SimBackend::FindOption(const std::string& path)
try {
    json state = Load();
    const json* option = Find(state, OptionPointer(path));
    if (!option || !option->is_object() || !option->contains("type"))
        return std::nullopt;
    Host::AdvancedOptionRecord r;
    r.path = path;
    r.type = option->value("type", std::string());
    r.description = option->value("description", std::string());
    if (r.type == "integer") {
        r.intValue = option->value("value", int64_t{0});
        r.intDefault = option->value("default", r.intValue);
        r.intMin = option->value("min", int64_t{INT64_MIN});
        r.intMax = option->value("max", int64_t{INT64_MAX});
    } else {
        r.stringValue = option->value("value", std::string());
        r.stringDefault = option->value("default", std::string());
    }
    return r;
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetIntegerOption(const std::string& path, int64_t value)
try {
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
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetStringOption(const std::string& path, const std::string& value)
try {
    std::string pointer = OptionPointer(path);
    Change([&](json& state) {
        const json* option = Find(state, pointer);
        if (!option || option->value("type", std::string()) != "string")
            throw HostCtlException("String option " + path + " not found");
        state[json::json_pointer(pointer)]["value"] = value;
    });
} catch (...) {
    RethrowAsHostFailure();
}

std::optional<std::string> SimBackend::GetUserOption(const std::string& name)
try {
    json state = Load();
    const json* value = Find(state, UserOptionPointer(name));
    if (!value)
        return std::nullopt;
    return value->is_string() ? value->get<std::string>() : value->dump();
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetUserOption(const std::string& name, const std::string& value)
try {
    std::string pointer = UserOptionPointer(name);
    Change([&](json& state) { state[json::json_pointer(pointer)] = value; });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::RemoveUserOption(const std::string& name)
try {
    UserOptionPointer(name);
    Change([&](json& state) {
        if (state.contains("userOptions") && state["userOptions"].is_object())
            state["userOptions"].erase(name);
    });
} catch (...) {
    RethrowAsHostFailure();
}

Host::HardwareRecord SimBackend::GetHardware()
try {
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
} catch (...) {
    RethrowAsHostFailure();
}

std::vector<HostCtl::Hardware::SmartCardSlot> SimBackend::GetSmartCardSlots()
try {
    json state = Load();
    std::vector<HostCtl::Hardware::SmartCardSlot> out;
    for (const auto& s : ListAt(state, "/smartCards/slots")) {
        HostCtl::Hardware::SmartCardSlot slot;
        slot.name = s.value("name", std::string());
        if (s.contains("token") && s["token"].is_object()) {
            HostCtl::Hardware::SmartCardToken token;
            token.label = s["token"].value("label", std::string());
            for (const auto& id : Items(s["token"], "userIds"))
                token.userIds.push_back(id.is_string() ? id.get<std::string>() : std::string());
            slot.token = std::move(token);
        }
        out.push_back(std::move(slot));
    }
    return out;
} catch (...) {
    RethrowAsHostFailure();
}

std::string SimBackend::GetPowerState()
try {
    // The simulated power tools only record the new state: this is how the
    // console learns that its host went down.
    const json state = Load();
    const json* power = state.contains("power") ? &state["power"] : nullptr;
    if (power != nullptr && power->is_object() && power->contains("state") && (*power)["state"].is_string())
        return (*power)["state"].get<std::string>();
    return "running";
} catch (...) {
    RethrowAsHostFailure();
}

std::string SimBackend::GetKeyboardLayout()
try {
    return Get<std::string>(Load(), "/system/keyboard/current");
} catch (...) {
    RethrowAsHostFailure();
}

std::vector<std::string> SimBackend::GetKeyboardLayouts()
try {
    return Get<std::vector<std::string>>(Load(), "/system/keyboard/layouts");
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetKeyboardLayout(const std::string& name)
try {
    Change([&](json& state) {
        auto layouts = Get<std::vector<std::string>>(state, "/system/keyboard/layouts");
        if (std::find(layouts.begin(), layouts.end(), name) == layouts.end())
            throw HostCtlException("Unknown keyboard layout '" + name + "'");
        state["system"]["keyboard"]["current"] = name;
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::LoadKeyboardMappings(const std::string& name)
try {
    Change([&](json& state) {
        auto layouts = Get<std::vector<std::string>>(state, "/system/keyboard/layouts");
        if (std::find(layouts.begin(), layouts.end(), name) == layouts.end())
            throw HostCtlException("No key mappings for layout '" + name + "'");
        state["system"]["keyboard"]["loadedMappings"] = name;
    });
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::AddSystemAlert(const std::string& text)
try {
    Change([&](json& state) { ArrayAt(state, "/system/alerts").push_back(text); });
} catch (...) {
    RethrowAsHostFailure();
}

std::vector<std::string> SimBackend::GetSystemAlerts()
try {
    return GetOr<std::vector<std::string>>(Load(), "/system/alerts", {});
} catch (...) {
    RethrowAsHostFailure();
}

bool SimBackend::GetFirewallRulesetEnabled(const std::string& id)
try {
    json state = Load();
    const json* rs = Find(state, "/system/firewall/rulesets");
    if (!rs || !rs->is_object() || !rs->contains(id))
        throw HostCtlException("Firewall ruleset " + id + " not found");
    return (*rs)[id].value("enabled", false);
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::SetFirewallRulesetEnabled(const std::string& id, bool enabled)
try {
    Change([&](json& state) {
        const json* rs = Find(state, "/system/firewall/rulesets");
        if (!rs || !rs->is_object() || !rs->contains(id))
            throw HostCtlException("Firewall ruleset " + id + " not found");
        state["system"]["firewall"]["rulesets"][id]["enabled"] = enabled;
    });
} catch (...) {
    RethrowAsHostFailure();
}

std::vector<HostCtl::System::VirtualMachine> SimBackend::GetVirtualMachines()
try {
    std::vector<HostCtl::System::VirtualMachine> out;
    for (const auto& vm : ListAt(Load(), "/vms"))
        out.push_back({vm.value("name", std::string()), vm.value("powerState", std::string("poweredOff"))});
    return out;
} catch (...) {
    RethrowAsHostFailure();
}

bool SimBackend::IsDriverVmSupported()
try {
    return GetOr<bool>(Load(), "/system/driverVm/supported", false);
} catch (...) {
    RethrowAsHostFailure();
}

Host::SystemVersion SimBackend::GetSystemVersion()
try {
    json state = Load();
    return {Get<std::string>(state, "/system/version/product"), Get<std::string>(state, "/system/version/version"),
            Get<std::string>(state, "/system/version/kernelRelease"), Get<std::string>(state, "/system/version/build")};
} catch (...) {
    RethrowAsHostFailure();
}

int32_t SimBackend::GetBootOption()
try {
    return GetOr<int32_t>(Load(), "/system/bootOption", 0);
} catch (...) {
    RethrowAsHostFailure();
}

bool SimBackend::IsEventFacilityAvailable()
try {
    return GetOr<bool>(Load(), "/eventFacility/available", true);
} catch (...) {
    RethrowAsHostFailure();
}

void SimBackend::AppendEvent(const std::string& record)
try {
    Load();
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
} catch (...) {
    RethrowAsHostFailure();
}

int SimBackend::Exec(const std::string& commandLine)
try {
    Load();
    std::string line = ResolveProgram(commandLine);
    pid_t pid = ::fork();
    if (pid < 0)
        return -1;
    if (pid == 0) {
        // A process group of its own first: keys typed on the terminal
        // (Ctrl-Z) no longer reach it, and the console can end everything it
        // started.
        ::setpgid(0, 0);
        // The console owns the terminal: a program's output must never land
        // on it. Nothing else of the console (descriptors, blocked or
        // ignored signals) goes along either.
        int devNull = ::open("/dev/null", O_RDWR);
        if (devNull < 0)
            ::_exit(127);
        ::dup2(devNull, STDIN_FILENO);
        ::dup2(devNull, STDOUT_FILENO);
        ::dup2(devNull, STDERR_FILENO);
        ::close_range(STDERR_FILENO + 1, ~0U, 0);
        for (int sig : {SIGPIPE, SIGINT, SIGQUIT, SIGTSTP, SIGTTIN, SIGTTOU, SIGHUP, SIGTERM, SIGCHLD})
            ::signal(sig, SIG_DFL);
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::execl("/bin/sh", "sh", "-c", line.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    // Both sides set the group, so it exists whichever runs first.
    ::setpgid(pid, pid);
    const int status = Host::WaitForChild(pid);
    return status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
} catch (...) {
    RethrowAsHostFailure();
}

}  // namespace Tolm::HostSim

// orla-cmd: the management agent's command tool.
#include "hostsim/StateKeys.h"
#include "hostsim/Tools.h"

#include <functional>
#include <iostream>
#include <map>

namespace Tolm::HostSim {
namespace {

constexpr int UNKNOWN_USER_STATUS = 255;

using Command = std::function<void(const ToolCall&)>;

void PrintBool(bool value)
{
    std::cout << (value ? "true" : "false") << "\n";
}

void Lockdown(const ToolCall& call, bool enter)
{
    call.state.Update([&](Json& state) {
        if (enter && LockdownEnabled(state))
            throw Refusal("Lockdown mode is already enabled");
        if (enter && !LockdownPossible(state))
            throw Refusal("Lockdown mode is not possible on this host: it is not managed by a central server");
        if (!enter && !LockdownEnabled(state))
            throw Refusal("Lockdown mode is not enabled");
        SetLockdownEnabled(state, enter);
    });
}

// Enabling sets the start policy; starting needs an enabled service, as the
// agent refuses to start what the administrator switched off.
void ServiceCommand(const ToolCall& call, const std::string& service, const std::string& action)
{
    call.state.Update([&](Json& state) {
        Json& svc = Service(state, service);
        if (action == "enable") {
            svc["enabled"] = true;
        } else if (action == "disable") {
            svc["enabled"] = false;
        } else if (action == "start") {
            if (!svc.value("enabled", false))
                throw Refusal("Service " + service + " is disabled and cannot be started");
            svc["running"] = true;
        } else {
            svc["running"] = false;
        }
    });
}

const std::map<std::string, Command>& Commands()
{
    static const std::map<std::string, Command> commands = [] {
        std::map<std::string, Command> c;
        c["orlasvc/auth/lockdown_is_enabled"] = [](const ToolCall& call) { PrintBool(LockdownEnabled(call.state.Read())); };
        c["orlasvc/auth/lockdown_is_possible"] = [](const ToolCall& call) { PrintBool(LockdownPossible(call.state.Read())); };
        c["orlasvc/auth/lockdown_mode_enter"] = [](const ToolCall& call) { Lockdown(call, true); };
        c["orlasvc/auth/lockdown_mode_exit"] = [](const ToolCall& call) { Lockdown(call, false); };
        for (const char* action : {"enable", "disable", "start", "stop"}) {
            std::string a = action;
            c["hostsvc/" + a + "_ssh"] = [a](const ToolCall& call) { ServiceCommand(call, "ssh", a); };
            c["hostsvc/" + a + "_talvo_shell"] = [a](const ToolCall& call) { ServiceCommand(call, "shell", a); };
        }
        c["internalsvc/refresh"] = [](const ToolCall& call) {
            call.state.Update([](Json& state) { CountTool(state, "refresh"); });
        };
        c["hostsvc/autostartmanager/autostop"] = [](const ToolCall& call) {
            call.state.Update([](Json& state) {
                PowerOffVms(state, false, true);
                CountTool(state, "autostop");
            });
        };
        return c;
    }();
    return commands;
}

}  // namespace

int OrlaCmd(const ToolCall& call)
{
    const auto& args = call.args;
    if (args.size() < 3 || args[0] != "-U" || args[1].empty())
        throw UsageError("-U USER COMMAND");
    const std::string& user = args[1];
    const std::string& command = args[2];
    Json state = call.state.Read();
    if (!IsKnownUser(state, user)) {
        std::cerr << "orla-cmd: user '" << user << "' is not permitted to run management commands\n";
        return UNKNOWN_USER_STATUS;
    }
    auto it = Commands().find(command);
    if (it == Commands().end())
        throw Refusal("unknown command '" + command + "'");
    if (args.size() > 3)
        throw UsageError("-U USER " + command);
    if (auto fault = FaultFor(state, command))
        throw Refusal(*fault);
    it->second(call);
    return 0;
}

}  // namespace Tolm::HostSim

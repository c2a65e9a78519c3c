// Power, services, backup and reset tools.
#include "hostsim/RootFiles.h"
#include "hostsim/StateKeys.h"
#include "hostsim/Tools.h"

#include <filesystem>
#include <iostream>

namespace Tolm::HostSim {

int PowerOffVmsTool(const ToolCall& call)
{
    bool terminate = false;
    if (call.args.size() == 1 && call.args[0] == "--terminate")
        terminate = true;
    else if (!call.args.empty())
        throw UsageError("[--terminate]");
    int stopped = 0;
    call.state.Update([&](Json& state) {
        stopped = PowerOffVms(state, terminate, false);
        CountTool(state, terminate ? "powerOffVmsTerminate" : "powerOffVms");
    });
    std::cout << (terminate ? "Terminated " : "Powered off ") << stopped << " virtual machine(s)\n";
    return 0;
}

int BackupTool(const ToolCall& call)
{
    if (!call.args.empty())
        throw UsageError("(no arguments)");
    call.state.Update([](Json& state) { CountTool(state, "backup"); });
    std::cout << "Saving current state in /bootbank\n";
    return 0;
}

int FirmwareConfig(const ToolCall& call)
{
    if (call.args.size() != 1 || call.args[0] != "--reset-only")
        throw UsageError("--reset-only");
    Json factory = StateFile(InRoot(call.root, FACTORY_FILE)).Read();
    bool login = true;
    call.state.Update([&](Json& state) {
        ResetToFactory(state, factory);
        CountTool(state, "factoryReset");
        login = LoginEnabled(state);
    });
    std::string flag = InRoot(call.root, LOGIN_FLAG_FILE);
    if (login)
        WriteFile(flag, "");
    else
        std::filesystem::remove(flag);
    std::cout << "Configuration reset to factory defaults\n";
    return 0;
}

int ServicesTool(const ToolCall& call)
{
    if (call.args.size() != 1 || (call.args[0] != "stop" && call.args[0] != "start" && call.args[0] != "restart"))
        throw UsageError("stop|start|restart");
    const std::string& action = call.args[0];
    call.state.Update([&](Json& state) {
        SetAgentsRunning(state, action != "stop");
        CountTool(state, "services-" + action);
    });
    std::cout << (action == "stop" ? "Stopping" : "Starting") << " management services\n";
    return 0;
}

// /etc/init.d/TalvoShell and /etc/init.d/SSH: status answers 0 while the
// service runs and 3 (LSB "not running") otherwise.
int InitScript(const ToolCall& call)
{
    std::string service = call.name == "SSH" ? "ssh" : "shell";
    if (call.args.size() != 1)
        throw UsageError("status|start|stop|restart");
    const std::string& action = call.args[0];
    if (action == "status") {
        bool running = ServiceRunning(call.state.Read(), service);
        std::cout << call.name << " is " << (running ? "running" : "not running") << "\n";
        return running ? 0 : 3;
    }
    if (action != "start" && action != "stop" && action != "restart")
        throw UsageError("status|start|stop|restart");
    call.state.Update([&](Json& state) {
        Service(state, service)["running"] = action != "stop";
        CountTool(state, call.name + "-" + action);
    });
    return 0;
}

int PowerOff(const ToolCall& call)
{
    if (!call.args.empty() && !(call.args.size() == 1 && call.args[0] == "-f"))
        throw UsageError("[-f]");
    call.state.Update([](Json& state) { SetPowerState(state, "poweredOff"); });
    return 0;
}

int Reboot(const ToolCall& call)
{
    if (!call.args.empty() && !(call.args.size() == 1 && call.args[0] == "-f"))
        throw UsageError("[-f]");
    call.state.Update([&](Json& state) {
        SetPowerState(state, "restarting");
        CountTool(state, call.args.empty() ? "reboot" : "rebootForced");
    });
    return 0;
}

}  // namespace Tolm::HostSim

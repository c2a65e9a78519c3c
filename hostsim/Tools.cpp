// Dispatch of the host tools and the scripts that lead to them.
#include "hostsim/Tools.h"

#include "host/HostCtlException.h"
#include "hostsim/StateKeys.h"

#include <chrono>
#include <iostream>
#include <map>
#include <thread>

namespace Tolm::HostSim {
namespace {

using ToolFn = int (*)(const ToolCall&);

const std::map<std::string, ToolFn>& Table()
{
    static const std::map<std::string, ToolFn> table = {
        {"orla-cmd", OrlaCmd},
        {"powerOffVms", PowerOffVmsTool},
        {"talvocli", TalvoCli},
        {"nodecli", TalvoCli},
        {"talvocfg-advcfg", AdvCfg},
        {"tarnping", TarnPing},
        {"tarnbacktrace", TarnBacktrace},
        {"backup.sh", BackupTool},
        {"firmwareConfig.sh", FirmwareConfig},
        {"services.sh", ServicesTool},
        {"grabCIMData", GrabCimData},
        {"TalvoShell", InitScript},
        {"SSH", InitScript},
        {"poweroff", PowerOff},
        {"reboot", Reboot},
    };
    return table;
}

}  // namespace

const std::vector<ToolScript>& ToolScripts()
{
    static const std::vector<ToolScript> scripts = {
        {"orla-cmd", "bin/orla-cmd"},
        {"powerOffVms", "bin/powerOffVms"},
        {"talvocli", "sbin/talvocli"},
        {"nodecli", "sbin/nodecli"},
        {"talvocfg-advcfg", "sbin/talvocfg-advcfg"},
        {"tarnping", "sbin/tarnping"},
        {"tarnbacktrace", "sbin/tarnbacktrace"},
        {"backup.sh", "sbin/backup.sh"},
        {"firmwareConfig.sh", "sbin/firmwareConfig.sh"},
        {"services.sh", "sbin/services.sh"},
        {"grabCIMData", "sbin/grabCIMData"},
        {"TalvoShell", "etc/init.d/TalvoShell"},
        {"SSH", "etc/init.d/SSH"},
        {"poweroff", "sbin/poweroff"},
        {"reboot", "sbin/reboot"},
        {"poweroff", "bin/poweroff"},
        {"reboot", "bin/reboot"},
    };
    return scripts;
}

int RunTool(const std::string& root, const std::string& name, const std::vector<std::string>& args)
{
    auto it = Table().find(name);
    if (it == Table().end()) {
        std::cerr << "tolm-hostsim: no such host tool: " << name << "\n";
        return 127;
    }
    ToolCall call{root, name, args, StateOf(root)};
    try {
        Json state = call.state.Read();
        if (auto fault = FaultFor(state, name)) {
            std::cerr << name << ": " << *fault << "\n";
            return 1;
        }
        // A tool that never answers, to see how its caller copes.
        if (ToolHangs(state, name))
            for (;;)
                std::this_thread::sleep_for(std::chrono::hours(1));
        return it->second(call);
    } catch (const UsageError& e) {
        std::cerr << "usage: " << name << " " << e.what() << "\n";
        return 2;
    } catch (const Refusal& e) {
        std::cerr << name << ": " << e.what() << "\n";
        return 1;
    } catch (const HostCtl::Lib::HostCtlException& e) {
        std::cerr << name << ": " << e.what() << "\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << name << ": " << e.what() << "\n";
        return 1;
    }
}

}  // namespace Tolm::HostSim

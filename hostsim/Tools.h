#pragma once
// The host tools that tolm-hostsim plays. Each reads its arguments, acts on
// the shared state and answers with output and an exit status as the real
// tool would.
#include "hostsim/HostSim.h"

#include <string>
#include <vector>

namespace Tolm::HostSim {

struct ToolCall {
    std::string root;
    std::string name;
    std::vector<std::string> args;
    StateFile state;
};

int OrlaCmd(const ToolCall& call);
int PowerOffVmsTool(const ToolCall& call);
int TalvoCli(const ToolCall& call);
int AdvCfg(const ToolCall& call);
int TarnPing(const ToolCall& call);
int TarnBacktrace(const ToolCall& call);
int BackupTool(const ToolCall& call);
int FirmwareConfig(const ToolCall& call);
int ServicesTool(const ToolCall& call);
int GrabCimData(const ToolCall& call);
int InitScript(const ToolCall& call);
int PowerOff(const ToolCall& call);
int Reboot(const ToolCall& call);

}  // namespace Tolm::HostSim

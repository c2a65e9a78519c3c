#pragma once
// Where the tools find things in the host state. Every JSON pointer the
// tools use lives in StateKeys.cpp, so the state's layout is known in one place.
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace Tolm::HostSim {

using Json = nlohmann::json;

bool LoginEnabled(const Json& state);
std::string HostName(const Json& state);
std::string DomainName(const Json& state);
std::string ManagementAddress(const Json& state);

// Users the management agent accepts with "-U": "tolm", "root" and the
// host's own accounts.
bool IsKnownUser(const Json& state, const std::string& user);

// A fault planted for `operation` (a tool or management command name).
std::optional<std::string> FaultFor(const Json& state, const std::string& operation);
// `/tools/hang/<tool>` is true: the tool never ends.
bool ToolHangs(const Json& state, const std::string& tool);

// Lockdown mode.
bool LockdownEnabled(const Json& state);
bool LockdownPossible(const Json& state);
void SetLockdownEnabled(Json& state, bool enabled);

// Services "shell" (Talvo Shell) and "ssh": the enabled policy and whether running.
Json& Service(Json& state, const std::string& name);
bool ServiceEnabled(const Json& state, const std::string& name);
bool ServiceRunning(const Json& state, const std::string& name);

// Running virtual machines; returns the number powered off.
int PowerOffVms(Json& state, bool terminate, bool autostartOnly);

// Advanced options by path ("/UserVars/TolmTimeOut"); null when missing.
Json* AdvancedOption(Json& state, const std::string& path);

// Ping answers: whether `address` replies to packets sent through
// `interface` (empty: the management interface).
bool IsReachable(const Json& state, const std::string& address, const std::string& interface);
bool InterfaceExists(const Json& state, const std::string& name);

// Management data lines as grabCIMData prints them.
std::vector<std::string> CimLines(const Json& state);

// The management agents (hagentd and friends) run unless services.sh stopped them.
bool AgentsRunning(const Json& state);
void SetAgentsRunning(Json& state, bool running);

// User ids on smart-card tokens; inserting and removing tokens.
std::vector<std::string> CardUserIds(const Json& state);
void InsertCard(Json& state, const std::string& userId);
bool RemoveCard(Json& state, const std::string& userId);

// What the tools record for tests: counters and last values under /tools.
void CountTool(Json& state, const std::string& counter);

void SetPowerState(Json& state, const std::string& powerState);

// Reset to factory settings: the factory state, keeping the power state and
// planted faults, which belong to the test rather than to the host's settings.
void ResetToFactory(Json& state, const Json& factory);

}  // namespace Tolm::HostSim

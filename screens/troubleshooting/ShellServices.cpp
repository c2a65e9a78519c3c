#include "screens/troubleshooting/ShellServices.h"

#include <syslog.h>

#include <cctype>
#include <charconv>
#include <memory>
#include <string>

#include "exec/HostCall.h"
#include "exec/OrlaCmd.h"
#include "exec/RunCommand.h"
#include "exec/Session.h"
#include "host/Log.h"
#include "host/TarnCtlSystem.h"

namespace Tolm::Troubleshooting {

const ShellService TALVO_SHELL{
    "/etc/init.d/TalvoShell",
    "hostsvc/enable_talvo_shell",
    "hostsvc/start_talvo_shell",
    "hostsvc/stop_talvo_shell",
    "hostsvc/disable_talvo_shell",
    "Unable to run orla-cmd to enable/disable Talvo Shell",
    "Unable to run orla-cmd to start/stop Talvo Shell",
    "enabled Talvo Shell",
    "disabled Talvo Shell",
};

const ShellService SSH{
    "/etc/init.d/SSH",
    "hostsvc/enable_ssh",
    "hostsvc/start_ssh",
    "hostsvc/stop_ssh",
    "hostsvc/disable_ssh",
    "Unable to run orla-cmd to enable/disable ssh",
    "Unable to run orla-cmd to start/stop ssh",
    "enabled SSH",
    "disabled SSH",
};

namespace {

constexpr const char* SH = "/bin/sh";
constexpr const char* ORLA_CMD = "/bin/orla-cmd";
constexpr const char* ADVCFG = "/sbin/talvocfg-advcfg";
constexpr const char* SSH_RULESET = "sshServer";

bool RunManagementCommand(const char* command)
{
    const std::string user = Exec::LoginName();
    const char* const argv[] = {"orla-cmd", "-U", user.c_str(), command, nullptr};
    return RunOrlaCmd(ORLA_CMD, argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0) == 0;
}

bool RunOptionTool(const char* path, const char* name, const char* option, const std::string& seconds)
{
    const char* const argv[] = {name, "system", "settings", "advanced", "set",
                                "-o", option,  "-i",       seconds.c_str(), nullptr};
    return RunCommand(path, argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0) == 0;
}

}  // namespace

int RunInitScript(const char* script, const char* action)
{
    const char* const argv[] = {"sh", script, action, nullptr};
    return RunCommand(SH, argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
}

bool IsRunning(const ShellService& service)
{
    return RunInitScript(service.initScript, "status") == 0;
}

void Switch(const ShellService& service, bool on)
{
    // Off: stop first, so the service is down even if disabling fails.
    const bool policyFirst = on;
    const char* policy = on ? service.enableCommand : service.disableCommand;
    const char* run = on ? service.startCommand : service.stopCommand;
    bool policyDone = true;
    if (policyFirst) policyDone = RunManagementCommand(policy);
    const bool runDone = RunManagementCommand(run);
    if (!policyFirst) policyDone = RunManagementCommand(policy);

    if (!policyDone) Log::Write(LOG_WARNING, "%s", service.enableFailure);
    if (!runDone) {
        Log::Write(LOG_WARNING, "%s", service.startFailure);
        if (!on) RunInitScript(service.initScript, "stop");
    }
    Log::Write(LOG_INFO, "User %s %s", Exec::LoginName().c_str(), on ? service.enabledWords : service.disabledWords);
}

void SetSshRuleset(bool enabled)
{
    HostCall("Failed to update firewall sshServer ruleset status:", [&] {
        TarnCtl::System::SystemInfoImpl().GetFirewallRulesetById(SSH_RULESET)->SetEnabled(enabled);
    });
}

int ReadOptionMinutes(const char* option)
{
    char out[256] = {};
    unsigned outLength = sizeof out - 1;
    const char* const argv[] = {"talvocfg-advcfg", "-g", option, nullptr};
    if (RunCommand(ADVCFG, argv, out, &outLength, nullptr, nullptr, nullptr, 0, 0) != 0) return -1;
    if (outLength >= sizeof out) return -1;
    // "Value of TalvoShellTimeOut is 900": the number is the last word.
    std::string text(out, outLength);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.pop_back();
    const size_t start = text.find_last_of(" \t\n") + 1;
    long seconds = -1;
    const char* end = text.data() + text.size();
    auto [at, ec] = std::from_chars(text.data() + start, end, seconds);
    if (ec != std::errc() || at != end || seconds < 0) return -1;
    return static_cast<int>(seconds / 60);
}

void WriteOption(const char* option, int seconds)
{
    const std::string value = std::to_string(seconds);
    if (!RunOptionTool("/sbin/talvocli", "talvocli", option, value))
        RunOptionTool("/sbin/nodecli", "nodecli", option, value);
}

}  // namespace Tolm::Troubleshooting

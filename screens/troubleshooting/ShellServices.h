#pragma once
// The host's local shell and SSH as the troubleshooting screens handle them:
// their init scripts, the management commands that switch them, the SSH
// firewall ruleset, and their timeouts in the host's advanced options.

namespace Tolm::Troubleshooting {

struct ShellService {
    const char* initScript;         // host path of its init script
    const char* enableCommand;      // management commands
    const char* startCommand;
    const char* stopCommand;
    const char* disableCommand;
    const char* enableFailure;      // warning when enable/disable fails
    const char* startFailure;       // warning when start/stop fails
    const char* enabledWords;       // "enabled SSH", for the log line
    const char* disabledWords;
};

extern const ShellService TALVO_SHELL;
extern const ShellService SSH;

// Availability and idle timeout of shell logins (seconds on the host).
inline constexpr const char* SHELL_TIMEOUT_VAR = "/UserVars/TalvoShellTimeOut";
inline constexpr const char* SHELL_INTERACTIVE_TIMEOUT_VAR = "/UserVars/TalvoShellInteractiveTimeOut";

// "/bin/sh SCRIPT ACTION" without a time limit; the script's exit status.
int RunInitScript(const char* script, const char* action);

// The service runs: its init script's "status" answers 0.
bool IsRunning(const ShellService& service);

// Switches the service on (enable, then start) or off (stop, then disable)
// through the management agent as the logged-in user. Failures are logged;
// a stop that fails is done through the init script instead. Logs
// "User <name> enabled/disabled <service>".
void Switch(const ShellService& service, bool on);

// Opens or closes the "sshServer" firewall ruleset; a failure is logged.
void SetSshRuleset(bool enabled);

// The option's value in whole minutes as "talvocfg-advcfg" reports it; -1
// when it cannot be read.
int ReadOptionMinutes(const char* option);

// Sets an integer option to `seconds` through "talvocli", once more through
// "nodecli" when that fails; the second result is not examined.
void WriteOption(const char* option, int seconds);

}  // namespace Tolm::Troubleshooting

#include "screens/troubleshooting/ShellTimeoutDialog.h"

#include <syslog.h>

#include "host/Log.h"
#include "screens/troubleshooting/ShellServices.h"

namespace Tolm {

using namespace Troubleshooting;

namespace {

constexpr int WIDTH = 70;
constexpr int HEIGHT = 21;
constexpr int TITLE_HEIGHT = 15;

enum Row { AVAILABILITY = 0, IDLE = 1 };

// A running service reads its timeout when it starts.
void RestartIfRunning(const char* initScript)
{
    if (RunInitScript(initScript, "status") == 0) RunInitScript(initScript, "restart");
}

}  // namespace

ShellTimeoutDialog::ShellTimeoutDialog(Frame* parent, int availability, int idle)
    : TimeoutDialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT, TextId::SetTimeoutsTalvoShell, TextId::ShellTimeoutsText)
{
    AddRow(TextId::AvailabilityTimeout, availability);
    AddRow(TextId::IdleTimeout, idle);
}

void ShellTimeoutDialog::Apply(int row, int minutes)
{
    if (row == AVAILABILITY) {
        WriteOption(SHELL_TIMEOUT_VAR, minutes * 60);
        RestartIfRunning(TALVO_SHELL.initScript);
        RestartIfRunning(SSH.initScript);
        if (minutes == 0)
            Log::Write(LOG_INFO, "Disabled Shell timeout");
        else
            Log::Write(LOG_INFO, "Modified Shell timeout to %d minutes", minutes);
        return;
    }
    // Sessions read the idle timeout when they start: nothing to restart.
    WriteOption(SHELL_INTERACTIVE_TIMEOUT_VAR, minutes * 60);
    if (minutes == 0)
        Log::Write(LOG_INFO, "Disabled shell interactive timeout");
    else
        Log::Write(LOG_INFO, "Modified shell interactive timeout to %d minutes", minutes);
}

}  // namespace Tolm

#include "screens/access/LockdownDialog.h"

#include <syslog.h>

#include <cctype>

#include "exec/Constants.h"
#include "exec/OrlaCmd.h"
#include "exec/RunCommand.h"
#include "host/Log.h"
#include "ui/Item.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 70;
constexpr int HEIGHT = 11;
constexpr int TITLE_HEIGHT = 6;


constexpr const char* ORLA_CMD = "/bin/orla-cmd";
constexpr const char* IS_ENABLED = "orlasvc/auth/lockdown_is_enabled";
constexpr const char* ENTER = "orlasvc/auth/lockdown_mode_enter";
constexpr const char* EXIT = "orlasvc/auth/lockdown_mode_exit";

// The request's output and error each keep at most 255 characters.
constexpr unsigned BUFFER_SIZE = 256;

}  // namespace

LockdownDialog::LockdownDialog(Frame* parent)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _enabled(OrlaCmdGetBool(IS_ENABLED)), _fields(*this)
{
    _check = &_fields.AddCheck(Text(TextId::EnableLockdownMode), _enabled);
}

void LockdownDialog::Request(bool enable)
{
    char out[BUFFER_SIZE] = {};
    char err[BUFFER_SIZE] = {};
    unsigned outLength = BUFFER_SIZE - 1;
    unsigned errLength = BUFFER_SIZE - 1;
    const char* const argv[] = {"orla-cmd", "-U", TOLM_USER, enable ? ENTER : EXIT, nullptr};
    const int result = RunCommand(ORLA_CMD, argv, out, &outLength, err, &errLength, nullptr, 0, 0);
    // A read error leaves the length at all bits set; keep the text empty then.
    unsigned length = errLength < BUFFER_SIZE ? errLength : 0;
    // The tool ends its message with a newline; syslog takes one line.
    while (length > 0 && std::isspace(static_cast<unsigned char>(err[length - 1]))) --length;
    err[length] = '\0';
    if (result != 0)
        Log::Write(LOG_ERR, enable ? "Enabling lockdown mode failed with error: %s"
                                   : "Disabling lockdown mode failed with error: %s",
                   err);
    else
        Log::Write(LOG_INFO, enable ? "Lockdown mode enabled" : "Lockdown mode disabled");
}

int LockdownDialog::Execute()
{
    SetTitle(Text(TextId::ConfigureLockdownModeTitle));
    SetText(Text(TextId::ConfigureLockdownModeText));
    SetFooter(FOOTER_TOGGLE_OK_CANCEL);
    _fields.Redraw();
    Form::Handlers handlers;
    handlers.accept = [this] {
        const bool wanted = _check->IsChecked();
        if (wanted != _enabled) Request(wanted);
        return true;
    };
    return _fields.Run(handlers);
}

}  // namespace Tolm

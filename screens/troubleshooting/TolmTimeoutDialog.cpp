#include "screens/troubleshooting/TolmTimeoutDialog.h"

#include <syslog.h>

#include "frame/IdleTimeoutOption.h"
#include "host/Log.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 70;
constexpr int HEIGHT = 14;
constexpr int TITLE_HEIGHT = 9;

}  // namespace

TolmTimeoutDialog::TolmTimeoutDialog(Frame* parent, int seconds)
    : TimeoutDialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT, TextId::SetIdleTimeoutTolmAccess, TextId::TolmTimeoutText)
{
    // The row shows whole minutes; when the host holds seconds that are not
    // whole minutes, any entry is a change.
    AddRow(TextId::TolmIdleTimeout, seconds / 60, seconds % 60 == 0 ? seconds / 60 : -1);
}

void TolmTimeoutDialog::Apply(int, int minutes)
{
    SetTolmTimeout(minutes * 60);
    // From now on, not from the next login.
    Frame::LoadIdleTimeout();
    if (minutes == 0)
        Log::Write(LOG_INFO, "Disabled Tolm timeout");
    else
        Log::Write(LOG_INFO, "Modified Tolm timeout to %d minutes", minutes);
}

}  // namespace Tolm

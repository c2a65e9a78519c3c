#include "screens/troubleshooting/TroubleShootingWindow.h"

#include "catalogue/Footers.h"
#include "exec/Exec.h"
#include "frame/IdleTimeoutOption.h"
#include "frame/Keys.h"
#include "screens/troubleshooting/RestartAgentsDialog.h"
#include "screens/troubleshooting/ShellServices.h"
#include "screens/troubleshooting/ShellTimeoutDialog.h"
#include "screens/troubleshooting/TolmTimeoutDialog.h"

namespace Tolm {

using namespace Troubleshooting;

TroubleShootingWindow::TroubleShootingWindow(Frame* parent) : RootWindow(parent), _menu(*this)
{
    ReadHost();
    const auto help = [this](TextId id) { return [this, id] { return Text(id); }; };
    const auto title = help;
    const auto always = std::function<bool()>();
    const std::function<bool()> bothOff = [this] { return !shellEnabled && !sshEnabled; };

    MenuEntry shell{TextId::EnableTalvoShell,
                    [this] {
                        return StatePane(TextId::ChangeCurrentStateTalvoShell,
                                         shellEnabled ? TextId::TalvoShellEnabled : TextId::TalvoShellDisabled);
                    },
                    always, Fixed(FOOTER_SUBMENU_CHANGE), [this] { return Toggle(TALVO_SHELL, !shellEnabled); },
                    title(TextId::TalvoShell)};
    shell.label = [this] { return Text(shellEnabled ? TextId::DisableTalvoShell : TextId::EnableTalvoShell); };

    MenuEntry ssh{TextId::EnableSSH,
                  [this] {
                      return StatePane(TextId::ChangeCurrentStateSSH,
                                       sshEnabled ? TextId::SSHEnabled : TextId::SSHDisabled);
                  },
                  always, Fixed(FOOTER_SUBMENU_CHANGE), [this] { return Toggle(SSH, !sshEnabled); },
                  title(TextId::SSHSupport)};
    ssh.label = [this] { return Text(sshEnabled ? TextId::DisableSSH : TextId::EnableSSH); };

    // While a shell service runs its timeouts cannot be changed; the row says
    // so by its colour.
    MenuEntry timeouts{TextId::ModifyTalvoShellSSHTimeouts, help(TextId::ModifyShellTimeoutsHelp), bothOff,
                       Fixed(FOOTER_SUBMENU_CHANGE), [this] { return ModifyShellTimeouts(); }};
    timeouts.label = [this, bothOff] {
        const std::string text = Text(TextId::ModifyTalvoShellSSHTimeouts);
        return bothOff() ? text : "{color:dark-grey}" + text + "{/color}";
    };

    _menu.SetEntries(TextId::TroubleshootingModeOptions,
                     {std::move(shell), std::move(ssh), std::move(timeouts),
                      {TextId::ModifyTolmIdleTimeout, help(TextId::ModifyTolmTimeoutHelp), always,
                       Fixed(FOOTER_SUBMENU_CHANGE), [this] { return ModifyTolmTimeout(); }},
                      {TextId::RestartManagementAgents, help(TextId::RestartManagementAgentsHelp), always,
                       Fixed(FOOTER_SUBMENU_RESTART), [this] { return RestartAgents(); }}});
}

TroubleShootingWindow::~TroubleShootingWindow() = default;

void TroubleShootingWindow::ReadHost()
{
    shellEnabled = IsRunning(TALVO_SHELL);
    sshEnabled = IsRunning(SSH);
}

std::string TroubleShootingWindow::StatePane(TextId help, TextId state) const
{
    return Text(help) + "\n\n" + Text(state);
}

int TroubleShootingWindow::Toggle(const ShellService& service, bool on)
{
    Switch(service, on);
    // Show what the host did rather than what was asked: a refused start
    // leaves the service off.
    ReadHost();
    if (&service == &SSH) SetSshRuleset(sshEnabled);
    return 1;
}

int TroubleShootingWindow::ModifyShellTimeouts()
{
    ShellTimeoutDialog dialog(this, ReadOptionMinutes(SHELL_TIMEOUT_VAR),
                              ReadOptionMinutes(SHELL_INTERACTIVE_TIMEOUT_VAR));
    return Frame::Run(&dialog);
}

int TroubleShootingWindow::ModifyTolmTimeout()
{
    TolmTimeoutDialog dialog(this, GetTolmTimeout());
    return Frame::Run(&dialog);
}

int TroubleShootingWindow::RestartAgents()
{
    RestartAgentsDialog dialog(this);
    return Frame::Run(&dialog);
}

void TroubleShootingWindow::WriteFooter() { _menu.WriteFooter(); }

int TroubleShootingWindow::Execute()
{
    _menu.ShowSelection();
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Escape) return 0;
        _menu.HandleKey(key);
    }
}

}  // namespace Tolm

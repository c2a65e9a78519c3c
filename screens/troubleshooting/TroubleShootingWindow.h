#pragma once
// The troubleshooting options: the local shell and SSH, their timeouts and
// the console's own, and the restart of the management agents.
#include <string>

#include "catalogue/TextId.h"
#include "ui/MenuTable.h"
#include "ui/RootWindow.h"

namespace Tolm {

namespace Troubleshooting {
struct ShellService;
}

class TroubleShootingWindow : public RootWindow {
public:
    explicit TroubleShootingWindow(Frame* parent);
    ~TroubleShootingWindow() override;
    // Returns 0 on Esc.
    int Execute() override;
    // Writes the footer of the selected entry.
    virtual void WriteFooter();

    bool shellEnabled = false;
    bool sshEnabled = false;

private:
    // Asks the init scripts whether the shell and SSH run.
    void ReadHost();
    int Toggle(const Troubleshooting::ShellService& service, bool on);
    int ModifyShellTimeouts();
    int ModifyTolmTimeout();
    int RestartAgents();
    std::string StatePane(TextId help, TextId state) const;

    MenuTable _menu;
};

}  // namespace Tolm

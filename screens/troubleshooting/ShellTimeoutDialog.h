#pragma once
// The availability and idle timeouts of the local shell and SSH.
#include "screens/troubleshooting/TimeoutDialog.h"

namespace Tolm {

class ShellTimeoutDialog : public TimeoutDialog {
public:
    // The current timeouts in minutes; negative when not known.
    ShellTimeoutDialog(Frame* parent, int availability, int idle);

private:
    void Apply(int row, int minutes) override;
};

}  // namespace Tolm

#pragma once
// The console's own idle timeout.
#include "screens/troubleshooting/TimeoutDialog.h"

namespace Tolm {

class TolmTimeoutDialog : public TimeoutDialog {
public:
    // The current timeout in seconds.
    TolmTimeoutDialog(Frame* parent, int seconds);

private:
    void Apply(int row, int minutes) override;
};

}  // namespace Tolm

#pragma once
// The System Customization menu.
#include "ui/RootWindow.h"

namespace Tolm {

class GeneralWindow : public RootWindow {
public:
    // passwordSet: the logged-in user's password is not empty.
    GeneralWindow(Frame* parent, bool passwordSet);
    // Returns when the user logs out (Esc).
    int Execute() override;
};

}  // namespace Tolm

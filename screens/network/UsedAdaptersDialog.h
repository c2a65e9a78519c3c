#pragma once
// Asks before adapters that serve other connections are taken from them.
#include <string>
#include <vector>

#include "ui/Dialog.h"

namespace Tolm {

class UsedAdaptersDialog : public Dialog {
public:
    UsedAdaptersDialog(Frame* parent, std::vector<std::string> adapters);
    // Enter gives 1, Esc 0; other keys are ignored.
    int Execute() override;

private:
    std::vector<std::string> _adapters;
};

}  // namespace Tolm

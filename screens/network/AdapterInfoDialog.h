#pragma once
// The details of one network adapter.
#include <string>

#include "ui/Dialog.h"

namespace Tolm {

class AdapterInfoDialog : public Dialog {
public:
    // `usedBy` names the other connections using the adapter; empty when none.
    AdapterInfoDialog(Frame* parent, std::string name, std::string label, std::string mac, std::string status,
                      std::string usedBy);
    // Enter gives 1; Esc closes it as well, with 0.
    int Execute() override;

private:
    std::string _details;
};

}  // namespace Tolm

#pragma once
// Shut down (F2) or restart (F11) the host.
#include <memory>

#include "ui/Dialog.h"

namespace Tolm {

class CheckItem;
class ItemList;

class ShutdownDialog : public Dialog {
public:
    explicit ShutdownDialog(Frame* parent);
    ~ShutdownDialog() override;
    int Execute() override;

private:
    // The check box "Forcefully terminate running VMs".
    std::unique_ptr<CheckItem> _force;
    ItemList* _items = nullptr;
};

}  // namespace Tolm

#pragma once
// Resets the system configuration (F11), then restarts the host on Enter.
#include <memory>

#include "ui/Dialog.h"

namespace Tolm {

class ItemList;
class LabelItem;

class RestoreDialog : public Dialog {
public:
    explicit RestoreDialog(Frame* parent);
    ~RestoreDialog() override;
    // 0 when cancelled or a command cannot be started; after a reset the
    // process ends with the host.
    int Execute() override;

private:
    void ShowLabel(std::string text);

    std::unique_ptr<LabelItem> _label;
    ItemList* _items = nullptr;
};

}  // namespace Tolm

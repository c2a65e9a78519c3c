#pragma once
// Chooses the console keyboard layout.
#include <memory>
#include <string>
#include <vector>

#include "host/TarnCtlSystem.h"
#include "ui/Dialog.h"

namespace Tolm {

class ItemList;
class RadioItem;

class KeyboardDialog : public Dialog {
public:
    explicit KeyboardDialog(Frame* parent);
    ~KeyboardDialog() override;
    // 1 when a layout was applied, 0 on Esc.
    int Execute() override;

private:
    // Space: the row under the cursor becomes the marked one.
    void MarkSelected();
    // Sets and loads the marked layout; false (after a message) when the
    // host refused.
    bool Apply();
    // Puts back the configured layout after its key map failed to load.
    void RestoreLayout(const std::string& previous);

    TarnCtl::System::SystemInfoImpl _systemInfo;
    std::vector<std::string> _layouts;
    std::vector<std::unique_ptr<RadioItem>> _rows;
    int _marked = -1;  // none when the current layout is not in the list
    ItemList* _items = nullptr;
};

}  // namespace Tolm

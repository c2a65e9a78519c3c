#pragma once
// Restarts the host's management agents, optionally taking a live core of
// the host agent first.
#include <memory>
#include <string>

#include "ui/Dialog.h"

namespace Tolm {

class CheckItem;
class ItemList;
class TextArea;

class RestartAgentsDialog : public Dialog {
public:
    explicit RestartAgentsDialog(Frame* parent);
    ~RestartAgentsDialog() override;
    // 1 when the agents were restarted, 0 when cancelled.
    int Execute() override;

    // Body of the live-core thread: host library and syslog only, never the
    // screen. The argument is unused; the result is null.
    static void* GenerateHagentdLiveCore(void*);

private:
    // Starts the detached live-core thread; false when it could not be made.
    static bool StartLiveCore();
    void Append(const std::string& markup);
    void Restart();

    TextArea* _progress = nullptr;
    std::unique_ptr<CheckItem> _collect;
    ItemList* _items = nullptr;
    std::string _text;
};

}  // namespace Tolm

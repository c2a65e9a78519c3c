#pragma once
// A titled message acknowledged with Enter.
#include <string>

#include "ui/Dialog.h"

namespace Tolm {

class MessageDialog : public Dialog {
public:
    static constexpr int WIDTH = 70;
    static constexpr int HEIGHT = 10;
    static constexpr int TITLE_HEIGHT = 7;

    // The message by catalogue number.
    MessageDialog(Frame* parent, TextId titleId, TextId messageId);
    // The message text itself (markup).
    MessageDialog(Frame* parent, TextId titleId, std::string message);

    // Waits for Enter (every other key, Escape included, is ignored);
    // returns 1.
    int Execute() override;

    const std::string& Message() const { return _message; }

private:
    TextId _titleId;
    std::string _message;
};

}  // namespace Tolm

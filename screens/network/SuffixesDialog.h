#pragma once
// The custom DNS search suffixes as one line; split into entries only when
// the change is applied.
#include <string>

#include "ui/Dialog.h"
#include "ui/Form.h"

namespace Tolm {

class InputItem;

class SuffixesDialog : public Dialog {
public:
    SuffixesDialog(Frame* parent, std::string suffixes);
    // 1 after OK, 0 on Esc.
    int Execute() override;
    const std::string& Suffixes() const { return _suffixes; }

private:
    std::string _suffixes;
    Form _form;
    InputItem* _row = nullptr;
};

}  // namespace Tolm

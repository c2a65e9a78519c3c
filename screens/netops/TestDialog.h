#pragma once
// What the network test pings and resolves: three address rows (by default
// the gateway and the DNS servers) and the host name. Enter checks the rows
// and runs the test in RunTestDialog.
#include <array>
#include <string>

#include "ui/Dialog.h"
#include "ui/Form.h"

namespace Tolm {

class InputItem;

class TestDialog : public Dialog {
public:
    explicit TestDialog(Frame* parent);
    // 0 on Esc; 1 after the test ran and was closed.
    int Execute() override;

private:
    static constexpr int ADDRESS_ROWS = 3;

    // The host's gateways and DNS servers, in the order they fill the rows.
    std::array<std::string, ADDRESS_ROWS> DefaultAddresses() const;
    std::string DefaultHostname() const;
    // Refuses the first row that holds no address; true when all are good.
    bool Validate();

    Form _form;
    std::array<InputItem*, ADDRESS_ROWS> _addressRows{};
    InputItem* _hostnameRow = nullptr;
};

}  // namespace Tolm

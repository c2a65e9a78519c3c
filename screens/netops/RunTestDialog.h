#pragma once
// Runs the network test: pings up to three addresses through the management
// interface and resolves a host name through DNS only, each step in a child
// process, and shows "OK." or "Failed." behind each. Esc ends the whole test
// at once; the results stay on screen until Enter.
#include <array>
#include <functional>
#include <memory>
#include <string>

#include "ui/Dialog.h"

namespace HostCtl::Network {
class IpAddress;
}

namespace Tolm {

class StepRunner;
class TextArea;

class RunTestDialog : public Dialog {
public:
    using Address = std::unique_ptr<HostCtl::Network::IpAddress>;
    static constexpr int ROWS = 3;

    // An empty address is a row left empty; an empty host name skips the
    // resolving step.
    RunTestDialog(Frame* parent, std::array<Address, ROWS> addresses, std::string hostname);
    ~RunTestDialog() override;
    // 1 once the user pressed Enter.
    int Execute() override;

private:
    // Each false when Esc ended the test.
    bool Ping(StepRunner& runner, int row, const HostCtl::Network::IpAddress& address);
    bool Resolve(StepRunner& runner);
    // Starts `body` in a child and waits for its end or for Esc.
    bool RunStep(StepRunner& runner, const std::function<int()>& body);
    void Append(const std::string& markup);

    std::array<Address, ROWS> _addresses;
    std::string _hostname;
    std::string _interface;  // the management interface; empty when none
    std::string _progress;
    TextArea* _area = nullptr;
};

}  // namespace Tolm

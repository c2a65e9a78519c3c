#pragma once
// System model types the host library hands out.
#include <string>

namespace HostCtl::System {

struct VirtualMachine {
    std::string name;
    std::string powerState;  // "poweredOn", "poweredOff", "suspended"
    const std::string& GetName() const { return name; }
    bool IsRunning() const { return powerState == "poweredOn"; }
};

}  // namespace HostCtl::System

#pragma once
// The host's power state, so the console can tell that the host it runs on
// is going down. Throws HostCtl::Lib::HostCtlException on failure.
#include <string>

namespace TarnCtl::System {

class PowerInfoImpl {
public:
    // "running", "poweredOff" or "restarting".
    std::string GetPowerState();
    // The host is powering off or restarting.
    bool IsGoingDown();
};

}  // namespace TarnCtl::System

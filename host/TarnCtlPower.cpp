#include "host/TarnCtlPower.h"

#include "host/Backend.h"
#include "host/HostCtlException.h"
#include "host/sim/SimBackend.h"

namespace TarnCtl::System {

std::string PowerInfoImpl::GetPowerState()
{
    Tolm::Host::Backend& backend = Tolm::Host::Use("GetPowerState");
    // The simulated host's power tools only record the new state; a host of
    // its own stops this process, so while we run it is running.
    if (auto* sim = dynamic_cast<Tolm::HostSim::SimBackend*>(&backend)) {
        const nlohmann::json state = sim->File().Read();
        const auto* power = state.contains("power") ? &state["power"] : nullptr;
        if (power && power->is_object() && power->contains("state") && (*power)["state"].is_string())
            return (*power)["state"].get<std::string>();
        return "running";
    }
    return "running";
}

bool PowerInfoImpl::IsGoingDown()
{
    const std::string state = GetPowerState();
    return state == "poweredOff" || state == "restarting";
}

}  // namespace TarnCtl::System

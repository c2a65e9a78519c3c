#include "host/TarnCtlPower.h"

#include "host/Backend.h"

namespace TarnCtl::System {

std::string PowerInfoImpl::GetPowerState()
{
    return Tolm::Host::Use("GetPowerState")->GetPowerState();
}

bool PowerInfoImpl::IsGoingDown()
{
    const std::string state = GetPowerState();
    return state == "poweredOff" || state == "restarting";
}

}  // namespace TarnCtl::System

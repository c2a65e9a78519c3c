#include "screens/system/HostDown.h"

#include <cstdlib>

#include "exec/HostCall.h"
#include "frame/Frame.h"
#include "host/TarnCtlPower.h"

namespace Tolm {

namespace {

bool HostGoingDown()
{
    return HostValue("Getting power state failed:", [] { return TarnCtl::System::PowerInfoImpl().IsGoingDown(); }, false);
}

}  // namespace

void AwaitHostDown(Frame* window)
{
    for (;;) {
        if (HostGoingDown()) std::exit(0);
        Frame::GetKey(window, true);
    }
}

}  // namespace Tolm

#include "screens/system/HostDown.h"

#include <cstdlib>

#include "frame/Frame.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "host/TarnCtlPower.h"

namespace Tolm {

namespace {

bool HostGoingDown()
{
    try {
        return TarnCtl::System::PowerInfoImpl().IsGoingDown();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting power state failed: %s", e.what());
        return false;
    }
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

#pragma once
// What Frame::GetKey needs from the outside world besides curses: the time,
// and one wait for input. Tests replace it to drive dimming and the idle
// timeout without sleeping.
#include <sys/time.h>

namespace Tolm {

class FrameClock {
public:
    virtual ~FrameClock() = default;
    // Current time of day.
    virtual timeval Now();
    // One wait; `limit` null means without limit. Same codes as
    // Frame::WaitForInput, which is what the default does.
    virtual int Wait(const timeval* limit);
};

}  // namespace Tolm

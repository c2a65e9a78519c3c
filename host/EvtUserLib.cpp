#include "host/EvtUserLib.h"

#include "host/Backend.h"
#include "host/HostCtlException.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

// Error codes of the facility.
constexpr int EVT_OK = 0;
constexpr int EVT_NOT_OPEN = 2;
constexpr int EVT_WRITE_FAILED = 3;
constexpr int EVT_HOST_ERROR = 4;
constexpr int EVT_UNAVAILABLE = 5;

std::atomic<bool> gOpen{false};

}  // namespace

int EvtUserLib_Init()
{
    try {
        if (!Tolm::Host::Use("EvtUserLib_Init")->IsEventFacilityAvailable())
            return EVT_UNAVAILABLE;
    } catch (const HostCtl::Lib::HostCtlException&) {
        return EVT_HOST_ERROR;
    }
    gOpen = true;
    return EVT_OK;
}

int EvtUserLib_AddEvt(const char* fmt, ...)
{
    if (!gOpen)
        return EVT_NOT_OPEN;
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    int length = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    std::string record;
    if (length > 0) {
        record.resize(static_cast<size_t>(length) + 1);
        std::vsnprintf(record.data(), record.size(), fmt, args);
        record.resize(static_cast<size_t>(length));
    }
    va_end(args);
    if (length < 0)
        return EVT_WRITE_FAILED;
    // A record is one line.
    for (char& c : record)
        if (c == '\n')
            c = ' ';
    try {
        Tolm::Host::Use("EvtUserLib_AddEvt")->AppendEvent(record);
    } catch (const HostCtl::Lib::HostCtlException&) {
        return EVT_WRITE_FAILED;
    }
    return EVT_OK;
}

void EvtUserLib_Close()
{
    gOpen = false;
}

#pragma once
// One host-library call with the house failure handling: a failure is logged
// at error level as "<prefix> <exception text>" and its text handed on, so
// callers neither write catch blocks nor swallow TolmTimeout by accident
// (only the host library's exception is caught).
//
//     if (auto error = HostCall("Setting hostname failed:", [&] { dns.SetHostname(name); }))
//         ShowError(*error);
//     bool ok = HostValue("Getting DriverVM support failed:", [&] { return info.IsDriverVmSupported(); }, false);
#include <syslog.h>

#include <optional>
#include <string>
#include <utility>

#include "host/HostCtlException.h"
#include "host/Log.h"

namespace Tolm {

// Runs `call`; nothing when it succeeded, else the exception text (logged).
template <class Call>
std::optional<std::string> HostCall(const char* prefix, Call&& call)
{
    try {
        std::forward<Call>(call)();
        return std::nullopt;
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "%s %s", prefix, e.what());
        return std::string(e.what());
    }
}

// What `call` returns, or `fallback` when it failed (logged as above).
template <class Call, class T>
T HostValue(const char* prefix, Call&& call, T fallback)
{
    T value = std::move(fallback);
    HostCall(prefix, [&] { value = std::forward<Call>(call)(); });
    return value;
}

}  // namespace Tolm

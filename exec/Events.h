#pragma once
// Audit events the console raises through the host's event facility. Each
// record is "@&!*@*@(" + identifier + ")" + message, where the message may hold
// printf placeholders whose values are passed to RaiseEvent.
#include "host/EvtUserLib.h"

#include <string>
#include <type_traits>

namespace Tolm {

struct Event {
    const char* id;
    const char* message;
};

namespace Events {

// %s: the user name that was tried.
inline constexpr Event LoginFailed{"evt.user.tolm.login.failed",
                                   "Authentication for user %s failed"};
// %s: the logged-in user.
inline constexpr Event PasswordChanged{"evt.user.tolm.login.passwd.changed",
                                       "Login password for user %s changed"};
inline constexpr Event ShutdownHost{"evt.user.tolm.shutdown.host", "Shutting down host"};
inline constexpr Event RebootHost{"evt.user.tolm.reboot.host", "Rebooting host"};
inline constexpr Event RestoreFactoryDefaults{"evt.user.tolm.restore.factory.defaults",
                                              "Restoring factory defaults"};
// %s: the management interface name.
inline constexpr Event NetworkRestart{"evt.user.tolm.network.restart", "Restarting %s"};
inline constexpr Event FactoryNetworkRestored{"evt.user.tolm.factory.network.restored",
                                              "Restoring factory network settings"};
inline constexpr Event RestartingHostAgents{"evt.user.tolm.restarting.hostagents",
                                            "Restarting host agents"};

inline constexpr Event All[] = {LoginFailed,    PasswordChanged,        ShutdownHost,
                                RebootHost,     RestoreFactoryDefaults, NetworkRestart,
                                FactoryNetworkRestored, RestartingHostAgents};

}  // namespace Events

// "@&!*@*@(" + id + ")" + message.
std::string EventRecord(const Event& event);

// Logs "Initializing evtuser library", opens the facility; 0 when ready,
// otherwise the facility's error code (also logged).
int InitEventLibrary();

// Opens the facility, adds the record with `args` for its placeholders and
// closes it again. When the facility cannot be opened the event is dropped
// (nothing added, nothing closed) and false is returned; callers go on with
// their action either way. Pass C strings and numbers only.
template <typename... Args>
bool RaiseEvent(const Event& event, Args... args)
{
    static_assert(((std::is_arithmetic_v<Args> || std::is_same_v<Args, const char*> ||
                    std::is_same_v<Args, char*>) && ...),
                  "event arguments go through printf varargs: pass C strings or numbers");
    const std::string record = EventRecord(event);
    if (InitEventLibrary() != 0)
        return false;
    // The record is the format, its placeholders filled by the facility.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    EvtUserLib_AddEvt(record.c_str(), args...);
#pragma GCC diagnostic pop
    EvtUserLib_Close();
    return true;
}

}  // namespace Tolm

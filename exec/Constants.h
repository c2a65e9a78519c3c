#pragma once
// Names the console shares across layers: its own account, its PAM service and
// the advanced option that holds its idle timeout.

namespace Tolm {

// The console's own account; orla-cmd queries run as this user, and a command
// the logged-in user may not run is retried as this user.
inline constexpr const char* TOLM_USER = "tolm";

// PAM service name used by the login and password dialogs.
inline constexpr const char* TOLM_APP = "tolm";

// Host advanced option with the idle timeout in seconds.
inline constexpr const char* TOLM_TIMEOUT_VAR = "/UserVars/TolmTimeOut";

}  // namespace Tolm

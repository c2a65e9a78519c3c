#pragma once
// The host option that holds Tolm's own idle timeout, in seconds.

namespace Tolm {

// Seconds of idle time before a session ends when the option says nothing usable.
inline constexpr int DEFAULT_TOLM_TIMEOUT = 600;

// The value of TOLM_TIMEOUT_VAR; DEFAULT_TOLM_TIMEOUT when the option is
// missing, is not an integer option, or the host library fails.
int GetTolmTimeout();
// Sets TOLM_TIMEOUT_VAR when it is an integer option; otherwise, or when the
// host refuses, nothing changes and nothing is reported.
void SetTolmTimeout(int seconds);

}  // namespace Tolm

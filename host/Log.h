#pragma once
// The one logging module. Lines go to syslog; under a simulated host root the
// same lines are also appended to <root>/var/log/syslog.log as
//   "2026-11-21T10:00:00 user.info Tolm[1234]: Starting Tolm"
// so tests and the console's own log viewer can read them.
#include <syslog.h>

namespace Tolm::Log {

// openlog with the given identity, no options, facility user.
void Open(const char* ident = "Tolm");

// printf-style; `priority` is a level optionally or'ed with a facility
// (LOG_AUTH | LOG_NOTICE). "%m" expands to the text of errno, as in syslog.
void Write(int priority, const char* fmt, ...) __attribute__((format(printf, 2, 3)));

// Error level: "<what> with errno(<n>): <text>" for a failed system call.
void Errno(const char* what);

}  // namespace Tolm::Log

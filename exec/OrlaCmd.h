#pragma once
// Wrappers around the host's management command tool "/bin/orla-cmd" and the
// routine that stops the virtual machines before the host goes down.
#include <string>

namespace Tolm {

// Like RunCommand without a time limit. `argv` has the shape
// "orla-cmd", "-U", user, command, further arguments..., null. When the tool
// exits with 255 (the user may not run the command) it is run exactly once
// more as TOLM_USER. For that retry every length that is given is reset to
// 256, whatever its capacity was, so callers passing a length must pass a
// buffer of at least 256 bytes.
int RunOrlaCmd(const char* path, const char* const* argv, char* out, unsigned int* outLength,
               char* err, unsigned int* errLength, const char* input, unsigned int inputLength);

// Runs one "true"/other query as TOLM_USER with a limit of 120 seconds. True
// exactly when the output starts with "true"; the exit status only gets logged.
bool OrlaCmdGetBool(const std::string& command);

// Asks the management agent to reload its view of the host, as the logged-in
// user. The result is ignored.
void RefreshInternalServices();

// Stops the auto-started virtual machines, then powers off the rest
// ("--terminate" unless `noTerminate`). Results are ignored.
void PowerOffVms(bool noTerminate);

}  // namespace Tolm

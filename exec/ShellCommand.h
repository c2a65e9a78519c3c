#pragma once
#include <string>

namespace Tolm {

// Runs `program` with the argument text `args` through the system shell
// ("/bin/sh -c"), as the host's shutdown, reboot and reset steps do. An
// absolute `program` is a host path and is resolved inside the host root;
// a bare name ("poweroff") is found through PATH. Returns what system()
// returns: -1 when no shell could be started, the wait status otherwise.
int RunShellCommand(const std::string& program, const std::string& args = "");

}  // namespace Tolm

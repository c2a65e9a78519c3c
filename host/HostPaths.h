#pragma once
// Every absolute host path goes through here, so the console can run against
// a simulated host root (TOLM_ROOT) as well as against the real "/".
#include <string>
#include <string_view>

namespace Tolm::HostPath {

// The host root: $TOLM_ROOT, or "/" when unset or empty. Read on every call,
// so tests may change the environment.
std::string Root();

// True when the root is not "/" (a simulated host).
bool IsSimulated();

// The absolute path `path` (e.g. "/var/run/tolm.pid") inside the host root.
// Relative paths are returned unchanged.
std::string Resolve(std::string_view path);

// A program that runs a script named by its first argument ("/bin/sh
// /sbin/services.sh stop"): that argument is a host path as well.
bool RunsScript(std::string_view program);

}  // namespace Tolm::HostPath

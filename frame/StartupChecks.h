#pragma once
// The start-up decisions that need no terminal: which virtual terminal the
// command line names, and whether the pid file belongs to a running console.
#include <optional>
#include <string>

namespace Tolm {
namespace Startup {

// The virtual terminal named by the first argument: a decimal 1 to 63. Empty
// for anything else (the caller logs it).
std::optional<int> ParseVt(const char* arg);

// Whether the pid file at `path` names a running process; the file is then
// left alone. Anything unreadable, non-positive or dead does not count.
bool PidFileNamesLiveProcess(const std::string& path);

// The single-instance step on the file at `path`: log (naming `shownPath`)
// and skip when it names a live process, otherwise write our own pid.
// Returns true when the file was written.
bool ClaimPidFile(const std::string& path, const char* shownPath);

}  // namespace Startup
}  // namespace Tolm

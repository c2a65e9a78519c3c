#pragma once
// Process start-up and orderly exit of the console. main() only supplies the
// status screen.
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Tolm {

class Frame;

// Prepare the process and the terminal, claim the pid file, start curses,
// run the screen `makeStatusScreen` builds with Frame::Run, then restore the
// terminal. Returns the process exit status (0); some paths exit directly.
int RunConsole(int argc, char** argv,
               const std::function<std::unique_ptr<Frame>()>& makeStatusScreen);

namespace Startup {

// The virtual terminal named by the first argument: a decimal 1 to 63. Empty
// for anything else (the caller logs it).
std::optional<int> ParseVt(const char* arg);

// Whether the pid file at `path` names a running process; the file is then
// left alone. Anything unreadable, non-positive or dead does not count.
bool PidFileNamesLiveProcess(const std::string& path);

// The single-instance step: log and skip when the file names a live process,
// otherwise write our own pid. Returns true when the file was written.
bool ClaimPidFile(const std::string& path);

}  // namespace Startup
}  // namespace Tolm

#pragma once
// Process start-up and orderly exit of the console. main() only supplies the
// status screen.
#include <functional>
#include <memory>

namespace Tolm {

class Frame;

// Prepare the process and the terminal, claim the pid file, start curses,
// run the screen `makeStatusScreen` builds with Frame::Run, then restore the
// terminal. Returns the process exit status: 0, or 1 when no host backend
// can run; some paths exit directly.
int RunConsole(int argc, char** argv,
               const std::function<std::unique_ptr<Frame>()>& makeStatusScreen);

}  // namespace Tolm

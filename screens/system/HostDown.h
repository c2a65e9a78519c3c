#pragma once
// What a dialog does once the command that stops the host has started:
// the host takes the console down with it, so the dialog only keeps
// reading keys until then.

namespace Tolm {

class Frame;

// Never returns. Ends the process with status 0 as soon as the host reports
// that it is powering off or restarting (on a real host the console is
// stopped first); until then every key is read and ignored.
[[noreturn]] void AwaitHostDown(Frame* window);

}  // namespace Tolm

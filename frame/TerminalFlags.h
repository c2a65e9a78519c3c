#pragma once
// The process-wide terminal flags, without curses, for every layer above.
#include <termios.h>

namespace Tolm {

// True unless TERM is exactly "linux" or "xterm".
extern bool runningOverSerial;
// Render without colour pairs: dark backgrounds become standout.
extern bool bwColor;
// Attributes of standard output as found at start.
extern struct termios orig_termios;

}  // namespace Tolm

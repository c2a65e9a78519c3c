#pragma once
#include <string>

namespace Tolm::E2E {

// Keys by name; Console::Press turns them into the bytes a terminal sends.
enum class Key {
    F1, F2, F3, F4, F5, F6, F7, F8, F9, F10, F11, F12,
    Up, Down, Left, Right,
    Home, End, PageUp, PageDown, Insert, Delete,
    Enter, Backspace, Tab, Esc,
};

// xterm: F1-F4 as ESC O P..S, F5 on as ESC [15~ ...; the Linux console: F1-F5
// as ESC [[A..E, cursor keys always ESC [A.
enum class KeyFlavour { Xterm, Linux };

// The bytes `flavour` sends for `key`; xterm's cursor keys follow the
// application cursor mode (curses sets it when it enables the keypad).
std::string KeySequence(Key key, KeyFlavour flavour = KeyFlavour::Xterm, bool applicationCursor = false);

// The ESC-plus-character form of a serial terminal without function keys (ESC
// "2" for F2, ESC "0" for F10, ESC "h" for Home ...); other keys as KeySequence.
std::string SerialKeySequence(Key key);

}  // namespace Tolm::E2E

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

// Which terminal's byte sequences to produce.
enum class KeyFlavour {
    Xterm,  // xterm: F1-F4 as ESC O P..S, F5 on as ESC [15~ ...
    Linux,  // Linux console: F1-F5 as ESC [[A..E, cursor keys always ESC [A
};

// The bytes `flavour` sends for `key`. Cursor keys, Home and End depend on
// whether the program switched the terminal to application cursor mode
// (curses does when it enables the keypad).
std::string KeySequence(Key key, KeyFlavour flavour = KeyFlavour::Xterm, bool applicationCursor = false);

// The two-byte ESC-plus-character form a serial terminal without function
// keys uses (ESC "2" for F2, ESC "0" for F10, ESC "h" for Home ...). Keys
// without such a form (arrows, Enter ...) fall back to KeySequence.
std::string SerialKeySequence(Key key);

// "F2", "Enter" ... for failure messages.
const char* KeyName(Key key);

}  // namespace Tolm::E2E

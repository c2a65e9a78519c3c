#include "harness/Keys.h"

namespace Tolm::E2E {

std::string KeySequence(Key key, KeyFlavour flavour, bool applicationCursor)
{
    static const char* const xtermF[] = {"\x1bOP",   "\x1bOQ",   "\x1bOR",   "\x1bOS",   "\x1b[15~", "\x1b[17~",
                                         "\x1b[18~", "\x1b[19~", "\x1b[20~", "\x1b[21~", "\x1b[23~", "\x1b[24~"};
    static const char* const linuxF[] = {"\x1b[[A", "\x1b[[B", "\x1b[[C", "\x1b[[D", "\x1b[[E"};  // F6 on as xterm
    const bool linux = flavour == KeyFlavour::Linux;
    const int f = static_cast<int>(key) - static_cast<int>(Key::F1);
    if (key <= Key::F12)
        return linux && f < 5 ? linuxF[f] : xtermF[f];
    // xterm switches cursor keys from CSI to SS3 in application cursor mode;
    // the Linux console does not.
    const std::string cursor = !linux && applicationCursor ? "\x1bO" : "\x1b[";
    switch (key) {
    case Key::Up: return cursor + 'A';
    case Key::Down: return cursor + 'B';
    case Key::Right: return cursor + 'C';
    case Key::Left: return cursor + 'D';
    case Key::Home: return linux ? "\x1b[1~" : cursor + 'H';
    case Key::End: return linux ? "\x1b[4~" : cursor + 'F';
    case Key::Insert: return "\x1b[2~";
    case Key::Delete: return "\x1b[3~";
    case Key::PageUp: return "\x1b[5~";
    case Key::PageDown: return "\x1b[6~";
    case Key::Enter: return "\r";
    case Key::Backspace: return "\x7f";
    case Key::Tab: return "\t";
    default: return "\x1b";
    }
}

std::string SerialKeySequence(Key key)
{
    // F1..F12, then Home, End, PageUp, PageDown, Insert, Delete.
    static const char forms[] = "1234567890!@hk?/+-";
    const int at = static_cast<int>(key);
    if (key <= Key::F12)
        return std::string("\x1b") + forms[at];
    if (key >= Key::Home && key <= Key::Delete)
        return std::string("\x1b") + forms[12 + at - static_cast<int>(Key::Home)];
    return KeySequence(key);
}

}  // namespace Tolm::E2E

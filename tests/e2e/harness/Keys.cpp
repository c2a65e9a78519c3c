#include "harness/Keys.h"

namespace Tolm::E2E {

namespace {

const char* FunctionKeyXterm(Key key)
{
    switch (key) {
    case Key::F1: return "\x1bOP";
    case Key::F2: return "\x1bOQ";
    case Key::F3: return "\x1bOR";
    case Key::F4: return "\x1bOS";
    case Key::F5: return "\x1b[15~";
    case Key::F6: return "\x1b[17~";
    case Key::F7: return "\x1b[18~";
    case Key::F8: return "\x1b[19~";
    case Key::F9: return "\x1b[20~";
    case Key::F10: return "\x1b[21~";
    case Key::F11: return "\x1b[23~";
    case Key::F12: return "\x1b[24~";
    default: return nullptr;
    }
}

const char* FunctionKeyLinux(Key key)
{
    switch (key) {
    case Key::F1: return "\x1b[[A";
    case Key::F2: return "\x1b[[B";
    case Key::F3: return "\x1b[[C";
    case Key::F4: return "\x1b[[D";
    case Key::F5: return "\x1b[[E";
    default: return FunctionKeyXterm(key);  // F6 on are the same
    }
}

}  // namespace

std::string KeySequence(Key key, KeyFlavour flavour, bool applicationCursor)
{
    const char* fn = flavour == KeyFlavour::Linux ? FunctionKeyLinux(key) : FunctionKeyXterm(key);
    if (fn)
        return fn;

    // The Linux console sends cursor keys the same way in either mode; xterm
    // switches from CSI to SS3 in application cursor mode.
    const bool ss3 = flavour == KeyFlavour::Xterm && applicationCursor;
    auto cursor = [ss3](char c) { return std::string(ss3 ? "\x1bO" : "\x1b[") + c; };
    switch (key) {
    case Key::Up: return cursor('A');
    case Key::Down: return cursor('B');
    case Key::Right: return cursor('C');
    case Key::Left: return cursor('D');
    case Key::Home: return flavour == KeyFlavour::Linux ? "\x1b[1~" : cursor('H');
    case Key::End: return flavour == KeyFlavour::Linux ? "\x1b[4~" : cursor('F');
    case Key::Insert: return "\x1b[2~";
    case Key::Delete: return "\x1b[3~";
    case Key::PageUp: return "\x1b[5~";
    case Key::PageDown: return "\x1b[6~";
    case Key::Enter: return "\r";
    case Key::Backspace: return "\x7f";
    case Key::Tab: return "\t";
    case Key::Esc: return "\x1b";
    default: return "";
    }
}

std::string SerialKeySequence(Key key)
{
    auto esc = [](char c) { return std::string("\x1b") + c; };
    switch (key) {
    case Key::F1: return esc('1');
    case Key::F2: return esc('2');
    case Key::F3: return esc('3');
    case Key::F4: return esc('4');
    case Key::F5: return esc('5');
    case Key::F6: return esc('6');
    case Key::F7: return esc('7');
    case Key::F8: return esc('8');
    case Key::F9: return esc('9');
    case Key::F10: return esc('0');
    case Key::F11: return esc('!');
    case Key::F12: return esc('@');
    case Key::Home: return esc('h');
    case Key::End: return esc('k');
    case Key::Insert: return esc('+');
    case Key::Delete: return esc('-');
    case Key::PageUp: return esc('?');
    case Key::PageDown: return esc('/');
    default: return KeySequence(key);
    }
}

const char* KeyName(Key key)
{
    static const char* const names[] = {
        "F1", "F2", "F3", "F4", "F5", "F6", "F7", "F8", "F9", "F10", "F11", "F12",
        "Up", "Down", "Left", "Right",
        "Home", "End", "PageUp", "PageDown", "Insert", "Delete",
        "Enter", "Backspace", "Tab", "Esc",
    };
    return names[static_cast<int>(key)];
}

}  // namespace Tolm::E2E

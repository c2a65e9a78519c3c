#include "ui/KeyFilter.h"

#include <cctype>

#include "frame/Keys.h"

namespace Tolm::KeyFilters {

namespace {
constexpr int CTRL_H = 8;
bool IsAscii(int key) { return key >= 32 && key < 127; }
bool Hex(int key) { return IsAscii(key) && std::isxdigit(key); }
bool Alnum(int key) { return IsAscii(key) && std::isalnum(key); }
}  // namespace

bool IsEditKey(int key)
{
    switch (key) {
    case Key::Delete:
    case Key::Backspace:
    case CTRL_H:
    case Key::Left:
    case Key::Right:
    case Key::Home:
    case Key::End:
        return true;
    default:
        return false;
    }
}

bool Printable(int key) { return IsAscii(key); }
bool Digits(int key) { return key >= '0' && key <= '9'; }
bool Ipv4(int key) { return Digits(key) || key == '.'; }
bool Ipv6(int key) { return Alnum(key) || key == ':' || key == '/' || key == '%'; }
bool IpAddress(int key) { return Hex(key) || key == ':' || key == '.'; }
bool Hostname(int key) { return Alnum(key) || key == '-' || key == '.'; }
bool DomainList(int key) { return Alnum(key) || key == '.' || key == ' ' || key == ',' || key == '-'; }

KeyFilter Chars(bool (*chars)(int key), bool end)
{
    return [chars, end](int key) {
        if (key == Key::End) return end;
        return IsEditKey(key) || chars(key);
    };
}

}  // namespace Tolm::KeyFilters

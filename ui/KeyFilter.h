#pragma once
// Which keys an input field takes. A filter sees every key the form would
// hand to the field (printable characters and the editing keys), so a
// dialog can refuse an editing key as well as a character.
#include <functional>

namespace Tolm {

using KeyFilter = std::function<bool(int key)>;

namespace KeyFilters {

// Delete, Backspace (also Ctrl-H), Left, Right, Home, End.
bool IsEditKey(int key);

// Every printable character.
bool Printable(int key);
// "0" to "9".
bool Digits(int key);
// Digits and ".".
bool Ipv4(int key);
// Hexadecimal digits, letters, ":", "/", "%" (addresses with a prefix
// length and an interface suffix).
bool Ipv6(int key);
// Hexadecimal digits, ":" and "." (an IPv4 or IPv6 server address).
bool IpAddress(int key);
// Letters, digits, "-" and ".".
bool Hostname(int key);
// Letters, digits, ".", " ", "," and "-" (a list of domain names).
bool DomainList(int key);

// A filter taking the editing keys and the characters `chars` accepts; with
// `end` false the End key is refused too.
KeyFilter Chars(bool (*chars)(int key), bool end = true);

}  // namespace KeyFilters

}  // namespace Tolm

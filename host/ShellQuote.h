#pragma once
#include <string>
#include <string_view>

namespace Tolm {

// `word` as one word of a /bin/sh command line, whatever it holds.
std::string ShellQuote(std::string_view word);

}  // namespace Tolm

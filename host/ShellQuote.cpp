#include "host/ShellQuote.h"

namespace Tolm {

std::string ShellQuote(std::string_view word)
{
    std::string out = "'";
    for (char c : word) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    return out + "'";
}

}  // namespace Tolm

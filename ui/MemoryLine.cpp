#include "ui/MemoryLine.h"

namespace Tolm {

std::string FormatMemorySize(std::uint64_t bytes)
{
    static constexpr struct {
        int shift;
        char letter;
    } units[] = {{20, 'M'}, {30, 'G'}, {40, 'T'}, {50, 'P'}};
    // The largest unit also takes anything beyond its range.
    const auto* unit = &units[3];
    for (const auto& u : units) {
        if (bytes < (std::uint64_t{1} << (u.shift + 10))) {
            unit = &u;
            break;
        }
    }
    // Tenths of the unit, rounded to the nearest; 128 bits so that ten times
    // the size cannot overflow.
    const unsigned __int128 divisor = static_cast<unsigned __int128>(1) << unit->shift;
    const auto tenths =
        static_cast<std::uint64_t>((static_cast<unsigned __int128>(bytes) * 10 + divisor / 2) / divisor);
    std::string text = std::to_string(tenths / 10);
    if (tenths % 10 != 0) {
        // Appended in two steps: GCC 12 at -O3 sees a false overlap in
        // "." + std::string and fails the build under -Werror.
        text += '.';
        text += std::to_string(tenths % 10);
    }
    return text + " " + unit->letter + "iB";
}

std::string FormatMemoryLine(std::uint64_t bytes)
{
    return FormatMemorySize(bytes) + " Memory";
}

}  // namespace Tolm

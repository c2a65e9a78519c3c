#pragma once
// How the console states an amount of memory: binary units, at most one
// decimal, none when the tenth is zero ("16 GiB", "15.9 GiB").
#include <cstdint>
#include <string>

namespace Tolm {

// "16 GiB" for 16 * 2^30 bytes; units M, G, T, P by size.
std::string FormatMemorySize(std::uint64_t bytes);

// The status screen's memory line: "16 GiB Memory".
std::string FormatMemoryLine(std::uint64_t bytes);

}  // namespace Tolm

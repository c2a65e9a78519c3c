#pragma once
// The pages of support information the menu shows one at a time.
#include <string>
#include <vector>

namespace Tolm {

// Reads `file` (a path on this machine): "#" lines are notes, a "$" line
// ends a page, every other line (an empty one too) joins the current page
// with a line feed. Always at least one page; a missing file gives one
// empty page.
std::vector<std::string> ReadSupportPages(const std::string& file);

}  // namespace Tolm

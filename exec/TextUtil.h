#pragma once
#include <string>
#include <string_view>

namespace Tolm {

// Texts read from the host may carry padding and line breaks: trims leading
// and trailing white space and turns every inner run of it into one blank.
std::string CollapseWhitespace(std::string_view text);

}  // namespace Tolm

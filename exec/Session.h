#pragma once
// The one piece of session state the host-tool wrappers need: who is logged
// in. The frame owns the session and calls SetLoginName whenever its own login
// name changes; exec cannot see the frame, so it keeps this copy.
#include <string>

namespace Tolm::Exec {

void SetLoginName(std::string name);

// Empty while nobody is logged in.
const std::string& LoginName();

}  // namespace Tolm::Exec

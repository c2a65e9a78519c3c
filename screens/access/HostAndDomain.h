#pragma once
// The host's full name as the access dialogs show it in their prompts.
#include <string>

namespace Tolm {

// "host.domain" of the default network stack; a part whose query fails is
// left empty (and logged).
std::string HostAndDomain();

}  // namespace Tolm

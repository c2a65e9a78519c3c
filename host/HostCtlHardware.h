#pragma once
// Hardware model types the host library hands out.
#include <optional>
#include <string>
#include <vector>

namespace HostCtl::Hardware {

struct SmartCardToken {
    std::string label;
    std::vector<std::string> userIds;  // may hold empty strings
    const std::string& GetLabel() const { return label; }
    std::vector<std::string> GetUserIds() const { return userIds; }
};

struct SmartCardSlot {
    std::string name;
    std::optional<SmartCardToken> token;  // none while the slot is empty
    const std::string& GetName() const { return name; }
    std::optional<SmartCardToken> GetToken() const { return token; }
};

}  // namespace HostCtl::Hardware

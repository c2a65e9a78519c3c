#include "exec/Session.h"

#include <utility>

namespace Tolm::Exec {
namespace {

// Touched only by the user-interface thread.
std::string& Storage()
{
    static std::string name;
    return name;
}

}  // namespace

void SetLoginName(std::string name)
{
    Storage() = std::move(name);
}

const std::string& LoginName()
{
    return Storage();
}

}  // namespace Tolm::Exec

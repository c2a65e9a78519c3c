#include "host/HostPaths.h"

#include <cstdlib>

namespace Tolm::HostPath {

std::string Root()
{
    const char* root = std::getenv("TOLM_ROOT");
    if (root == nullptr || *root == '\0')
        return "/";
    std::string r(root);
    while (r.size() > 1 && r.back() == '/')
        r.pop_back();
    return r;
}

bool IsSimulated()
{
    return Root() != "/";
}

std::string Resolve(std::string_view path)
{
    if (path.empty() || path.front() != '/')
        return std::string(path);
    std::string root = Root();
    if (root == "/")
        return std::string(path);
    return root + std::string(path);
}

bool RunsScript(std::string_view program)
{
    return program.ends_with("/sh");
}

}  // namespace Tolm::HostPath

// The system's resolver, for backends of a real host.
#include "host/Backend.h"

#include <netdb.h>
#include <sys/socket.h>

namespace Tolm::Host {

int Backend::ResolveHostname(const std::string& name)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* result = nullptr;
    int rc = ::getaddrinfo(name.c_str(), nullptr, &hints, &result);
    if (result != nullptr)
        ::freeaddrinfo(result);
    return rc;
}

}  // namespace Tolm::Host

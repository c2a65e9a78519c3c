#include "screens/access/HostAndDomain.h"

#include "exec/HostCall.h"
#include "host/TarnCtlNetwork.h"
#include "ui/Markup.h"

namespace Tolm {

std::string HostAndDomain()
{
    TarnCtl::Network::DnsConfigImpl dns(TarnCtl::Network::DEFAULT_TCPIP_STACK);
    const std::string host = HostValue("Getting hostname failed:", [&] { return dns.GetHostname(); }, std::string());
    const std::string domain = HostValue("Getting domain failed:", [&] { return dns.GetDomain(); }, std::string());
    // Shown inside dialog texts: the host's name is not markup.
    return Markup::Literal(host + "." + domain);
}

}  // namespace Tolm

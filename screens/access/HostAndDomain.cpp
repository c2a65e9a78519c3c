#include "screens/access/HostAndDomain.h"

#include "host/HostCtlException.h"
#include "host/Log.h"
#include "host/TarnCtlNetwork.h"

namespace Tolm {

std::string HostAndDomain()
{
    TarnCtl::Network::DnsConfigImpl dns(TarnCtl::Network::DEFAULT_TCPIP_STACK);
    std::string host, domain;
    try {
        host = dns.GetHostname();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting hostname failed: %s", e.what());
    }
    try {
        domain = dns.GetDomain();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting domain failed: %s", e.what());
    }
    return host + "." + domain;
}

}  // namespace Tolm

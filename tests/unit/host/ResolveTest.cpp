// Name lookups on the simulated host follow its hosts file and its DNS model,
// never the machine's resolver.
#include <netdb.h>

#include <fstream>

#include "HostRoot.h"
#include "host/TarnCtlNetwork.h"

namespace Tolm::Test {
namespace {

int Resolve(const std::string& name)
{
    return TarnCtl::Network::DnsConfigImpl().ResolveHostname(name);
}

TEST(SimResolve, HostsFileFirstThenTheDnsServersTheModelGives)
{
    HostRoot host;
    std::filesystem::create_directories(host.Root() + "/etc");
    std::ofstream(host.Root() + "/etc/hosts") << "# local\n192.168.10.77  onlyhosts.lab.example.com onlyhosts\n";

    EXPECT_EQ(Resolve("ONLYHOSTS.lab.example.com."), 0);
    EXPECT_EQ(Resolve("tarnhost01.lab.example.com"), 0);
    // A short name is tried with the search domains.
    EXPECT_EQ(Resolve("vcenter"), 0);
    EXPECT_EQ(Resolve("nowhere.lab.example.com"), EAI_NONAME);
    // Names the machine itself knows mean nothing to the host.
    EXPECT_EQ(Resolve("localhost"), EAI_NONAME);

    std::filesystem::remove(host.Root() + "/etc/hosts");
    EXPECT_EQ(Resolve("onlyhosts.lab.example.com"), EAI_NONAME);

    // Only the first server answers: still resolved. None: no answer at all,
    // and a stopped interface reaches none either.
    host.Set("/network/reachableAddresses", {"192.168.10.3"});
    EXPECT_EQ(Resolve("tarnhost01.lab.example.com"), 0);
    host.Set("/network/reachableAddresses", nlohmann::json::array());
    EXPECT_EQ(Resolve("tarnhost01.lab.example.com"), EAI_AGAIN);
    host.Set("/network/reachableAddresses", {"192.168.10.2"});
    TarnCtl::Network::NetworkInfoImpl().GetManagementInterface()->Stop();
    EXPECT_EQ(Resolve("tarnhost01.lab.example.com"), EAI_AGAIN);
}

}  // namespace
}  // namespace Tolm::Test

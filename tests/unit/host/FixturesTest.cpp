// Every fixture is a whole host the library can read, with the fact it
// exists to show.
#include "HostRoot.h"

#include "host/HostCtlException.h"
#include "host/TarnCtl.h"

namespace Tolm::Test {
namespace {

using namespace TarnCtl::Network;

TEST(Fixtures, EachFixtureShowsItsCase)
{
    {
        HostRoot root("dhcp-fail");
        NetworkInfoImpl info;
        info.UpdateManagementInterface();
        auto nic = info.GetManagementInterface();
        ASSERT_TRUE(nic);
        EXPECT_TRUE(nic->GetIpConfig().GetUseDhcp());
        EXPECT_EQ(0u, nic->GetIpConfig().GetIpv4Address().GetBinaryAddress());
        EXPECT_TRUE(nic->IsDhcpLookupFailed());
    }
    {
        HostRoot root("no-adapter");
        EXPECT_EQ(std::vector<std::string>{"No compatible network adapter found."},
                  TarnCtl::System::SystemInfoImpl().GetSystemAlerts());
    }
    {
        HostRoot root("typical");
        EXPECT_EQ(4u, NetworkInfoImpl().GetPnics().size());
        EXPECT_EQ(uint64_t{128} << 30, TarnCtl::Hardware::MemoryInfoImpl().GetTotalPages() *
                                         TarnCtl::Hardware::MemoryInfoImpl().GetPageSize());
        EXPECT_NE("localhost", DnsConfigImpl().GetHostname());
        int32_t boot = -1;
        EXPECT_EQ(0, TarnCtl::Util::Qsi_Get(TarnCtl::Util::QSI_NODE_system_bootOption, &boot, sizeof boot));
        EXPECT_EQ(0, boot);
    }
}

TEST(ManagementInterface, FollowsTheTaggedInterfaceWhenItsNameIsGone)
{
    HostRoot root;
    root.State().Update([](nlohmann::json& s) {
        auto nic = s["network"]["kernelNics"][0];
        nic["name"] = "tarn1";
        s["network"]["kernelNics"].push_back(nic);
        s["network"]["kernelNics"][0]["management"] = false;
        s["network"]["managementInterface"] = "tarn7";
    });
    NetworkInfoImpl info;
    EXPECT_FALSE(info.GetManagementInterface());  // names a missing interface
    info.UpdateManagementInterface();
    auto nic = info.GetManagementInterface();
    ASSERT_TRUE(nic);
    EXPECT_EQ("tarn1", nic->GetName());

    root.Set("/network/kernelNics", nlohmann::json::array());
    info.UpdateManagementInterface();
    EXPECT_FALSE(info.GetManagementInterface());
    EXPECT_THROW(nic->Refresh(), HostCtl::Lib::HostCtlException);
}

}  // namespace
}  // namespace Tolm::Test

// Writing a confirmed management network configuration to the simulated host.
#include <gtest/gtest.h>

#include <fstream>

#include "../host/HostRoot.h"
#include "host/TarnCtlNetwork.h"
#include "screens/network/NetworkApply.h"

namespace Tolm {
namespace {

using namespace HostCtl::Network;
using nlohmann::json;
using Tolm::Test::HostRoot;

// The pending configuration as the screen reads it from the typical host.
PendingNetwork Typical()
{
    PendingNetwork p;
    p._adapters = {"hwnic0", "hwnic1"};
    p._ipConfig.SetIpv4Address(Ipv4Address("192.168.10.21"));
    p._ipConfig.SetIpv4Netmask(Ipv4Address("255.255.255.0"));
    p._ipConfig.SetIpv4Gateway(Ipv4Address("192.168.10.1"));
    p._hostname = "tarnhost01.lab.example.com";
    p._primaryDns = std::make_unique<Ipv4Address>("192.168.10.2");
    p._alternateDns = std::make_unique<Ipv4Address>("192.168.10.3");
    p._suffixes = "lab.example.com, example.com";
    return p;
}

struct Applied {
    std::vector<std::string> boxes;
    std::string log;
};

Applied Apply(const HostRoot& root, const PendingNetwork& pending)
{
    Applied out;
    NetworkApply(pending, TarnNic("tarn0"), [&](const std::string& text) { out.boxes.push_back(text); })
        .WriteToHost();
    out.log = root.File("/var/log/syslog.log");
    return out;
}

bool InOrder(const std::string& text, std::initializer_list<const char*> lines)
{
    size_t at = 0;
    for (const char* line : lines)
        if ((at = text.find(line, at)) == std::string::npos)
            return false;
    return true;
}

TEST(NetworkApply, EveryGroupReachesTheHostInOrder)
{
    HostRoot root;
    PendingNetwork p = Typical();
    p._adapters = {"hwnic1", "hwnic2"};  // hwnic2 serves switch1
    p._takenFromOtherSwitches = {"hwnic2"};
    p._vlanId = 42;
    p._ipConfig = IpConfig();
    p._ipConfig.SetIpv4Address(Ipv4Address("10.0.0.5"));
    p._ipConfig.SetIpv4Netmask(Ipv4Address("255.255.0.0"));
    p._ipConfig.SetIpv4Gateway(Ipv4Address("10.0.0.1"));
    p._hostname = "newhost";
    p._alternateDns = std::make_unique<Ipv6Address>("fd00::53");
    p._suffixes = "a.example,b.example  c.example";

    // The values themselves are read back end to end in NetworkTest.
    const Applied a = Apply(root, p);
    EXPECT_TRUE(a.boxes.empty()) << a.boxes.front();
    const json net = root.Read()["network"];
    EXPECT_EQ("00:0c:29:3a:5b:11", net["kernelNics"][0]["mac"]);  // the first adapter's
    EXPECT_EQ("10.0.0.1", net["routing"]["defaultTcpipStack"]["ipv4Gateway"]);
    EXPECT_FALSE(net["dns"]["savedAt"].is_null());
    EXPECT_TRUE(InOrder(a.log, {"Setting adapters to hwnic1 hwnic2", "Setting ipv4 configuration to 10.0.0.5 255.255.0.0 on tarn0",
                                "Setting ipv6 configuration", "Setting default gateway to 10.0.0.1",
                                "Changed vlan, restarting management interface", "Setting hostname to newhost",
                                "Setting nameservers to 192.168.10.2 fd00::53",
                                "Setting suffixes to a.example,b.example  c.example"}))
        << a.log;
}

TEST(NetworkApply, AFailedGroupIsShownAndTheOthersStillRun)
{
    HostRoot root;
    root.Set("/faults/SetIpConfigs", "PlatformConfigFault: text = Address in use;");
    root.Set("/faults/SetVlanId", "no detail here");
    root.Set("/faults/AddUplink", "Fault: msg = Adapter busy;");
    PendingNetwork p = Typical();
    p._adapters = {"hwnic3"};
    p._vlanId = 7;
    p._hostname = "other.corp.example";

    const Applied a = Apply(root, p);
    EXPECT_EQ((std::vector<std::string>{"VS: add uplink to teaming policy failed: Adapter busy",
                                        "Setting ip/ipv6 configuration failed:  Address in use",
                                        "Setting VlanID failed:"}),
              a.boxes);
    const json net = root.Read()["network"];
    // The adapters that carried the network stay when the new one could not be added.
    EXPECT_EQ(json({"hwnic0", "hwnic1"}), net["virtualSwitches"][0]["uplinks"]);
    EXPECT_EQ("other", net["dns"]["hostname"]);
    EXPECT_EQ("corp.example", net["dns"]["domain"]);
    EXPECT_NE(a.log.find("Setting ip/ipv6 configuration failed:  Address in use"), std::string::npos) << a.log;
}

TEST(NetworkApply, DistributedSwitchAndDnsFromDhcpAreLeftToTheirOwners)
{
    HostRoot root("dvs");
    PendingNetwork p = Typical();
    p._onDistributedSwitch = true;
    p._adapters.clear();
    p._vlanId = 0;  // never read on a distributed switch
    p._ipConfig = IpConfig();
    p._ipConfig.SetUseDhcp(true, true);
    p._primaryDns = std::make_unique<Ipv4Address>("10.9.9.9");

    const Applied a = Apply(root, p);
    EXPECT_TRUE(a.boxes.empty()) << a.boxes.front();
    const json net = root.Read()["network"];
    EXPECT_EQ(10, net["dlswitches"][0]["portGroups"][0]["vlanId"]);
    EXPECT_EQ(json({"hwnic0", "hwnic1"}), net["dlswitches"][0]["teaming"]["uplinkOrder"]);
    // The lease names the servers.
    EXPECT_EQ("dhcp", net["kernelNics"][0]["ipv4"]["mode"]);
    EXPECT_EQ(json({"192.168.10.2"}), net["dns"]["nameServers"]);
    EXPECT_EQ(a.log.find("Setting adapters to"), std::string::npos);
}

}  // namespace
}  // namespace Tolm

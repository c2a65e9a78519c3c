// The adapter list: the row text with its cuts, who else uses an adapter,
// and the order of the new list.
#include "screens/network/AdapterRows.h"

#include <gtest/gtest.h>

using namespace Tolm;
using HostCtl::Network::Dlswitch;
using HostCtl::Network::VirtualSwitch;

namespace {

const std::string MAC = "00:50:56:aa:bb:01";

std::string Row(std::string_view name, std::string_view label, bool linkUp = true, bool used = false)
{
    return AdapterRowText(name, label, MAC, linkUp, used);
}

std::string Columns(std::string_view name, std::string_view labelAndMac)
{
    return "{align:padding:13}" + std::string(name) + "{/align}{align:padding:30}" + std::string(labelAndMac) +
           "{/align}";
}

}  // namespace

TEST(AdapterRowsTest, NameAndLabelCutToTheirColumns)
{
    EXPECT_EQ(Row("hwnic1", "Onboard LOM 1"), Columns("hwnic1", "Onboard LOM 1 (...:aa:bb:01)") + "Connected ");
    // 11 characters stay whole, 12 keep their first 8.
    EXPECT_EQ(Row("hwnic123456", ""), Columns("hwnic123456", " (" + MAC + ")") + "Connected ");
    EXPECT_EQ(Row("hwnic1234567", ""), Columns("hwnic123...", " (" + MAC + ")") + "Connected ");
    // 14 characters stay whole, 15 keep their first 11.
    EXPECT_EQ(Row("hwnic0", "PCIe Slot 2 p1"), Columns("hwnic0", "PCIe Slot 2 p1 (...aa:bb:01)") + "Connected ");
    EXPECT_EQ(Row("hwnic0", "PCIe Slot 2 p12"), Columns("hwnic0", "PCIe Slot 2... (...aa:bb:01)") + "Connected ");
}

TEST(AdapterRowsTest, MacKeptWholeOnlyWhileItFitsBesideTheLabel)
{
    // 8 + 17 = 25 fits; 9 + 17 = 26 keeps the MAC's last 22 - 9 characters.
    EXPECT_EQ(Row("hwnic0", "Slot 1p1"), Columns("hwnic0", "Slot 1p1 (" + MAC + ")") + "Connected ");
    EXPECT_EQ(Row("hwnic0", "Slot 1p12"), Columns("hwnic0", "Slot 1p12 (...0:56:aa:bb:01)") + "Connected ");
}

TEST(AdapterRowsTest, StatusAndTheMarkOfAnotherConnection)
{
    EXPECT_EQ(Row("hwnic2", "", false, true), Columns("hwnic2", " (" + MAC + ")") + "Disconnected (...)");
    // Host text cannot open a tag.
    EXPECT_EQ(Row("hwnic2", "{bgcolor:red}").find("{bgcolor"), std::string::npos);
}

TEST(AdapterRowsTest, UsersAreOtherSwitchesWithTheirPortGroups)
{
    VirtualSwitch own{"vSwitch0", {"hwnic0"}, {}, {{"Management Network", 0, ""}}, 1500};
    VirtualSwitch storage{"vSwitch1", {"hwnic2", "hwnic3"}, {}, {{"Storage", 0, ""}, {"Backup", 0, ""}}, 1500};
    VirtualSwitch bare{"vSwitch2", {"hwnic4"}, {}, {}, 1500};
    Dlswitch dvs{"dvSwitch", "uuid", {{"uplink1", "hwnic5"}, {"uplink2", ""}}, {}, {{"dvPortGroup", 0, "k"}}};

    const auto users = AdapterUsers({own, storage, bare}, {dvs}, "vSwitch0");
    EXPECT_EQ(users, (std::map<std::string, std::string>{{"hwnic2", "vSwitch1 (Storage, Backup)"},
                                                         {"hwnic3", "vSwitch1 (Storage, Backup)"},
                                                         {"hwnic4", "vSwitch2"},
                                                         {"hwnic5", "dvSwitch (dvPortGroup)"}}));
}

TEST(AdapterRowsTest, NewOrderKeepsPendingOrderThenAppendsInListOrder)
{
    const std::vector<std::string> pending{"hwnic3", "hwnic0"};
    EXPECT_EQ(NewAdapterOrder(pending, {"hwnic0", "hwnic3"}), pending);
    EXPECT_EQ(NewAdapterOrder(pending, {"hwnic0", "hwnic1", "hwnic2", "hwnic3"}),
              (std::vector<std::string>{"hwnic3", "hwnic0", "hwnic1", "hwnic2"}));
    EXPECT_EQ(NewAdapterOrder(pending, {"hwnic1"}), (std::vector<std::string>{"hwnic1"}));
    EXPECT_TRUE(NewAdapterOrder(pending, {}).empty());
}

// The adapter list: the row text with its cuts, who else uses an adapter,
// and the order of the new list.
#include "screens/network/AdapterRows.h"

#include <gtest/gtest.h>

using namespace Tolm;
using namespace HostCtl::Network;

namespace {

// The name and label-and-MAC columns of a connected adapter's row.
std::string Row(std::string_view name, std::string_view label)
{
    const std::string row = AdapterRowText(name, label, "00:50:56:aa:bb:01", true, false);
    const std::string status = "Connected ";
    EXPECT_EQ(row.substr(row.size() - status.size()), status);
    return row.substr(0, row.size() - status.size());
}

std::string Columns(std::string_view name, std::string_view labelAndMac)
{
    return "{align:padding:13}" + std::string(name) + "{/align}{align:padding:30}" + std::string(labelAndMac) +
           "{/align}";
}

}  // namespace

TEST(AdapterRowsTest, NameLabelAndMacCutToTheirColumns)
{
    // Names: 11 characters stay whole, 12 keep their first 8.
    EXPECT_EQ(Row("hwnic123456", ""), Columns("hwnic123456", " (00:50:56:aa:bb:01)"));
    EXPECT_EQ(Row("hwnic1234567", ""), Columns("hwnic123...", " (00:50:56:aa:bb:01)"));
    // Labels: 14 stay whole, 15 keep 11; the MAC keeps its last 22 - label.
    EXPECT_EQ(Row("hwnic0", "PCIe Slot 2 p1"), Columns("hwnic0", "PCIe Slot 2 p1 (...aa:bb:01)"));
    EXPECT_EQ(Row("hwnic0", "PCIe Slot 2 p12"), Columns("hwnic0", "PCIe Slot 2... (...aa:bb:01)"));
    // Label and MAC below 26 together: the MAC stays whole.
    EXPECT_EQ(Row("hwnic0", "Slot 1p1"), Columns("hwnic0", "Slot 1p1 (00:50:56:aa:bb:01)"));
    EXPECT_EQ(Row("hwnic0", "Slot 1p12"), Columns("hwnic0", "Slot 1p12 (...0:56:aa:bb:01)"));

    const std::string used = AdapterRowText("hwnic2", "{bgcolor:red}", "00:50:56:aa:bb:02", false, true);
    EXPECT_EQ(used.substr(used.size() - 18), "Disconnected (...)");
    EXPECT_EQ(used.find("{bgcolor"), std::string::npos);  // host text opens no tag
}

TEST(AdapterRowsTest, UsersAreOtherSwitchesWithTheirPortGroups)
{
    VirtualSwitch own{"vSwitch0", {"hwnic0"}, {}, {{"Management Network", 0, ""}}, 1500};
    VirtualSwitch storage{"vSwitch1", {"hwnic2", "hwnic3"}, {}, {{"Storage", 0, ""}, {"Backup", 0, ""}}, 1500};
    VirtualSwitch bare{"vSwitch2", {"hwnic4"}, {}, {}, 1500};
    Dlswitch dvs{"dvSwitch", "uuid", {{"uplink1", "hwnic5"}, {"uplink2", ""}}, {}, {{"dvPortGroup", 0, "k"}}};

    EXPECT_EQ(AdapterUsers({own, storage, bare}, {dvs}, "vSwitch0"),
              (std::map<std::string, std::string>{{"hwnic2", "vSwitch1 (Storage, Backup)"},
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
}

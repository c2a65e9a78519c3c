#include "exec/Events.h"

#include "TestRoot.h"

#include <gmock/gmock.h>

namespace Tolm {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using Test::TempRootTest;

// The simulated host's event facility appends records to <root>/var/log/evtd.log.
using RaiseEventTest = TempRootTest;

TEST_F(RaiseEventTest, RecordsReachTheFacilityOrAreDroppedWhileItIsDown)
{
    std::string before = ReadFile("/var/log/evtd.log");
    EXPECT_TRUE(RaiseEvent(Events::NetworkRestart, "vmk0"));
    EXPECT_EQ(ReadFile("/var/log/evtd.log").substr(before.size()),
              "@&!*@*@(evt.user.tolm.network.restart)Restarting vmk0\n");
    EXPECT_THAT(LogLines(), ElementsAre("user.info: Initializing evtuser library"));

    host.Set("/eventFacility/available", false);
    before = ReadFile("/var/log/evtd.log");
    EXPECT_FALSE(RaiseEvent(Events::ShutdownHost));
    EXPECT_EQ(ReadFile("/var/log/evtd.log"), before);
    auto lines = LogLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], "user.info: Initializing evtuser library");
    EXPECT_EQ(lines[2].rfind("user.err: Unable to initialize evtuser library from Tolm. Error code: ", 0), 0u)
        << lines[2];
    EXPECT_THAT(lines[2], Not(HasSubstr("Error code: 0")));

    // Once the facility is back, the next event goes through: the failed
    // attempt left nothing half open.
    host.Set("/eventFacility/available", true);
    EXPECT_TRUE(RaiseEvent(Events::ShutdownHost));
    EXPECT_THAT(ReadFile("/var/log/evtd.log").substr(before.size()), HasSubstr("Shutting down host"));
}

}  // namespace
}  // namespace Tolm

#include "exec/Events.h"

#include "TestRoot.h"

#include <gmock/gmock.h>

namespace Tolm {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using Test::TempRootTest;

using RaiseEventTest = TempRootTest;

// The simulated facility appends records to <root>/var/log/evtd.log.
TEST_F(RaiseEventTest, RecordsReachTheFacilityOrAreDroppedWhileItIsDown)
{
    std::string before = ReadFile("/var/log/evtd.log");
    EXPECT_TRUE(RaiseEvent(Events::NetworkRestart, "vmk0"));
    EXPECT_EQ(ReadFile("/var/log/evtd.log").substr(before.size()),
              "@&!*@*@(evt.user.tolm.network.restart)Restarting vmk0\n");

    host.Set("/eventFacility/available", false);
    before = ReadFile("/var/log/evtd.log");
    EXPECT_FALSE(RaiseEvent(Events::ShutdownHost));
    EXPECT_EQ(ReadFile("/var/log/evtd.log"), before);
    EXPECT_THAT(LogLines().back(), HasSubstr("user.err: Unable to initialize evtuser library from Tolm. Error code: "));
    EXPECT_THAT(LogLines().back(), Not(HasSubstr("Error code: 0")));

    // Once the facility is back the next event goes through: the failed
    // attempt left nothing half open.
    host.Set("/eventFacility/available", true);
    EXPECT_TRUE(RaiseEvent(Events::ShutdownHost));
    EXPECT_THAT(ReadFile("/var/log/evtd.log").substr(before.size()), HasSubstr("Shutting down host"));
}

}  // namespace
}  // namespace Tolm

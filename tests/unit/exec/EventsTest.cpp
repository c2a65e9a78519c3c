#include "exec/Events.h"

#include "TestRoot.h"
#include "host/Backend.h"
#include "host/sim/StateFile.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace Tolm {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using Test::TempRootTest;

// Runs against a simulated host made by tolm-hostsim, whose event facility
// appends records to <root>/var/log/evtd.log.
class RaiseEventTest : public TempRootTest {
protected:
    void SetUp() override
    {
        TempRootTest::SetUp();
        // The simulator only fills an empty directory.
        std::filesystem::remove_all(Root() + "/bin");
        std::filesystem::remove_all(Root() + "/var");
        ASSERT_EQ(HostSim("init " + Root()), 0);
        Host::UseSimulatedState(HostSim::StateFile::DefaultPath());
        _logLinesBefore = LogLines().size();
    }

    // Log lines written since the root was made (its boot lines excluded).
    std::vector<std::string> NewLogLines() const
    {
        auto lines = LogLines();
        return {lines.begin() + static_cast<std::ptrdiff_t>(_logLinesBefore), lines.end()};
    }

    void TearDown() override
    {
        Host::SetBackend(nullptr);
        TempRootTest::TearDown();
    }

    int HostSim(const std::string& arguments) const
    {
        std::string line = std::string(TOLM_BIN_DIR) + "/tolm-hostsim " + arguments + " >/dev/null 2>&1";
        return std::system(line.c_str());
    }

    void SetFacilityAvailable(bool available) const
    {
        ASSERT_EQ(HostSim("--root " + Root() + " set /eventFacility/available " +
                          (available ? "true" : "false")),
                  0);
    }

private:
    size_t _logLinesBefore = 0;
};

TEST_F(RaiseEventTest, RecordsReachTheFacilityOrAreDroppedWhileItIsDown)
{
    SetFacilityAvailable(true);
    std::string before = ReadFile("/var/log/evtd.log");
    EXPECT_TRUE(RaiseEvent(Events::NetworkRestart, "vmk0"));
    EXPECT_EQ(ReadFile("/var/log/evtd.log").substr(before.size()),
              "@&!*@*@(evt.user.tolm.network.restart)Restarting vmk0\n");
    EXPECT_THAT(NewLogLines(), ElementsAre("user.info: Initializing evtuser library"));

    SetFacilityAvailable(false);
    before = ReadFile("/var/log/evtd.log");
    EXPECT_FALSE(RaiseEvent(Events::ShutdownHost));
    EXPECT_EQ(ReadFile("/var/log/evtd.log"), before);
    auto lines = NewLogLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], "user.info: Initializing evtuser library");
    EXPECT_EQ(lines[2].rfind("user.err: Unable to initialize evtuser library from Tolm. Error code: ", 0), 0u)
        << lines[2];
    EXPECT_THAT(lines[2], Not(HasSubstr("Error code: 0")));

    // Once the facility is back, the next event goes through: the failed
    // attempt left nothing half open.
    SetFacilityAvailable(true);
    EXPECT_TRUE(RaiseEvent(Events::ShutdownHost));
    EXPECT_THAT(ReadFile("/var/log/evtd.log").substr(before.size()), HasSubstr("Shutting down host"));
}

}  // namespace
}  // namespace Tolm

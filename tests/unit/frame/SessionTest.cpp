// Session state against a simulated host: the idle timeout option and the
// smart-card look-ups, including the host library failing.
#include "../host/HostRoot.h"
#include "exec/Session.h"
#include "frame/Frame.h"

namespace Tolm {
namespace {

using nlohmann::json;

class SessionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Frame::_loggedIn = false;
        Frame::_isLoggedWithSmartCard = false;
        Frame::_smartCardLoginId.clear();
    }
    void TearDown() override { Frame::_loggedIn = Frame::_isLoggedWithSmartCard = false; }
    std::string Syslog() const { return root.File("/var/log/syslog.log"); }

    Tolm::Test::HostRoot root;
};

TEST_F(SessionTest, IdleTimeoutIsTenMinutesWithoutAReadableOption)
{
    // No such option, or a failing option store: ten minutes.
    root.State().Update([](json& s) { s["advancedOptions"]["UserVars"].erase("TolmTimeOut"); });
    Frame::_idleTimeout = 1;
    Frame::LoadIdleTimeout();
    EXPECT_EQ(Frame::_idleTimeout, 600u);
    root.Set("/faults/FindOption", "option store unavailable");
    Frame::_idleTimeout = 5;
    Frame::LoadIdleTimeout();
    EXPECT_EQ(Frame::_idleTimeout, 600u);
}

TEST_F(SessionTest, CardLookupTakesTheFirstNonEmptyIdOfThePresentTokens)
{
    EXPECT_EQ(Frame::LookupSmartCardUser(), "");
    root.Set("/smartCards/slots", json::array({
        {{"name", "slot0"}, {"token", nullptr}},
        {{"name", "slot1"}, {"token", {{"label", "blank"}, {"userIds", json::array({""})}}}},
        {{"name", "slot2"}, {"token", {{"label", "a"}, {"userIds", json::array({"", "alice", "root"})}}}},
        {{"name", "slot3"}, {"token", {{"label", "b"}, {"userIds", json::array({"bob"})}}}},
    }));
    EXPECT_EQ(Frame::LookupSmartCardUser(), "alice");
    EXPECT_TRUE(Frame::IsSmartCardPresent("bob"));
    EXPECT_FALSE(Frame::IsSmartCardPresent("ali"));

    // While nobody is logged in the refresh signal records the card.
    Frame::CheckSmartCard();
    EXPECT_EQ(Frame::_smartCardLoginId, "alice");
    EXPECT_NE(Syslog().find("Found smart card with user id 'alice'"), std::string::npos);

    root.Set("/faults/GetSlots", "reader gone");
    EXPECT_EQ(Frame::LookupSmartCardUser(), "");
    EXPECT_FALSE(Frame::IsSmartCardPresent("alice"));
    EXPECT_NE(Syslog().find("Error trying to lookup smart card tokens."), std::string::npos);
}

}  // namespace
}  // namespace Tolm

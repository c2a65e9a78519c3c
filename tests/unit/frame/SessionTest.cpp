// Session state against a simulated host: the idle timeout option and the
// smart-card look-ups, including the host library failing.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "exec/Session.h"
#include "frame/Frame.h"
#include "host/Backend.h"

namespace Tolm {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class SessionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/tolm-session-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
        fs::create_directories(dir / "var/log");
        setenv("TOLM_ROOT", dir.c_str(), 1);
        state = {{"schemaVersion", 1}};
        Save();
        Host::UseSimulatedState((dir / "host.json").string());
        Frame::_loggedIn = false;
        Frame::_isLoggedWithSmartCard = false;
        Frame::_smartCardLoginId.clear();
    }
    void TearDown() override
    {
        Frame::_loggedIn = Frame::_isLoggedWithSmartCard = false;
        Host::SetBackend(nullptr);
        unsetenv("TOLM_ROOT");
        fs::remove_all(dir);
    }
    void Save() { std::ofstream(dir / "host.json") << state.dump(); }
    void Cards(json slots)
    {
        state["smartCards"] = {{"slots", slots}};
        Save();
    }
    std::string Syslog()
    {
        std::ifstream in(dir / "var/log/syslog.log");
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    fs::path dir;
    json state;
};

TEST_F(SessionTest, IdleTimeoutComesFromTheOptionElseTenMinutes)
{
    Frame::_idleTimeout = 1;
    Frame::LoadIdleTimeout();
    EXPECT_EQ(Frame::_idleTimeout, 600u);  // no such option

    state["advancedOptions"]["UserVars"]["TolmTimeOut"] = {
        {"type", "integer"}, {"value", 0}, {"default", 0}, {"min", 0}, {"max", 86400}};
    Save();
    Frame::LoadIdleTimeout();
    EXPECT_EQ(Frame::_idleTimeout, 0u);

    // Logging in re-reads it.
    state["advancedOptions"]["UserVars"]["TolmTimeOut"]["value"] = 900;
    Save();
    Frame::SetLoggedIn(true);
    EXPECT_EQ(Frame::_idleTimeout, 900u);
    Frame::SetLoggedIn(false);

    state["faults"] = {{"FindOption", "option store unavailable"}};
    Save();
    Frame::_idleTimeout = 5;
    Frame::LoadIdleTimeout();
    EXPECT_EQ(Frame::_idleTimeout, 600u);
}

TEST_F(SessionTest, CardLookupTakesTheFirstNonEmptyIdOfThePresentTokens)
{
    EXPECT_EQ(Frame::LookupSmartCardUser(), "");
    Cards(json::array({
        {{"name", "slot0"}, {"token", nullptr}},
        {{"name", "slot1"}, {"token", {{"label", "blank"}, {"userIds", json::array({""})}}}},
        {{"name", "slot2"}, {"token", {{"label", "a"}, {"userIds", json::array({"", "alice", "root"})}}}},
        {{"name", "slot3"}, {"token", {{"label", "b"}, {"userIds", json::array({"bob"})}}}},
    }));
    EXPECT_EQ(Frame::LookupSmartCardUser(), "alice");
    EXPECT_TRUE(Frame::IsSmartCardPresent("root"));
    EXPECT_TRUE(Frame::IsSmartCardPresent("bob"));
    EXPECT_FALSE(Frame::IsSmartCardPresent("ali"));

    // While nobody is logged in the refresh signal records the card.
    Frame::CheckSmartCard();
    EXPECT_EQ(Frame::_smartCardLoginId, "alice");
    EXPECT_NE(Syslog().find("Found smart card with user id 'alice'"), std::string::npos);

    state["faults"] = {{"GetSlots", "reader gone"}};
    Save();
    EXPECT_EQ(Frame::LookupSmartCardUser(), "");
    EXPECT_FALSE(Frame::IsSmartCardPresent("alice"));
    EXPECT_NE(Syslog().find("Error trying to lookup smart card tokens."), std::string::npos);
}

using SessionDeathTest = SessionTest;

TEST_F(SessionDeathTest, RemovingTheCardOfASmartCardLoginEndsTheProcess)
{
    Cards(json::array({{{"name", "s"}, {"token", {{"label", "x"}, {"userIds", json::array({"carol"})}}}}}));
    Frame::SetLoginName("carol");
    Frame::_loggedIn = true;
    EXPECT_TRUE(Frame::_isLoggedWithSmartCard);
    EXPECT_EQ(Exec::LoginName(), "carol");
    Frame::CheckSmartCard();  // card still there: nothing happens
    Cards(json::array({{{"name", "s"}, {"token", nullptr}}}));
    EXPECT_EXIT(Frame::CheckSmartCard(), ::testing::ExitedWithCode(0), "");
    EXPECT_NE(Syslog().find("Logging out user id 'carol'"), std::string::npos);
    Frame::_loggedIn = false;
}

}  // namespace
}  // namespace Tolm

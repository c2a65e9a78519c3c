// The key reader's clocks: dimming after a minute, the idle deadline, the
// repaint when a key ends dimming, and the ways out.
#include "FrameFakes.h"
#include "frame/Keys.h"

namespace Tolm {
namespace {

using Test::RecordingFrame;
using Test::ScriptedClock;

class GetKeyTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        Frame::SetClock(&clock);
        Frame::_idleTimeout = 600;
        Frame::_loggedIn = false;
        Frame::_isLoggedWithSmartCard = false;
        Frame::_markForRestart = false;
        Frame::fgFrame = nullptr;
    }
    void TearDown() override { Frame::SetClock(nullptr); }

    ScriptedClock clock;
    RecordingFrame window;
};

TEST_F(GetKeyTest, ShortIdleTimeoutActsAsOneMinute)
{
    Frame::_idleTimeout = 30;
    Frame::fgFrame = &window;
    EXPECT_THROW(Frame::GetKey(&window, true), TolmTimeout);
    EXPECT_NEAR(clock.Elapsed(), 60.0, 0.001);
    // Both deadlines fall together; the timeout wins over dimming.
    EXPECT_TRUE(window.draws.empty());
    EXPECT_EQ(Frame::fgFrame, nullptr);
}

TEST_F(GetKeyTest, ZeroTimeoutOrStatusScreenNeverTimesOut)
{
    for (bool zeroTimeout : {true, false}) {
        SCOPED_TRACE(zeroTimeout ? "timeout 0" : "idle limit not applied");
        Frame::_idleTimeout = zeroTimeout ? 0 : 600;
        clock.waits.clear();
        window.draws.clear();
        // After the dimming wait runs out, a key arrives a day later.
        clock.script = {{61, Frame::WAIT_TIMEOUT}, {86400, 'x'}};
        EXPECT_EQ(Frame::GetKey(&window, zeroTimeout), 'x');
        ASSERT_EQ(clock.waits.size(), 2u);
        EXPECT_FALSE(clock.waits[1].has_value());
        // Dimmed, then repainted by the key that ended dimming.
        EXPECT_EQ(window.draws, (std::vector<bool>{false, true}));
    }
}

TEST_F(GetKeyTest, NoiseDoesNotRestartTheDeadlines)
{
    Frame::_idleTimeout = 120;
    clock.script = {{30, Frame::WAIT_NOTHING}, {20, Frame::WAIT_NOTHING}};
    EXPECT_THROW(Frame::GetKey(&window, true), TolmTimeout);
    EXPECT_NEAR(clock.Elapsed(), 120.0, 0.001);
    // The second wait only covers what is left of the minute.
    EXPECT_DOUBLE_EQ(*clock.waits[1], 30.0);
    EXPECT_DOUBLE_EQ(*clock.waits[2], 10.0);
}

using GetKeyDeathTest = GetKeyTest;

TEST_F(GetKeyDeathTest, ExitPaths)
{
    struct Case {
        const char* name;
        int code;
    };
    for (Case c : {Case{"restart while idle", Frame::WAIT_RESTART}, Case{"terminate", Frame::WAIT_TERMINATE},
                   Case{"resize signal", Frame::WAIT_RESIZE}, Case{"resize key", Key::Resize}}) {
        SCOPED_TRACE(c.name);
        clock.script = {{1, c.code}};
        EXPECT_EXIT(Frame::GetKey(&window, true), ::testing::ExitedWithCode(0), "");
    }
}

}  // namespace
}  // namespace Tolm

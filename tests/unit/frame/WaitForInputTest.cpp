// One wait on the keyboard and the signal pipe, with a real curses screen
// reading from a pipe on descriptor 0.
#include <gtest/gtest.h>
#include <unistd.h>

#include "CursesFixture.h"
#include "frame/Frame.h"
#include "frame/Keys.h"

namespace Tolm {
namespace {

class WaitForInputTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(terminal.Ok());
        ASSERT_EQ(pipe(signals), 0);
        Frame::_signalPipe[0] = signals[0];
        Frame::_signalPipe[1] = signals[1];
    }
    void TearDown() override
    {
        close(signals[0]);
        close(signals[1]);
        Frame::_signalPipe[0] = Frame::_signalPipe[1] = -1;
    }
    void Signal(unsigned char code) { ASSERT_EQ(write(signals[1], &code, 1), 1); }
    int Wait(long usec = 200000)
    {
        timeval limit{0, usec};
        return Frame::WaitForInput(&limit);
    }

    Tolm::Test::TestTerminal terminal{"xterm"};
    int signals[2] = {-1, -1};
};

TEST_F(WaitForInputTest, KeyWinsOverPendingSignalsWhichComeInOrder)
{
    for (unsigned char code : {1, 2, 3, 4, 9}) Signal(code);
    terminal.Type("a");
    EXPECT_EQ(Wait(), 'a');
    EXPECT_EQ(Wait(), Frame::WAIT_REFRESH);
    EXPECT_EQ(Wait(), Frame::WAIT_RESTART);
    EXPECT_EQ(Wait(), Frame::WAIT_RESIZE);
    EXPECT_EQ(Wait(), Frame::WAIT_TERMINATE);
    EXPECT_EQ(Wait(), Frame::WAIT_NOTHING);  // unknown byte
    EXPECT_EQ(Wait(10000), Frame::WAIT_TIMEOUT);
    // Without a limit the wait lasts until something arrives.
    Signal(Frame::SIG_TERMINATE);
    EXPECT_EQ(Frame::WaitForInput(nullptr), Frame::WAIT_TERMINATE);
}

TEST_F(WaitForInputTest, ExtraSequencesArriveAsKeyCodes)
{
    DefineKeys();
    struct Case {
        const char* bytes;
        int key;
    };
    // Those the end-to-end tests do not send.
    const Case cases[] = {{"\0330", Key::F10}, {"\033!", Key::F11}, {"\033[X", Key::F12}, {"\033/", Key::PageDown}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes + 1);
        terminal.Type(c.bytes);
        EXPECT_EQ(Wait(), c.key);
    }
}

}  // namespace
}  // namespace Tolm

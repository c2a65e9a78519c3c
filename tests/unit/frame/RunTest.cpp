// The modal protocol: the parent is dimmed while a window runs and redrawn
// after it, fgFrame follows the innermost window, and an idle timeout passes
// straight through.
#include "FrameFakes.h"

namespace Tolm {
namespace {

using Screen = Test::RecordingFrame;

TEST(FrameRun, DimsParentRunsAndRestores)
{
    Screen parent(nullptr);
    Screen dialog(&parent, [] { return 7; });
    Frame::fgFrame = &parent;
    EXPECT_EQ(Frame::Run(&dialog), 7);
    EXPECT_EQ(dialog.seenForeground, &dialog);
    EXPECT_EQ(parent.draws, (std::vector<bool>{false, true}));
    EXPECT_EQ(dialog.draws, std::vector<bool>{true});
    EXPECT_EQ(Frame::fgFrame, &parent);

    Screen top(nullptr, [] { return 3; });
    EXPECT_EQ(Frame::Run(&top), 3);
    EXPECT_EQ(Frame::fgFrame, nullptr);
}

TEST(FrameRun, IdleTimeoutUnwindsWithoutRedrawingTheParent)
{
    Screen parent(nullptr);
    Screen dialog(&parent);
    Screen inner(&dialog, []() -> int { throw TolmTimeout(); });
    Screen* innerPtr = &inner;
    Screen outer(&parent, [innerPtr] { return Frame::Run(innerPtr); });
    EXPECT_THROW(Frame::Run(&outer), TolmTimeout);
    EXPECT_EQ(parent.draws, (std::vector<bool>{false}));
    EXPECT_EQ(dialog.draws, (std::vector<bool>{false}));
    EXPECT_EQ(Frame::fgFrame, nullptr);
}

}  // namespace
}  // namespace Tolm

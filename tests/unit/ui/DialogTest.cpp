#include "ui/Dialog.h"

#include "CursesFixture.h"
#include "ui/TextArea.h"

using namespace Tolm;

namespace {
class TestDialog : public Dialog {
public:
    using Dialog::Dialog;
    int Execute() override { return 1; }
};
}  // namespace

class DialogTest : public CursesTest {};

TEST_F(DialogTest, DimmedTextIgnoresColourTags) {
    TestDialog dialog(nullptr, 40, 10, 6);
    dialog.SetTitle("{color:red}Red{/color} plain");
    WINDOW* title = dialog.TitleArea()->CursesWindow();
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(Grid(title).substr(0, 9), "Red plain");
    EXPECT_EQ(PairAt(title, 0, 0), ColorPair(Color::DarkGrey, Color::Red));
    EXPECT_EQ(PairAt(title, 0, 4), ColorPair(Color::DarkGrey, Color::White));

    dialog.Draw(false);
    EXPECT_EQ(PairAt(title, 0, 0), ColorPair(Color::Black, Color::DarkGrey));
    EXPECT_EQ(PairAt(title, 0, 4), ColorPair(Color::Black, Color::DarkGrey));
    dialog.Draw(true);
    EXPECT_EQ(PairAt(title, 0, 0), ColorPair(Color::DarkGrey, Color::Red));
}

TEST_F(DialogTest, TextAreaKeepsInsideItsRectangle) {
    Window parent(0, 0, 10, 4, Color::Yellow, Color::Black);
    TextArea area(&parent, 2, 1, 6, 2);
    area.SetText("one two three four five six seven{align:right}x{/align}");
    EXPECT_EQ(Grid(parent.CursesWindow()), "          |\n"
                                           "  one     |\n"
                                           "  two     |\n"
                                           "          |\n");
    area.SetPlaceholder("memory", [] { return std::string("16 GiB"); });
    area.SetText("{memory}!");
    EXPECT_EQ(Grid(area.CursesWindow()), "16 GiB|\n"
                                         "!     |\n");
}

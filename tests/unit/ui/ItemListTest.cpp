#include "ui/ItemList.h"

#include <memory>

#include "CursesFixture.h"
#include "frame/Window.h"
#include "ui/InputItem.h"
#include "ui/Item.h"

using namespace Tolm;

namespace {

// Label items: `true` selectable, `false` not; a name starting with "-" is disabled.
struct Items {
    std::vector<std::unique_ptr<Item>> owned;
    std::vector<Item*> pointers;
    Items(std::initializer_list<std::pair<std::string, bool>> labels) {
        for (const auto& [name, selectable] : labels) Add(name, selectable);
    }
    explicit Items(int count) {
        for (int i = 0; i < count; ++i) Add("item " + std::to_string(i), true);
    }
    void Add(const std::string& name, bool selectable) {
        owned.push_back(std::make_unique<LabelItem>(name, selectable));
        owned.back()->SetEnabled(name[0] != '-' || !selectable);
        pointers.push_back(owned.back().get());
    }
};

}  // namespace

class ItemListTest : public CursesTest {
protected:
    Window parent{0, 0, 40, 12, Color::Yellow, Color::Black};
};

TEST_F(ItemListTest, ScrollsWithTheHighlightAndPlacesTheScrollThumb) {
    ItemList list(&parent, 0, 0, 30, 10);
    Items items(20);
    list.SetItems(items.pointers);
    EXPECT_EQ(list.SelectedIndex(), 0);
    EXPECT_EQ(list.ScrollThumbLine(), 0);

    for (int i = 0; i < 14; ++i) list.Down();
    EXPECT_EQ(list.SelectedIndex(), 14);
    EXPECT_EQ(list.SelectedOrdinal(), 14);
    EXPECT_EQ(list.FirstShown(), 5);
    EXPECT_EQ(list.HighlightedRow(), 9);

    // Items 5 to 14 shown, the thumb at line 4 of the bar.
    WINDOW* win = list.CursesWindow();
    EXPECT_EQ(Grid(win),
              " item 5                      ▓|\n"
              " item 6                      ▓|\n"
              " item 7                      ▓|\n"
              " item 8                      ▓|\n"
              " item 9                      █|\n"
              " item 10                     ▓|\n"
              " item 11                     ▓|\n"
              " item 12                     ▓|\n"
              " item 13                     ▓|\n"
              " item 14                     ▓|\n");
    // The highlighted row is white on black, the others keep the item colours.
    EXPECT_EQ(PairAt(win, 9, 3), ColorPair(Color::Black, Color::White));
    EXPECT_EQ(PairAt(win, 8, 3), ColorPair(Color::Yellow, Color::Black));

    // Up inside the shown rows does not scroll; past the top it does.
    for (int i = 0; i < 9; ++i) list.Up();
    EXPECT_EQ(list.FirstShown(), 5);
    EXPECT_EQ(list.HighlightedRow(), 0);
    list.Up();
    EXPECT_EQ(list.FirstShown(), 4);
    EXPECT_EQ(list.SelectedIndex(), 4);

    for (int i = 0; i < 30; ++i) list.Down();
    EXPECT_EQ(list.SelectedIndex(), 19);
    EXPECT_EQ(list.ScrollThumbLine(), 9);
}

TEST_F(ItemListTest, ListWithoutUsableItemsNeverMoves) {
    ItemList list(&parent, 0, 0, 30, 4);
    Items items{{"heading", false}, {"-off", true}};
    list.SetItems(items.pointers);
    EXPECT_EQ(list.Selected(), nullptr);
    list.Down();
    list.Up();
    EXPECT_EQ(list.Selected(), nullptr);
    list.Redraw();
    EXPECT_EQ(list.ScrollThumbLine(), -1);
}

TEST_F(ItemListTest, FocusedInputFieldIsRenderedLastAndOwnsTheCursor) {
    ItemList list(&parent, 2, 1, 30, 3);
    InputItem name("Name:", "abc", 10);
    CheckItem check("Check", true, 2);
    list.SetItems({&check, &name});
    list.Down();
    EXPECT_TRUE(name.focused);
    EXPECT_TRUE(Window::_cursor);
    // Text area 28 wide: the field starts at column 28 - 10 - 2 = 16 of the
    // text area, which sits one column into the row; cursor after "abc".
    EXPECT_EQ(Window::_xCursor, 2 + 1 + 16 + 3);
    EXPECT_EQ(Window::_yCursor, 1 + 1);
    EXPECT_EQ(Grid(list.CursesWindow()).substr(0, 12), "   [X] Check");
    list.Up();
    EXPECT_FALSE(Window::_cursor);
    EXPECT_TRUE(name.IsFresh());
}

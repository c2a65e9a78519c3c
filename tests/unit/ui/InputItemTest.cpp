#include "ui/InputItem.h"

#include <gtest/gtest.h>

#include "frame/Keys.h"

using namespace Tolm;

namespace {
void Type(InputItem& item, const std::string& text) {
    for (char c : text) item.HandleKey(c);
}
}  // namespace

TEST(InputItem, FirstEditingKeyReplacesAFreshValueButMovementKeepsIt) {
    // A fresh "abc", a first key, then text; a non-printable key still
    // consumes the fresh value.
    const struct {
        int key;
        const char* typed;
        const char* value;
    } cases[] = {{'x', "y", "xy"},          {Key::Right, "d", "abcd"}, {Key::Home, "_", "_abc"},
                 {Key::Backspace, "", ""}, {Key::Delete, "", ""},     {Key::F5, "", ""}};
    InputItem item("Label", "abc", 10);
    for (const auto& c : cases) {
        item.SetValue("abc");
        item.HandleKey(c.key);
        Type(item, c.typed);
        EXPECT_EQ(item.Value(), c.value) << c.key;
    }
    // Gaining the focus makes the value fresh again.
    item.HandleKey(Key::End);
    item.SetFocus(true);
    Type(item, "z");
    EXPECT_EQ(item.Value(), "z");
}

TEST(InputItem, EditingAtTheEdgesDoesNothing) {
    InputItem item("L", "", 10);
    item.HandleKey(Key::End);
    item.HandleKey(Key::Delete);
    item.HandleKey(Key::Backspace);
    EXPECT_EQ(item.Value(), "");
    item.SetValue("ab");
    item.HandleKey(Key::Home);
    item.HandleKey(Key::Backspace);
    item.HandleKey(8);
    item.HandleKey(Key::Left);
    EXPECT_EQ(item.Value(), "ab");
    EXPECT_EQ(item.Cursor(), 0);
    item.HandleKey(Key::Delete);
    EXPECT_EQ(item.Value(), "b");
    item.HandleKey(Key::End);
    item.HandleKey(Key::Right);
    EXPECT_EQ(item.Cursor(), 1);
}

TEST(InputItem, ViewScrollsWithTheCursorAndBackspaceJumpsToTheEnd) {
    InputItem item("L", "abcdefghij", 5);
    item.HandleKey(Key::End);
    const int width = 30;
    EXPECT_EQ(item.RowText(width), std::string(30 - 5 - 5, ' ').replace(0, 1, "L") + " [ fghij ]");
    EXPECT_EQ(item.FirstVisible(), 5);
    EXPECT_EQ(item.CursorColumn(width), 30 - 5 - 2 + 5);

    for (int i = 0; i < 5; ++i) item.HandleKey(Key::Left);
    EXPECT_EQ(item.Cursor(), 5);
    EXPECT_EQ(item.FirstVisible(), 5);

    // Cursor on the first visible character: Backspace deletes its
    // predecessor, shows the field from the start, cursor at the end.
    item.HandleKey(Key::Backspace);
    EXPECT_EQ(item.Value(), "abcdfghij");
    EXPECT_EQ(item.FirstVisible(), 0);
    EXPECT_EQ(item.Cursor(), 9);

    // Left from the first visible character scrolls the view by one.
    item.RowText(width);
    EXPECT_EQ(item.FirstVisible(), 4);
    for (int i = 0; i < 5; ++i) item.HandleKey(Key::Left);
    EXPECT_EQ(item.FirstVisible(), 4);
    item.HandleKey(Key::Left);
    EXPECT_EQ(item.FirstVisible(), 3);
    EXPECT_EQ(item.Cursor(), 3);
}

TEST(InputItem, MaskedValueStaysInOneBufferAndIsWiped) {
    InputItem item("Password:", "", 30);
    item.SetMasked(true);
    const char* buffer = item.Value().data();
    // A long password typed by hand never moves to a new buffer, which would
    // leave a copy of its start behind in freed memory.
    Type(item, std::string(200, 'p'));
    EXPECT_EQ(item.Value().data(), buffer);
    item.SetValue("replacement");
    EXPECT_EQ(item.Value().data(), buffer);

    item.Wipe();
    EXPECT_EQ(item.Value(), "");
    EXPECT_EQ(item.Cursor(), 0);
    EXPECT_EQ(std::string(buffer, 200), std::string(200, '\0'));
}

#include "ui/Markup.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace Tolm::Markup;
using MRun = Tolm::Markup::Run;

namespace {

std::string Strip(std::string_view laidOut) {
    std::string visible;
    bool inTag = false;
    for (char c : laidOut) {
        if (inTag) inTag = c != '}';
        else if (c == '{') inTag = true;
        else visible += c;
    }
    return visible;
}

std::vector<std::string> Lines(std::string_view laidOut) {
    std::vector<std::string> lines;
    std::stringstream in(Strip(laidOut));
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

PlaceholderLookup Fixed(std::string name, std::string value) {
    return [=](std::string_view tag) -> std::optional<std::string> {
        if (tag == name) return value;
        return std::nullopt;
    };
}

}  // namespace

TEST(MarkupLayout, AlignmentPaddingAndWrapping)
{
    const struct {
        const char* text;
        int width;
        const char* laidOut;
    } cases[] = {
        {"{align:center}abc{/align}", 10, "   abc"},
        {"ab{align:center}cd{/align}", 10, "ab   cd"},
        {"{align:right}ab{/align}", 6, "    ab"},
        // The line counts as full after a right or centred segment.
        {"{align:right}ab{/align}cd", 6, "    ab\ncd"},
        // Nested and unbalanced tags.
        {"{/align}abc{/align}", 6, "abc"},
        {"{align:right}abc", 6, "abc"},
        // A padded field is cut or filled, and takes exactly its columns.
        {"{align:padding:10}abcdefghijklmn{/align}|", 60, "abcdefghij|"},
        {"{align:padding:4}abcdefgh{/align}xyz", 6, "abcdxy\nz"},
        // Words move to the next line; a blank at the edge is the break; a
        // word longer than the line breaks hard.
        {"hello world foo", 8, "hello\nworld\nfoo"},
        {"abcd efgh", 4, "abcd\nefgh"},
        {"abcdefghij", 4, "abcd\nefgh\nij"},
        // Wrapped aligned segments keep their alignment.
        {"{align:right}aaa bbb{/align}", 5, "  aaa\n  bbb"},
        {"{align:right}aa bb cc{/align}", 5, "aa bb\n   cc"},
        // Other tags pass through; braces are never literal.
        {"a{foo:bar}b", 2, "a{foo:bar}b"},
        {"a{}b", 2, "ab"},
        {"abc{def", 10, "abc"},
        {"a{b{c}d", 10, "a{b{c}d"},
        // Multi-byte characters take one column.
        {"\xc3\xa9t\xc3\xa9 abc", 3, "\xc3\xa9t\xc3\xa9\nabc"},
    };
    for (const auto& c : cases) EXPECT_EQ(Layout(c.text, c.width), c.laidOut) << c.text << " in " << c.width;
    EXPECT_EQ(Columns("\xe2\x96\x93x"), 2);
    EXPECT_EQ(CutToColumns("\xc3\xa9\xc3\xa9", 1), "\xc3\xa9");
}

TEST(MarkupLayout, PlaceholdersAreReplacedWithoutWordBreak) {
    auto memory = Fixed("memory", "ab cd");
    EXPECT_EQ(Layout("x{memory}y", 20, memory), "xab cdy");
    EXPECT_EQ(Layout("x{memory}y", 3, memory), "xab\n cd\ny");
    // Without a lookup, or for another name, the tag is passed on.
    EXPECT_EQ(Layout("x{memory}y", 20), "x{memory}y");
    EXPECT_EQ(Layout("{memory:x}", 20, memory), "{memory:x}");
    EXPECT_EQ(Layout("{align:padding:3}{memory}{/align}|", 20, memory), "ab |");
}

TEST(MarkupLayout, NoLineIsWiderThanTheArea) {
    std::string text;
    for (int i = 0; i < 500; ++i) text += "{color:red}word" + std::to_string(i) + "{/color} ";
    text += std::string(300, 'x') + "{align:right}" + std::string(50, 'y') + " z{/align}";
    text += "{align:padding:90}" + std::string(120, 'p') + "{/align}tail";
    for (int width : {1, 2, 7, 33, 80}) {
        const auto lines = Lines(Layout(text, width));
        ASSERT_FALSE(lines.empty());
        for (const auto& line : lines) EXPECT_LE(Columns(line), width) << "width " << width << ": " << line;
    }
    EXPECT_EQ(Strip(Layout("abc def", 0)).find_first_not_of('\n'), std::string::npos);
    EXPECT_EQ(Strip(Layout("abc def", -3)).find_first_not_of('\n'), std::string::npos);
}

TEST(MarkupColor, RunsFollowColourTagsAndStopAtTheLastLineAndTheRightEdge) {
    ColorTable colors = DefaultColorTable();
    EXPECT_EQ(ColorRuns("a{color:red}b{bgcolor:black}c{/color}d{/bgcolor}e\nf\ng", 10, 2, 3, 0, colors),
              (std::vector<MRun>{{0, 0, "a", 3, 0}, {1, 0, "b", 3, 1}, {2, 0, "c", 0, 1},
                                 {3, 0, "d", 0, 0}, {4, 0, "e", 3, 0}, {0, 1, "f", 3, 0}}));
    // Unknown colours are black; stray closing tags do nothing.
    EXPECT_EQ(ColorRuns("{/color}{/bgcolor}a{color:mauve}b{zz}c", 10, 1, 6, 7, colors),
              (std::vector<MRun>{{0, 0, "a", 6, 7}, {1, 0, "bc", 6, 0}}));
    EXPECT_EQ(ColorRuns("abcdef{color:red}gh", 4, 1, 0, 7, colors), (std::vector<MRun>{{0, 0, "abcd", 0, 7}}));
    EXPECT_TRUE(ColorRuns("abc", 4, 0, 0, 7, colors).empty());
}

TEST(MarkupColor, LiteralHostTextShowsItsBracesAndOpensNoTag) {
    ColorTable colors = DefaultColorTable();
    const std::string host = Literal("a{color:red}b{align:right}");
    EXPECT_EQ(Columns(host), 26);
    const std::string text = "{color:white}" + host + "{/color} x";
    EXPECT_EQ(ColorRuns(Layout(text, 40), 40, 1, 2, 7, colors),
              (std::vector<MRun>{{0, 0, "a{color:red}b{align:right}", 2, 7}, {26, 0, " x", 2, 7}}));
}

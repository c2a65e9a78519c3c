#pragma once
// The two passes behind Tolm::TextArea, kept free of curses so they can be
// tested on plain strings.
//
// Layout: resolves alignment and placeholders and breaks the markup into lines
// that fit a width; colour tags and unknown tags stay in the text, taking no
// width. Colour: splits a laid-out text into runs, each with its position and
// its (background, foreground) pair.
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tolm::Markup {

// Returns the current text of a placeholder, or nothing when `name` is not a
// placeholder (the tag is then passed on like any other tag).
using PlaceholderLookup = std::function<std::optional<std::string>(std::string_view name)>;

std::string Layout(std::string_view text, int width, const PlaceholderLookup& placeholders = {});

// Colour name to colour number; an unknown name is added as 0 (black).
using ColorTable = std::map<std::string, int, std::less<>>;
ColorTable DefaultColorTable();
int LookupColor(ColorTable& table, std::string_view name);

struct Run {
    int x = 0;
    int y = 0;
    std::string text;  // already cut to the columns left on its line
    int background = 0;
    int foreground = 0;
    bool operator==(const Run&) const = default;
};

// The colour pass over laid-out text, for an area of width x height whose own
// colours are (background, foreground). Runs beyond the last line are not
// produced; empty runs are left out.
std::vector<Run> ColorRuns(std::string_view laidOut, int width, int height, int background,
                           int foreground, ColorTable& colors);

// Host-supplied text (names, values the user typed) made safe inside markup:
// every "{" in it shows as itself and opens no tag. Use it wherever such text
// is put into a markup string.
std::string Literal(std::string_view text);

// Number of columns `text` takes (UTF-8 continuation bytes take none).
int Columns(std::string_view text);

// The longest prefix of `text` that takes at most `columns` columns.
std::string_view CutToColumns(std::string_view text, int columns);

}  // namespace Tolm::Markup

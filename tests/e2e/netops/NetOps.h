#pragma once
// Steps shared by the network restart and test cases.
#include <regex>
#include <string>
#include <vector>

#include "Steps.h"

namespace Tolm::E2E {

// Down from the first entry until `entry` is highlighted, then Enter.
inline bool OpenEntry(Console& tolm, const std::string& entry)
{
    const std::regex selected("System Customization +" + entry + "  ");
    for (int i = 0; i < 16 && !std::regex_search(tolm.Row(1), selected); ++i) {
        const std::string before = tolm.Row(1);
        tolm.Press(Key::Down);
        if (!tolm.WaitUntil([&] { return tolm.Row(1) != before; }, "the next entry")) return false;
    }
    if (!ShowsEntry(tolm, entry)) return false;
    tolm.Press(Key::Enter);
    return true;
}

// `count` lines of a dialog's text from the row that starts with `first`,
// each cut to `width` columns from where `first` starts, trailing blanks
// dropped.
inline std::vector<std::string> LinesFrom(const Console& tolm, const std::string& first, int count, int width)
{
    std::vector<std::string> lines;
    const auto at = tolm.FindText(first);
    if (!at) return lines;
    for (int row = at->row; row < at->row + count && row < tolm.Rows(); ++row) {
        std::string line;
        for (int col = at->col; col < at->col + width && col < tolm.Cols(); ++col) line += tolm.CellAt(col, row).text;
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(line);
    }
    return lines;
}

}  // namespace Tolm::E2E

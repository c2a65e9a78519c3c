#include "screens/menu/SupportPages.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace Tolm {
namespace {

TEST(SupportPagesTest, DollarLinesEndPagesAndNotesAreSkipped)
{
    using Pages = std::vector<std::string>;
    const std::string path = std::filesystem::temp_directory_path() / ("tolm-support-" + std::to_string(getpid()));
    const std::pair<std::string, Pages> cases[] = {
        // The last line has no line feed in the file but gets one on the page.
        {"# note\nFirst\n\nline two\n$ end\n#x\nSecond\n$\nThird", {"First\n\nline two\n", "Second\n", "Third\n"}},
        // Marks count only in the first column; a closing "$" leaves an empty last page.
        {" # kept\n a$b\n$\n", {" # kept\n a$b\n", ""}},
        {"# a\n# b\n", {""}},
    };
    for (const auto& [text, pages] : cases) {
        std::ofstream(path, std::ios::trunc) << text;
        EXPECT_EQ(ReadSupportPages(path), pages) << text;
    }
    std::filesystem::remove(path);
    EXPECT_EQ(ReadSupportPages(path), Pages{""});
}

}  // namespace
}  // namespace Tolm

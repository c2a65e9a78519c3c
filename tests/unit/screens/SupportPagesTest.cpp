#include "screens/menu/SupportPages.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace Tolm {
namespace {

class SupportPagesTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        _dir = std::filesystem::temp_directory_path() / ("tolm-support-" + std::to_string(getpid()));
        std::filesystem::create_directories(_dir);
    }
    void TearDown() override { std::filesystem::remove_all(_dir); }

    std::string Write(const std::string& text)
    {
        const std::string path = (_dir / "support").string();
        std::ofstream(path, std::ios::trunc) << text;
        return path;
    }

    std::filesystem::path _dir;
};

TEST_F(SupportPagesTest, DollarLinesEndPagesAndNotesAreSkipped)
{
    using Pages = std::vector<std::string>;
    const std::pair<std::string, Pages> cases[] = {
        // The last line has no line feed in the file but gets one on the page.
        {"# note\nFirst\n\nline two\n$ end\n#x\nSecond\n$\nThird", {"First\n\nline two\n", "Second\n", "Third\n"}},
        // Marks count only in the first column; a closing "$" leaves an empty last page.
        {" # kept\n a$b\n$\n", {" # kept\n a$b\n", ""}},
        {"# a\n# b\n", {""}},
    };
    for (const auto& [text, pages] : cases)
        EXPECT_EQ(ReadSupportPages(Write(text)), pages) << text;
    EXPECT_EQ(ReadSupportPages((_dir / "missing").string()), Pages{""});
}

}  // namespace
}  // namespace Tolm

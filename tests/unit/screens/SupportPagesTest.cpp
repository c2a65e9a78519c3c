#include "screens/system/SupportPages.h"

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
    const auto pages = ReadSupportPages(Write("# note\nFirst\n\nline two\n$ end\n#x\nSecond\n$\nThird"));
    ASSERT_EQ(pages.size(), 3u);
    EXPECT_EQ(pages[0], "First\n\nline two\n");
    EXPECT_EQ(pages[1], "Second\n");
    // The last line has no line feed in the file but gets one on the page.
    EXPECT_EQ(pages[2], "Third\n");
}

TEST_F(SupportPagesTest, MarksCountOnlyInTheFirstColumn)
{
    const auto pages = ReadSupportPages(Write(" # kept\n a$b\n$\n"));
    ASSERT_EQ(pages.size(), 2u);
    EXPECT_EQ(pages[0], " # kept\n a$b\n");
    EXPECT_EQ(pages[1], "");  // a closing "$" leaves an empty last page
}

TEST_F(SupportPagesTest, OnlyNotesOrNoFileGiveOneEmptyPage)
{
    EXPECT_EQ(ReadSupportPages(Write("# a\n# b\n")), std::vector<std::string>{""});
    EXPECT_EQ(ReadSupportPages((_dir / "missing").string()), std::vector<std::string>{""});
}

}  // namespace
}  // namespace Tolm

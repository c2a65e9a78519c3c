#include "exec/TextUtil.h"

#include <gtest/gtest.h>

namespace Tolm {
namespace {

TEST(CollapseWhitespaceTest, TrimsAndCollapsesEveryKindOfBlank)
{
    EXPECT_EQ(CollapseWhitespace("  Intel(R)   Xeon(R)\tCPU \n E5-2620  "), "Intel(R) Xeon(R) CPU E5-2620");
    EXPECT_EQ(CollapseWhitespace("a\r\n\v\fb"), "a b");
    EXPECT_EQ(CollapseWhitespace("single"), "single");
    EXPECT_EQ(CollapseWhitespace(""), "");
    EXPECT_EQ(CollapseWhitespace(" \t\n "), "");
    // Bytes above 127 (UTF-8) are text, not white space.
    EXPECT_EQ(CollapseWhitespace(" caf\xc3\xa9  bar "), "caf\xc3\xa9 bar");
}

}  // namespace
}  // namespace Tolm

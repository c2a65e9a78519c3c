#include "ui/MemoryLine.h"

#include <gtest/gtest.h>

using Tolm::FormatMemoryLine;
using Tolm::FormatMemorySize;

TEST(MemoryLine, UnitFollowsTheSizeAndRoundsToOneDecimal) {
    EXPECT_EQ(FormatMemoryLine(16ull << 30), "16 GiB Memory");
    EXPECT_EQ(FormatMemoryLine(1073741823ull), "1024 MiB Memory");
    EXPECT_EQ(FormatMemoryLine(1073741824ull), "1 GiB Memory");
    EXPECT_EQ(FormatMemorySize((159ull << 30) / 10), "15.9 GiB");
    EXPECT_EQ(FormatMemorySize((3ull << 40) + (1ull << 39)), "3.5 TiB");
    EXPECT_EQ(FormatMemorySize(2ull << 50), "2 PiB");
    EXPECT_EQ(FormatMemorySize(0), "0 MiB");
    // 15.96 rounds up to a whole number and loses its decimal.
    EXPECT_EQ(FormatMemorySize((1596ull << 30) / 100), "16 GiB");
    EXPECT_EQ(FormatMemorySize(~0ull), "16384 PiB");
}

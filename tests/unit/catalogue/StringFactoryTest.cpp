#include "catalogue/StringFactory.h"

#include <gtest/gtest.h>

using Tolm::StringFactory;

// The only test that sets the process-wide instance (once per process):
// English serves every locale once made; unknown identifiers are empty texts.
TEST(StringFactory, OnlyEnglishCreatesThenAnyLocaleGetsItAndUnknownTextsAreEmpty)
{
    for (const char* locale : {"de_DE", "en_US.UTF-8", ""})
        EXPECT_EQ(StringFactory::GetFactory(locale), nullptr) << locale;
    StringFactory* en = StringFactory::GetFactory("en_US");
    ASSERT_NE(dynamic_cast<Tolm::en_US_Factory*>(en), nullptr);
    EXPECT_EQ(StringFactory::GetFactory("fr_FR"), en);
    EXPECT_EQ(StringFactory::GetFactory(""), en);
    for (unsigned id : {3u, 274u, 1000u, 0x80000000u, 0xffffffffu}) {
        ASSERT_NE(en->GetString(id), nullptr) << id;
        EXPECT_STREQ(en->GetString(id), "") << id;
    }
}

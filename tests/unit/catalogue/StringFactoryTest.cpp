#include "catalogue/StringFactory.h"

#include <gtest/gtest.h>


using Tolm::StringFactory;

namespace {

// The texts are checked on a catalogue of their own, so only the lookup test
// touches the process-wide instance, whatever order the tests run in.
StringFactory& English()
{
    static Tolm::en_US_Factory english;
    return english;
}

}  // namespace

// The only test that sets the process-wide instance (it can be set once per
// process, so this test cannot be repeated within one run).
TEST(StringFactoryLookup, OnlyEnglishCreatesThenAnyLocaleGetsIt)
{
    EXPECT_EQ(StringFactory::GetFactory("de_DE"), nullptr);
    EXPECT_EQ(StringFactory::GetFactory("en_US.UTF-8"), nullptr);
    EXPECT_EQ(StringFactory::GetFactory(""), nullptr);

    StringFactory* en = StringFactory::GetFactory("en_US");
    ASSERT_NE(en, nullptr);
    EXPECT_NE(dynamic_cast<Tolm::en_US_Factory*>(en), nullptr);
    EXPECT_EQ(StringFactory::GetFactory("en_US"), en);
    EXPECT_EQ(StringFactory::GetFactory("fr_FR"), en);
    EXPECT_EQ(StringFactory::GetFactory(""), en);
}

TEST(StringFactoryTexts, UnknownAndEmptyIdentifiers)
{
    StringFactory& f = English();
    for (unsigned id : {274u, 275u, 1000u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        ASSERT_NE(f.GetString(id), nullptr) << id;
        EXPECT_STREQ(f.GetString(id), "") << id;
    }
    EXPECT_STREQ(f.GetString(3), "");
}

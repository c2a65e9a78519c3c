#include "catalogue/StringFactory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

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
    EXPECT_STREQ(f.GetString(273), "Tolm idle timeout");
}

// The texts are the console's own wording, odd spellings and near-duplicates
// included; a fingerprint of the whole table (FNV-1a over "id:text\0" for
// every fixed text, in order) makes an accidental edit anywhere fail loudly.
// Update the numbers only together with a deliberate change of wording.
TEST(StringFactoryTexts, WholeTableFingerprint)
{
    StringFactory& f = English();
    std::uint64_t hash = 0xcbf29ce484222325ull;
    std::size_t chars = 0;
    for (unsigned id = 0; id <= StringFactory::LAST_ID; ++id) {
        if (id == 2)
            continue;
        const std::string text = f.GetString(id);
        chars += text.size();
        const std::string record = std::to_string(id) + ":" + text + std::string(1, '\0');
        for (unsigned char c : record) {
            hash ^= c;
            hash *= 0x100000001b3ull;
        }
    }
    EXPECT_EQ(chars, 15799u);
    EXPECT_EQ(hash, 0x2d786d02e650145bull);
}

#include "ui/catalogue/StringFactory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

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

TEST(StringFactoryTexts, EveryKnownIdentifierHasText)
{
    StringFactory& f = English();
    for (unsigned id = 0; id <= StringFactory::LAST_ID; ++id) {
        if (id == 2)
            continue;  // asks the host; see ProductVersionTest
        const char* text = f.GetString(id);
        ASSERT_NE(text, nullptr) << id;
        if (id != 3) {
            EXPECT_GT(std::strlen(text), 0u) << id;
        }
    }
}

// Texts whose exact spelling is easy to get wrong: line feeds, doubled and
// trailing blanks, markup, near-duplicates and odd wording kept on purpose.
TEST(StringFactoryTexts, SpotTexts)
{
    StringFactory& f = English();
    const std::map<unsigned, std::string> expected = {
        {0, "Customize System/View Logs"},
        {29, "Press the corresponding key to view a log.\nPress <Q> to return to this screen."},
        {24, "It is possible to use a Linux DriverVM to control network and storage devices. This is "
             "recommended only for devices which Talvo does not natively support. Performance may be "
             "compromised when compared to native Talvo drivers, but the use of a DriverVM may allow "
             "you to utilize hardware that would not normally work with Talvo"},
        {57, "It is possible to use a Linux DriverVM to control network and storage devices. This is "
             "recommended only for devices which Talvo does not natively support. Performance may be "
             "compromised when compared to native Talvo drivers, but the use of a DriverVM may allow "
             "you to use hardware that would not normally work with Talvo"},
        {100, "VLAN ID (1-4094, or 4095 to access all VLANs):"},
        {137, "IP address is "},
        {163, "The old password you entered is incorrect"},
        {192, "Restore to default blocked setting (unblocked) "},
        {245, "{color:red}Warning! Restarting the management agents will disconnect all remote "
              "management software. This will affect all running services.\nCollection of extra "
              "troubleshooting information can take a noticeable amount of time.{/color}"},
        {251, "Please, wait ..."},
        {266, "Set the number of minutes that can elapse before you must log in after Talvo Shell is "
              "enabled (the availability timeout) and the timeout for idle interactive sessions.\n\n"
              "After the availability timeout expires any running shell instances will remain, but new "
              "sessions will not be allowed.  Changes to idle timeout will apply on next login, but will "
              "not affect any existing sessions.\n\nValues are in minutes. Use zero to disable timeouts. "
              "Maximum value is 1440 minutes."},
        {272, "Set the number of idle minutes that can elapse before you must log in again in Tolm.\n\n"
              "Value is in minutes. Use zero to disable the timeout. Maximum value is 1440 minutes."},
    };
    for (const auto& [id, text] : expected)
        EXPECT_EQ(f.GetString(id), text) << id;
}

// Exactly these identifiers share a text; any other repeat is a slip in the
// table (a line shifted or pasted twice).
TEST(StringFactoryTexts, SharedTextsAreExactlyTheKnownGroups)
{
    StringFactory& f = English();
    const std::set<std::set<unsigned>> groups = {
        {1, 168}, {5, 156}, {6, 252}, {8, 46}, {9, 133}, {10, 215}, {11, 66}, {15, 180},
        {48, 77}, {50, 101}, {51, 106}, {54, 124}, {67, 207}, {68, 138}, {69, 195}};

    std::map<std::string, std::set<unsigned>> byText;
    for (unsigned id = 0; id <= StringFactory::LAST_ID; ++id)
        if (id != 2 && id != 3)
            byText[f.GetString(id)].insert(id);
    std::set<std::set<unsigned>> found;
    for (const auto& [text, ids] : byText)
        if (ids.size() > 1)
            found.insert(ids);
    EXPECT_EQ(found, groups);

    for (const auto& group : groups)
        EXPECT_EQ(f.GetString(*group.begin()), f.GetString(*group.rbegin()));
    EXPECT_STREQ(f.GetString(168), "Shut Down/Restart");
    EXPECT_STREQ(f.GetString(195), "Restore dswitch");
}

// A fingerprint of the whole table (FNV-1a over "id:text\0" for every fixed
// text, in order), so an accidental edit anywhere fails loudly. Update the
// numbers only together with a deliberate change of wording.
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

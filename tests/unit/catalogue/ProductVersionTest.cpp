#include "catalogue/StringFactory.h"

#include "../host/HostRoot.h"

namespace {

// One test, because the line is cached for the life of the process: a failed
// read is not cached, the first good read is, and later host changes are not
// seen.
TEST(ProductVersion, BuiltFromHostRecordRetriedAfterFailureThenCached)
{
    Tolm::Test::HostRoot root;
    root.Set("/system/version", {{"product", "Tarn Hypervisor"},
                                 {"version", "8.0.2"},
                                 {"kernelRelease", "8.0.2-rel"},
                                 {"build", "22380479"}});
    root.Set("/faults/SysinfoGet", "sysinfo node unavailable");

    // A catalogue of its own, so the process-wide instance stays unset for
    // the lookup tests whatever order the tests run in.
    Tolm::en_US_Factory english;
    Tolm::StringFactory* f = &english;
    ASSERT_NE(f->GetString(2), nullptr);
    EXPECT_STREQ(f->GetString(2), "");
    EXPECT_STREQ(Tolm::StringFactory::GetProductVersionString(), "");

    root.State().Update([](nlohmann::json& s) { s["faults"].erase("SysinfoGet"); });
    const std::string expected = "Tarn Hypervisor 8.0.2 (Tarn 8.0.2-rel Build 22380479)";
    EXPECT_EQ(f->GetString(2), expected);
    EXPECT_EQ(Tolm::StringFactory::GetProductVersionString(), expected);

    root.Set("/system/version/product", "Other");
    root.Set("/faults/SysinfoGet", "gone");
    EXPECT_EQ(f->GetString(2), expected);
}

}  // namespace

#include "ui/catalogue/StringFactory.h"

#include "host/sim/StateFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;
using Tolm::StringFactory;

namespace {

// A simulated host root built from the typical fixture, with TOLM_ROOT
// pointing at it for the life of the object.
class SimulatedRoot {
public:
    SimulatedRoot()
    {
        std::string tmpl = (fs::temp_directory_path() / "tolm-catalogue-XXXXXX").string();
        _root = mkdtemp(tmpl.data());
        fs::create_directories(_root / "var/lib/hostsim");
        fs::create_directories(_root / "var/log");
        std::ifstream in(std::string(TOLM_SOURCE_DIR) + "/tests/fixtures/typical.json");
        Write(nlohmann::json::parse(in));
        setenv("TOLM_ROOT", _root.c_str(), 1);
    }
    ~SimulatedRoot()
    {
        unsetenv("TOLM_ROOT");
        std::error_code ec;
        fs::remove_all(_root, ec);
    }

    Tolm::HostSim::StateFile State() const
    {
        return Tolm::HostSim::StateFile((_root / "var/lib/hostsim/host.json").string());
    }
    void Write(const nlohmann::json& state) const { State().Write(state); }
    void Update(const std::function<void(nlohmann::json&)>& change) const { State().Update(change); }

private:
    fs::path _root;
};

}  // namespace

// One test, because the line is cached for the life of the process: a failed
// read is not cached, the first good read is, and later host changes are not
// seen.
TEST(ProductVersion, BuiltFromHostRecordRetriedAfterFailureThenCached)
{
    SimulatedRoot root;
    root.Update([](nlohmann::json& s) {
        s["system"]["version"] = {{"product", "Tarn Hypervisor"},
                                  {"version", "8.0.2"},
                                  {"kernelRelease", "8.0.2-rel"},
                                  {"build", "22380479"}};
        s["faults"]["SysinfoGet"] = "sysinfo node unavailable";
    });

    // A catalogue of its own, so the process-wide instance stays unset for
    // the lookup tests whatever order the tests run in.
    Tolm::en_US_Factory english;
    StringFactory* f = &english;
    ASSERT_NE(f->GetString(2), nullptr);
    EXPECT_STREQ(f->GetString(2), "");
    EXPECT_STREQ(StringFactory::GetProductVersionString(), "");

    root.Update([](nlohmann::json& s) { s["faults"].erase("SysinfoGet"); });
    const std::string expected = "Tarn Hypervisor 8.0.2 (Tarn 8.0.2-rel Build 22380479)";
    EXPECT_EQ(f->GetString(2), expected);
    EXPECT_EQ(StringFactory::GetProductVersionString(), expected);

    root.Update([](nlohmann::json& s) {
        s["system"]["version"]["product"] = "Other";
        s["faults"]["SysinfoGet"] = "gone";
    });
    EXPECT_EQ(f->GetString(2), expected);
}

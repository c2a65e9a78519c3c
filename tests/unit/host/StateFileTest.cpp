// The state file is shared by separate processes: changes must persist,
// land whole, and never be lost to a concurrent writer.
#include "HostRoot.h"

#include "host/HostCtlException.h"
#include "host/TarnCtl.h"

#include <csignal>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolm::Test {
namespace {

using HostCtl::Lib::HostCtlException;

// `call` throws the host library's exception with `text` in its message.
::testing::AssertionResult HostError(const std::function<void()>& call, const std::string& text)
{
    try {
        call();
        return ::testing::AssertionFailure() << "no exception";
    } catch (const HostCtlException& e) {
        if (std::string(e.what()).find(text) != std::string::npos) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << e.what();
    } catch (const std::exception& e) {
        return ::testing::AssertionFailure() << "not a host error: " << e.what();
    }
}

TEST(StateFile, KilledWriterLeavesAWholeFile)
{
    HostRoot root;
    // Pad the state so that each write takes a while.
    root.Set("/padding", std::string(512 << 10, 'x'));
    pid_t pid = ::fork();
    if (pid == 0) {
        HostSim::StateFile file(root.StatePath());
        for (int i = 0;; ++i)
            file.Update([&](nlohmann::json& s) { s["counter"] = i; });
    }
    for (int round = 0; round < 5; ++round) {
        ::usleep(30000);
        EXPECT_NO_THROW(root.Read());
    }
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    nlohmann::json state;
    ASSERT_NO_THROW(state = root.Read());
    EXPECT_TRUE(state.contains("counter"));
    EXPECT_EQ("US Default", state["system"]["keyboard"]["current"]);
}

TEST(StateFile, ConcurrentUpdatersLoseNothing)
{
    HostRoot root;
    root.Set("/counter", 0);
    constexpr int kChildren = 3, kUpdates = 60;
    std::vector<pid_t> children;
    for (int c = 0; c < kChildren; ++c) {
        pid_t pid = ::fork();
        if (pid == 0) {
            HostSim::StateFile file(root.StatePath());
            for (int i = 0; i < kUpdates; ++i)
                file.Update([](nlohmann::json& s) { s["counter"] = s["counter"].get<int>() + 1; });
            ::_exit(0);
        }
        children.push_back(pid);
    }
    for (pid_t pid : children) {
        int status = 0;
        ::waitpid(pid, &status, 0);
        EXPECT_EQ(0, status);
    }
    EXPECT_EQ(kChildren * kUpdates, root.Read()["counter"].get<int>());
}

// Whatever is wrong with a field, the console gets the host library's
// exception naming that field, never the JSON library's own (which nothing
// above the host library catches).
TEST(StateFile, IllTypedFieldIsAHostErrorNamingIt)
{
    struct Case {
        const char* pointer;
        nlohmann::json value;
        std::function<void()> call;
    };
    const std::vector<Case> cases = {
        {"/network/pnics/0/name", 5, [] { TarnCtl::Network::NetworkInfoImpl().GetPnics(); }},
        {"/network/kernelNics/0/ipv4", nullptr, [] { HostCtl::Network::TarnNic("tarn0").GetIpConfig(); }},
        {"/network/kernelNics/0/ipv6/addresses/0/prefixLength", "64",
         [] { HostCtl::Network::TarnNic("tarn0").GetIpConfig(); }},
        {"/advancedOptions/UserVars/TolmTimeOut/description", 12,
         [] { TarnCtl::Adv::AdvancedOptionImpl().FindOption("/UserVars/TolmTimeOut"); }},
        {"/smartCards/slots", "reader0", [] { TarnCtl::Hardware::SmartCardInfoImpl().GetSlots(); }},
        {"/hardware/vendor", 7, [] { TarnCtl::Hardware::HardwareInfoImpl().GetVendorName(); }},
    };
    for (const Case& c : cases) {
        HostRoot root;
        root.Set(c.pointer, c.value);
        EXPECT_TRUE(HostError(c.call, std::string("host state: ") + c.pointer));
    }
}

// Whatever stands at the state's path, reading it ends at once with a host
// error: a FIFO must not wait for a writer, /dev/zero must not fill memory.
TEST(StateFile, OnlyAWholeRegularFileOfSaneSizeIsRead)
{
    HostRoot root;
    const std::string path = root.StatePath();
    auto refused = [&](const char* what) {
        EXPECT_TRUE(HostError([] { TarnCtl::Hardware::HardwareInfoImpl().GetVendorName(); }, path)) << what;
        std::filesystem::remove_all(path);
    };
    std::filesystem::remove(path);
    refused("nothing");
    std::ofstream(path) << "{\"network\": [";
    EXPECT_TRUE(HostError([] { TarnCtl::Hardware::CpuInfoImpl().GetNumCpuPackages(); }, "corrupt"));
    std::filesystem::remove(path);
    ASSERT_EQ(0, ::mkfifo(path.c_str(), 0600));
    refused("FIFO");
    std::filesystem::create_symlink("/dev/zero", path);
    refused("/dev/zero");
    std::filesystem::create_directory(path);
    refused("directory");
    std::ofstream(path) << "{}";
    std::filesystem::resize_file(path, 17 << 20);
    refused("17 MiB file");
}

}  // namespace
}  // namespace Tolm::Test

// The state file is shared by separate processes: changes must persist,
// land whole, and never be lost to a concurrent writer.
#include "HostRoot.h"

#include "host/HostCtlException.h"
#include "host/TarnCtl.h"

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolm::Test {
namespace {

using HostCtl::Lib::HostCtlException;

// Runs `body` in a child process; returns its exit status.
template <typename F>
int InChild(F body)
{
    pid_t pid = ::fork();
    if (pid == 0) {
        int rc = 1;
        try {
            rc = body();
        } catch (...) {
        }
        ::_exit(rc);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(StateFile, ChangeMadeByAnotherProcessIsSeen)
{
    HostRoot root;
    ASSERT_EQ(0, InChild([] {
        TarnCtl::System::SystemInfoImpl().SetKeyboardLayout("German");
        return 0;
    }));
    EXPECT_EQ("German", TarnCtl::System::SystemInfoImpl().GetKeyboardLayout());
    EXPECT_EQ("German", root.Read()["system"]["keyboard"]["current"]);
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

TEST(StateFile, MissingOrCorruptStateIsAHostError)
{
    HostRoot root;
    std::filesystem::remove(root.StatePath());
    try {
        TarnCtl::Network::NetworkInfoImpl().GetPnics();
        FAIL() << "no exception";
    } catch (const HostCtlException& e) {
        EXPECT_NE(std::string::npos, std::string(e.what()).find(root.StatePath())) << e.what();
    }
    std::ofstream(root.StatePath()) << "{\"network\": [";
    try {
        TarnCtl::Hardware::CpuInfoImpl().GetNumCpuPackages();
        FAIL() << "no exception";
    } catch (const HostCtlException& e) {
        EXPECT_NE(std::string::npos, std::string(e.what()).find("corrupt")) << e.what();
    }
    // A field of the wrong type is named, not a crash.
    root.State().Write({{"hardware", {{"vendor", 7}}}});
    EXPECT_THROW(TarnCtl::Hardware::HardwareInfoImpl().GetVendorName(), HostCtlException);
}

TEST(StateFile, FailedChangeWritesNothing)
{
    HostRoot root;
    EXPECT_THROW(TarnCtl::System::SystemInfoImpl().SetKeyboardLayout("Klingon"), HostCtlException);
    EXPECT_EQ("US Default", root.Read()["system"]["keyboard"]["current"]);
}

}  // namespace
}  // namespace Tolm::Test

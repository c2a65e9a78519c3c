// The simulated host's root, and its writers racing in separate processes.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "passdb.h"

#include "harness/Console.h"
#include "harness/Process.h"

namespace Tolm::E2E {
namespace {

namespace fs = std::filesystem;

class HostSimRoot : public ::testing::Test {
protected:
    std::string Root() const { return host.Root().string(); }
    std::string Path(const std::string& rel) const { return host.RootPath(rel).string(); }

    Console host{"typical"};
};

TEST_F(HostSimRoot, InitLaysOutToolsInsideTheRootAndRenewsOnlyARoot)
{
    // Every tool script names its own root, so a tool run by the console
    // never touches another test's host.
    for (const auto& entry : fs::directory_iterator(Path("sbin")))
        EXPECT_NE(ReadFile(entry.path()).find("--root '" + Root() + "'"), std::string::npos) << entry.path();

    // A new init replaces the root, but a folder that is not one is never wiped.
    const std::string hostsim = (BinDir() / "tolm-hostsim").string();
    std::ofstream(Path("stray")) << "x";
    ASSERT_EQ(RunCapture({hostsim, "init", Root()}).status, 0);
    EXPECT_FALSE(fs::exists(Path("stray")));
    const std::string other = Root() + "-other";
    fs::create_directories(other);
    std::ofstream(other + "/precious") << "keep";
    EXPECT_NE(RunCapture({hostsim, "init", other}).status, 0);
    EXPECT_TRUE(fs::exists(other + "/precious"));
    EXPECT_NE(RunCapture({hostsim, "init", Root(), "--fixture", "no-such-fixture"}).status, 0);
}

// The password file has two writers in separate processes: a card insert
// adds the card's user, the PAM password step rewrites a password. Racing
// them must lose no account.
TEST_F(HostSimRoot, PasswordWritersLoseNoAccount)
{
    const std::string passdb = Path("etc/pellor/passdb");
    pid_t changer = ::fork();
    if (changer == 0) {
        for (int i = 0;; ++i)
            PassdbChange(passdb.c_str(), "root", ("pw" + std::to_string(i % 10)).c_str(), nullptr, PASSDB_SET);
    }
    constexpr int kCards = 30;
    for (int i = 0; i < kCards; ++i)
        host.HostSim({"card", "insert", "racer" + std::to_string(i)});
    ::kill(changer, SIGKILL);
    ::waitpid(changer, nullptr, 0);
    std::string text = ReadFile(passdb);
    EXPECT_EQ(text.find("root:tolmdemo:tolm"), std::string::npos);  // the changer ran
    for (int i = 0; i < kCards; ++i)
        EXPECT_NE(text.find("racer" + std::to_string(i) + ":1234:tolm\n"), std::string::npos) << i << text;
    EXPECT_NE(text.find("\nsshonly:sshonly:sshd\n"), std::string::npos) << text;
}

// A writer killed mid-write leaves its copy behind; the next writer, holding
// the lock, knows it is stale and removes it.
TEST_F(HostSimRoot, WritersRemoveCopiesLeftByDeadWriters)
{
    const std::string stateCopy = Path("var/lib/hostsim/host.json.tmp.99999");
    const std::string passdbCopy = Path("etc/pellor/passdb.tmp.a1b2c3");
    std::ofstream(stateCopy) << "{\"half\":";
    std::ofstream(passdbCopy) << "root:hal";
    host.HostSim({"set", "/network/dns/domain", "\"example.net\""});
    host.HostSim({"card", "insert", "cleaner"});
    EXPECT_FALSE(fs::exists(stateCopy));
    EXPECT_FALSE(fs::exists(passdbCopy));
}

// The pid file may name a process that is not the console (it died and the
// pid was reused): a card change must leave that process alone.
TEST_F(HostSimRoot, CardChangeSignalsNoStranger)
{
    pid_t stranger = ::fork();
    if (stranger == 0) {
        ::execl("/bin/sleep", "sleep", "60", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    std::ofstream(Path("var/run/tolm.pid")) << stranger << "\n";
    host.HostSim({"card", "insert", "stranger"});
    host.HostSim({"card", "remove", "stranger"});
    EXPECT_EQ(::waitpid(stranger, nullptr, WNOHANG), 0) << "SIGUSR1 ended the process";
    ::kill(stranger, SIGKILL);
    ::waitpid(stranger, nullptr, 0);
    // Nor does a pid file naming a process that is gone fail the change.
    host.HostSim({"card", "insert", "late"});
}

}  // namespace
}  // namespace Tolm::E2E

// The simulated host as the console meets it: a root made by tolm-hostsim,
// its tool scripts run as real processes and checked by their effect on the
// shared state. Tools the console already drives end to end (lockdown,
// stopping machines, backup, reset, power off, services, advanced options,
// pings, agent restarts) and the root's PAM set-up are checked by the
// console's own tests.
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
using nlohmann::json;

class SimRoot : public ::testing::Test {
protected:
    std::string Root() const { return host.Root().string(); }
    std::string Path(const std::string& rel) const { return host.RootPath(rel).string(); }
    // Runs a script of the root, e.g. Tool("bin/orla-cmd", {...}).
    RunResult Tool(const std::string& script, std::vector<std::string> args = {})
    {
        args.insert(args.begin(), Path(script));
        return RunCapture(args);
    }
    // Runs tolm-hostsim; unlike Console::HostSim a failure is an answer here.
    RunResult Sim(std::vector<std::string> args, const std::string& root = "")
    {
        args.insert(args.begin(), {(BinDir() / "tolm-hostsim").string(), "--root", root.empty() ? Root() : root});
        return RunCapture(args);
    }
    json State(std::string_view pointer) const { return host.State(pointer); }

    Console host{"typical"};
};
using HostSimRoot = SimRoot;
using HostSimTools = SimRoot;

TEST_F(HostSimRoot, InitLaysOutToolsThatStayInsideTheRoot)
{
    // Every tool script names its own root, so a tool run by the console
    // never touches another test's host.
    for (const auto& entry : fs::directory_iterator(Path("sbin"))) {
        EXPECT_NE(ReadFile(entry.path()).find("--root '" + Root() + "'"), std::string::npos) << entry.path();
    }
    EXPECT_EQ(Tool("bin/sh", {"-c", "exit 7"}).status, 7);
    EXPECT_NE(host.ReadRootFile("etc/hosts").find("192.168.10.21\ttarnhost01.lab.example.com"), std::string::npos);
}

TEST_F(HostSimRoot, RenewReplacesTheRootAndLoginFlagFollowsTheFixture)
{
    const std::string hostsim = (BinDir() / "tolm-hostsim").string();
    json fixture = State("");
    fixture["system"]["loginEnabled"] = false;
    fixture["network"]["dns"]["hostname"] = "quiet";
    const std::string fixturePath = Root() + "-fixture.json";
    std::ofstream(fixturePath) << fixture.dump();
    std::ofstream(Path("stray")) << "x";

    RunResult init = RunCapture({hostsim, "init", Root(), "--fixture", fixturePath});
    ASSERT_EQ(init.status, 0) << init.err;
    EXPECT_FALSE(fs::exists(Path("stray")));
    EXPECT_FALSE(fs::exists(Path("var/run/pellor/show-tolm-login")));
    EXPECT_EQ(State("/network/dns/hostname"), "quiet");

    // A folder that is not a host root is never wiped.
    const std::string other = Root() + "-other";
    fs::create_directories(other);
    std::ofstream(other + "/precious") << "keep";
    EXPECT_NE(RunCapture({hostsim, "init", other}).status, 0);
    EXPECT_TRUE(fs::exists(other + "/precious"));
    EXPECT_NE(RunCapture({hostsim, "init", Root(), "--fixture", "no-such-fixture"}).status, 0);
}

TEST_F(HostSimTools, OrlaCmdRejectsUnknownUsersWith255AndAcceptsTheConsoleAccount)
{
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "mallory", "internalsvc/refresh"}).status, 255);
    EXPECT_TRUE(State("/tools/counts/refresh").is_null());

    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "tolm", "internalsvc/refresh"}).status, 0);
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "internalsvc/refresh"}).status, 0);
    EXPECT_EQ(State("/tools/counts/refresh"), 2);

    host.SetValue("/users", {{"operator", json::object()}});
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "operator", "internalsvc/refresh"}).status, 0);

    EXPECT_NE(Tool("bin/orla-cmd", {"-U", "root", "no/such_command"}).status, 0);
    EXPECT_NE(Tool("bin/orla-cmd", {"internalsvc/refresh"}).status, 0);
}

TEST_F(HostSimTools, MisusedToolsPrintAUsageLineAndChangeNothing)
{
    const std::vector<std::pair<std::string, std::vector<std::string>>> misuse = {
        {"bin/orla-cmd", {"-X"}},
        {"bin/powerOffVms", {"--now"}},
        {"sbin/talvocli", {"system", "settings", "advanced", "set", "-o"}},
        {"sbin/tarnping", {}},
        {"sbin/firmwareConfig.sh", {"--everything"}},
        {"sbin/services.sh", {"reload"}},
        {"sbin/reboot", {"-x"}},
    };
    const json before = host.State("");
    for (const auto& [tool, args] : misuse) {
        SCOPED_TRACE(tool);
        const RunResult r = Tool(tool, args);
        EXPECT_NE(r.status, 0);
        EXPECT_NE(r.err.find("usage"), std::string::npos) << r.err;
    }
    EXPECT_EQ(host.State(""), before) << "a misused tool changes nothing";
}

TEST_F(HostSimTools, GrabCimDataPrintsTagsAndFirmwareVersions)
{
    host.SetValue("/hardware/assetTag", "LAB-0042");
    host.SetValue("/hardware/firmware", {{"BIOS", "2.19.1"}, {"BMC", "7.00.00.171"}});
    RunResult r = Tool("sbin/grabCIMData");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out,
              "CIM_Chassis OtherIdentifyingInfo ServiceTag=4XK9J53\n"
              "CIM_Chassis OtherIdentifyingInfo AssetTag=LAB-0042\n"
              "OMC_SMASHFirmwareIdentity VersionString BIOS=2.19.1\n"
              "OMC_MCFirmwareIdentity VersionString BMC=7.00.00.171\n");
    EXPECT_EQ(Tool("sbin/grabCIMData", {"OMC_MCFirmwareIdentity"}).out,
              "OMC_MCFirmwareIdentity VersionString BMC=7.00.00.171\n");
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
        EXPECT_EQ(Sim({"card", "insert", "racer" + std::to_string(i)}).status, 0);
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
    ASSERT_EQ(Sim({"set", "/network/dns/domain", "\"example.net\""}).status, 0);
    ASSERT_EQ(Sim({"card", "insert", "cleaner"}).status, 0);
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
    ASSERT_EQ(Sim({"card", "insert", "stranger"}).status, 0);
    ASSERT_EQ(Sim({"card", "remove", "stranger"}).status, 0);
    EXPECT_EQ(::waitpid(stranger, nullptr, WNOHANG), 0) << "SIGUSR1 ended the process";
    ::kill(stranger, SIGKILL);
    ::waitpid(stranger, nullptr, 0);
    // Nor does a pid file naming a process that is gone fail the change.
    EXPECT_EQ(Sim({"card", "insert", "late"}).status, 0);
}

}  // namespace
}  // namespace Tolm::E2E

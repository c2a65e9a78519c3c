// The simulated host tools, run as real processes through the scripts of a
// fresh root, each checked by its effect on the shared state. Tools the
// console already drives end to end (lockdown, stopping machines, backup,
// reset, power off) are checked by those tests.
#include "hostsim_support.h"

#include <filesystem>

namespace Tolm::HostSimTest {
namespace {

using nlohmann::json;

class HostSimTools : public HostRoot {};

TEST_F(HostSimTools, OrlaCmdRejectsUnknownUsersWith255AndAcceptsTheConsoleAccount)
{
    Result r = Tool("bin/orla-cmd", {"-U", "mallory", "internalsvc/refresh"});
    EXPECT_EQ(r.status, 255);
    EXPECT_FALSE(State().contains(json::json_pointer("/tools/counts/refresh")));

    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "tolm", "internalsvc/refresh"}).status, 0);
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "internalsvc/refresh"}).status, 0);
    EXPECT_EQ(State()["tools"]["counts"]["refresh"], 2);

    Change("/users", {{"operator", json::object()}});
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "operator", "internalsvc/refresh"}).status, 0);

    EXPECT_NE(Tool("bin/orla-cmd", {"-U", "root", "no/such_command"}).status, 0);
    EXPECT_NE(Tool("bin/orla-cmd", {"internalsvc/refresh"}).status, 0);
}

TEST_F(HostSimTools, ShellAndSshFollowManagementCommandsAndInitScripts)
{
    EXPECT_EQ(Tool("bin/sh", {Path("etc/init.d/SSH"), "status"}).status, 3);
    // A disabled service is not started.
    EXPECT_NE(Tool("bin/orla-cmd", {"-U", "root", "hostsvc/start_ssh"}).status, 0);

    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "hostsvc/enable_ssh"}).status, 0);
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "hostsvc/start_ssh"}).status, 0);
    EXPECT_EQ(Tool("bin/sh", {Path("etc/init.d/SSH"), "status"}).status, 0);
    EXPECT_EQ(Tool("bin/sh", {Path("etc/init.d/TalvoShell"), "status"}).status, 3);

    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "hostsvc/enable_talvo_shell"}).status, 0);
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "hostsvc/start_talvo_shell"}).status, 0);
    EXPECT_EQ(Tool("bin/sh", {Path("etc/init.d/TalvoShell"), "status"}).status, 0);
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "hostsvc/stop_talvo_shell"}).status, 0);
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "hostsvc/disable_talvo_shell"}).status, 0);
    json shell = State()["services"]["shell"];
    EXPECT_EQ(shell["enabled"], false);
    EXPECT_EQ(shell["running"], false);

    // A planted fault fails the command; the init script still stops the service.
    Change("/faults/hostsvc~1stop_ssh", "agent busy");
    Result stop = Tool("bin/orla-cmd", {"-U", "root", "hostsvc/stop_ssh"});
    EXPECT_NE(stop.status, 0);
    EXPECT_NE(stop.err.find("agent busy"), std::string::npos);
    EXPECT_EQ(State()["services"]["ssh"]["running"], true);
    EXPECT_EQ(Tool("bin/sh", {Path("etc/init.d/SSH"), "stop"}).status, 0);
    EXPECT_EQ(Tool("bin/sh", {Path("etc/init.d/SSH"), "status"}).status, 3);
    EXPECT_NE(Tool("etc/init.d/SSH", {"bounce"}).status, 0);
}

TEST_F(HostSimTools, AdvancedOptionsAreSetWithinTheirLimitsAndReadBack)
{
    auto set = [&](const char* cli, std::vector<std::string> option) {
        std::vector<std::string> args{"system", "settings", "advanced", "set", "-o"};
        args.insert(args.end(), option.begin(), option.end());
        return Tool(cli, args).status;
    };
    for (const char* cli : {"sbin/talvocli", "sbin/nodecli"}) {
        EXPECT_EQ(set(cli, {"/UserVars/TalvoShellTimeOut", "-i", "86400"}), 0);
        EXPECT_EQ(State()["advancedOptions"]["UserVars"]["TalvoShellTimeOut"]["value"], 86400);
        Change("/advancedOptions/UserVars/TalvoShellTimeOut/value", 0);
    }
    EXPECT_NE(set("sbin/talvocli", {"/UserVars/TalvoShellTimeOut", "-i", "86401"}), 0);
    EXPECT_NE(set("sbin/talvocli", {"/UserVars/Missing", "-i", "1"}), 0);
    EXPECT_NE(set("sbin/talvocli", {"/UserVars/TolmTimeOut", "-i", "ten"}), 0);
    EXPECT_NE(set("sbin/talvocli", {"/UserVars"}), 0);
    EXPECT_EQ(State()["advancedOptions"]["UserVars"]["TalvoShellTimeOut"]["value"], 0);

    Change("/advancedOptions/UserVars/TalvoShellInteractiveTimeOut/value", 900);
    EXPECT_EQ(Tool("sbin/talvocfg-advcfg", {"-g", "/UserVars/TalvoShellInteractiveTimeOut"}).out,
              "Value of TalvoShellInteractiveTimeOut is 900\n");
    EXPECT_EQ(Tool("sbin/talvocfg-advcfg", {"-q", "-g", "/UserVars/TalvoShellInteractiveTimeOut"}).out, "900\n");
    EXPECT_NE(Tool("sbin/talvocfg-advcfg", {"-g", "/UserVars/Missing"}).status, 0);
}

TEST_F(HostSimTools, TarnPingAnswersFromReachabilityLikePing)
{
    Change("/tools/pingIntervalMs", 0);
    Result ok = Tool("sbin/tarnping", {"192.168.10.1", "-I", "tarn0"});
    EXPECT_EQ(ok.status, 0);
    EXPECT_NE(ok.out.find("3 packets transmitted, 3 packets received"), std::string::npos) << ok.out;

    Result lost = Tool("sbin/tarnping", {"192.168.10.99"});
    EXPECT_EQ(lost.status, 1);
    EXPECT_NE(lost.out.find("100% packet loss"), std::string::npos);

    Change("/network/reachableAddresses/-", "192.168.10.99");
    EXPECT_EQ(Tool("sbin/tarnping", {"192.168.10.99", "-c", "1"}).status, 0);
    EXPECT_EQ(Tool("sbin/tarnping", {"fe80::1%tarn0", "-I", "tarn0"}).status, 1);
    EXPECT_EQ(Tool("sbin/tarnping", {"192.168.10.1", "-I", "tarn9"}).status, 2);
    EXPECT_EQ(Tool("sbin/tarnping", {"not-an-address"}).status, 2);
    EXPECT_NE(Tool("sbin/tarnping").status, 0);
}

TEST_F(HostSimTools, AgentRestartAndLiveCore)
{
    Result core = Tool("sbin/tarnbacktrace", {"-w", "-n", "hagentd", "-o", "hagentd-restart%", "-d", "/var/log/"});
    EXPECT_EQ(core.status, 0) << core.err;
    int cores = 0;
    for (const auto& entry : std::filesystem::directory_iterator(Path("var/log")))
        cores += entry.path().filename().string().rfind("hagentd-restart", 0) == 0;
    EXPECT_EQ(cores, 1);

    EXPECT_EQ(Tool("bin/sh", {Path("sbin/services.sh"), "stop"}).status, 0);
    EXPECT_EQ(State()["services"]["agents"]["running"], false);
    // With the agents down there is nothing to dump.
    EXPECT_NE(Tool("sbin/tarnbacktrace", {"-w", "-n", "hagentd", "-o", "x", "-d", "/var/log/"}).status, 0);
    EXPECT_EQ(Tool("bin/sh", {Path("sbin/services.sh"), "start"}).status, 0);
    EXPECT_EQ(State()["services"]["agents"]["running"], true);
    EXPECT_EQ(State()["services"]["agents"]["restarts"], 1);

    EXPECT_NE(Tool("sbin/tarnbacktrace", {"-w", "-n", "sshd", "-o", "x", "-d", "/var/log/"}).status, 0);
    EXPECT_NE(Tool("sbin/services.sh", {"reload"}).status, 0);
}

TEST_F(HostSimTools, RestartEndsWithTheBootVerb)
{
    EXPECT_EQ(Tool("sbin/reboot", {"-f"}).status, 0);
    EXPECT_EQ(State()["power"]["state"], "restarting");
    EXPECT_EQ(HostSim({"boot"}).status, 0);
    EXPECT_EQ(State()["power"]["state"], "running");
    EXPECT_EQ(State()["power"]["bootCount"], 2);
    EXPECT_NE(Tool("bin/reboot", {"--now"}).status, 0);
}

TEST_F(HostSimTools, GrabCimDataPrintsTagsAndFirmwareVersions)
{
    Change("/hardware/assetTag", "LAB-0042");
    Change("/hardware/firmware", {{"BIOS", "2.19.1"}, {"BMC", "7.00.00.171"}});
    Result r = Tool("sbin/grabCIMData");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out,
              "CIM_Chassis OtherIdentifyingInfo ServiceTag=4XK9J53\n"
              "CIM_Chassis OtherIdentifyingInfo AssetTag=LAB-0042\n"
              "OMC_SMASHFirmwareIdentity VersionString BIOS=2.19.1\n"
              "OMC_MCFirmwareIdentity VersionString BMC=7.00.00.171\n");
    EXPECT_EQ(Tool("sbin/grabCIMData", {"OMC_MCFirmwareIdentity"}).out,
              "OMC_MCFirmwareIdentity VersionString BMC=7.00.00.171\n");
}

}  // namespace
}  // namespace Tolm::HostSimTest

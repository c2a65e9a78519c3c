// The simulated host tools, run as real processes through the scripts of a
// fresh root, each checked by its effect on the shared state.
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

TEST_F(HostSimTools, LockdownEntersAndExitsOnceAndRefusesWhenImpossible)
{
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "tolm", "orlasvc/auth/lockdown_is_enabled"}).out, "false\n");
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "tolm", "orlasvc/auth/lockdown_is_possible"}).out, "true\n");

    Result exit = Tool("bin/orla-cmd", {"-U", "tolm", "orlasvc/auth/lockdown_mode_exit"});
    EXPECT_NE(exit.status, 0);
    EXPECT_FALSE(exit.err.empty());

    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "tolm", "orlasvc/auth/lockdown_mode_enter"}).status, 0);
    EXPECT_EQ(State()["system"]["lockdown"]["enabled"], true);
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "tolm", "orlasvc/auth/lockdown_is_enabled"}).out, "true\n");
    Result again = Tool("bin/orla-cmd", {"-U", "tolm", "orlasvc/auth/lockdown_mode_enter"});
    EXPECT_NE(again.status, 0);
    EXPECT_NE(again.err.find("already"), std::string::npos) << again.err;

    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "tolm", "orlasvc/auth/lockdown_mode_exit"}).status, 0);
    EXPECT_EQ(State()["system"]["lockdown"]["enabled"], false);

    Change("/system/lockdown/possible", false);
    EXPECT_NE(Tool("bin/orla-cmd", {"-U", "tolm", "orlasvc/auth/lockdown_mode_enter"}).status, 0);
    EXPECT_EQ(State()["system"]["lockdown"]["enabled"], false);
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

TEST_F(HostSimTools, VirtualMachinesStopByPolicyOrByForce)
{
    Change("/vms", json::array({{{"name", "a"}, {"powerState", "poweredOn"}, {"shutdownPolicy", "suspend"}},
                                {{"name", "b"}, {"powerState", "poweredOn"}, {"autoStart", true}},
                                {{"name", "c"}, {"powerState", "poweredOff"}}}));
    EXPECT_EQ(Tool("bin/orla-cmd", {"-U", "root", "hostsvc/autostartmanager/autostop"}).status, 0);
    json vms = State()["vms"];
    EXPECT_EQ(vms[0]["powerState"], "poweredOn");
    EXPECT_EQ(vms[1]["powerState"], "poweredOff");

    EXPECT_EQ(Tool("bin/powerOffVms").status, 0);
    EXPECT_EQ(State()["vms"][0]["powerState"], "suspended");

    Change("/vms/0/powerState", "poweredOn");
    EXPECT_EQ(Tool("bin/powerOffVms", {"--terminate"}).status, 0);
    EXPECT_EQ(State()["vms"][0]["powerState"], "poweredOff");

    Result bad = Tool("bin/powerOffVms", {"--now"});
    EXPECT_NE(bad.status, 0);
    EXPECT_NE(bad.err.find("usage:"), std::string::npos);
}

TEST_F(HostSimTools, AdvancedOptionsAreSetWithinTheirLimitsAndReadBack)
{
    for (const char* cli : {"sbin/talvocli", "sbin/nodecli"}) {
        EXPECT_EQ(Tool(cli, {"system", "settings", "advanced", "set", "-o", "/UserVars/TalvoShellTimeOut", "-i",
                             "86400"})
                      .status,
                  0);
        EXPECT_EQ(State()["advancedOptions"]["UserVars"]["TalvoShellTimeOut"]["value"], 86400);
        Change("/advancedOptions/UserVars/TalvoShellTimeOut/value", 0);
    }
    EXPECT_NE(Tool("sbin/talvocli", {"system", "settings", "advanced", "set", "-o", "/UserVars/TalvoShellTimeOut",
                                     "-i", "86401"})
                  .status,
              0);
    EXPECT_NE(Tool("sbin/talvocli", {"system", "settings", "advanced", "set", "-o", "/UserVars/Missing", "-i", "1"})
                  .status,
              0);
    EXPECT_NE(Tool("sbin/talvocli", {"system", "settings", "advanced", "set", "-o", "/UserVars/TolmTimeOut", "-i",
                                     "ten"})
                  .status,
              0);
    EXPECT_NE(Tool("sbin/talvocli", {"system", "settings", "advanced", "set", "-o", "/UserVars"}).status, 0);
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

TEST_F(HostSimTools, BackupRecordsOrFailsWithThePlantedFault)
{
    EXPECT_EQ(Tool("sbin/backup.sh").status, 0);
    EXPECT_EQ(State()["tools"]["counts"]["backup"], 1);
    Change("/faults/backup.sh", "bootbank is read-only");
    Result r = Tool("sbin/backup.sh");
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.err.find("bootbank is read-only"), std::string::npos);
    EXPECT_EQ(State()["tools"]["counts"]["backup"], 1);
}

TEST_F(HostSimTools, FactoryResetRestoresSettingsButNotPowerOrFaults)
{
    Change("/network/dns/hostname", "renamed");
    Change("/system/loginEnabled", false);
    Change("/faults/GetPnics", "broken");
    ASSERT_EQ(Tool("sbin/firmwareConfig.sh").status, 2);
    EXPECT_EQ(State()["network"]["dns"]["hostname"], "renamed");

    EXPECT_EQ(Tool("bin/sh", {"-c", Path("sbin/firmwareConfig.sh") + " --reset-only > /dev/null 2>&1"}).status, 0);
    json state = State();
    EXPECT_EQ(state["network"]["dns"]["hostname"], "tarnhost01");
    EXPECT_EQ(state["system"]["loginEnabled"], true);
    EXPECT_EQ(state["faults"]["GetPnics"], "broken");
    EXPECT_TRUE(std::filesystem::exists(Path("var/run/pellor/show-tolm-login")));
}

TEST_F(HostSimTools, PowerToolsSetThePowerState)
{
    EXPECT_EQ(Tool("sbin/reboot", {"-f"}).status, 0);
    EXPECT_EQ(State()["power"]["state"], "restarting");
    EXPECT_EQ(HostSim({"boot"}).status, 0);
    EXPECT_EQ(State()["power"]["state"], "running");
    EXPECT_EQ(State()["power"]["bootCount"], 2);

    // The console runs "poweroff" through the shell with the root's tools first on PATH.
    Result r = RunProcess({"/bin/sh", "-c", "poweroff"}, {"PATH=" + Path("sbin") + ":" + Path("bin") + ":/usr/bin:/bin"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(State()["power"]["state"], "poweredOff");
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

TEST_F(HostSimTools, GetAndSetByPointer)
{
    EXPECT_EQ(HostSim({"set", "/network/dns/hostname", "\"esx-b\""}).status, 0);
    Result r = HostSim({"get", "/network/dns/hostname"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "\"esx-b\"\n");
    EXPECT_NE(HostSim({"get", "/no/such"}).status, 0);
    EXPECT_NE(HostSim({"set", "/network/dns/hostname", "not json"}).status, 0);
    EXPECT_EQ(State()["network"]["dns"]["hostname"], "esx-b");
    EXPECT_EQ(HostSim({"tool", "no-such-tool"}).status, 127);
}

}  // namespace
}  // namespace Tolm::HostSimTest

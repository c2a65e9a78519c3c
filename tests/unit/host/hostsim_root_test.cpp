// Creating a host root: its files, its PAM set-up (checked through real PAM
// calls under pam_wrapper) and the smart-card signal to the console.
#include "hostsim_support.h"

#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <security/pam_appl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolm::HostSimTest {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class HostSimRoot : public HostRoot {};

TEST_F(HostSimRoot, InitLaysOutTheHostFilesAndToolScripts)
{
    for (const char* file : {"var/lib/hostsim/host.json", "var/run/pellor/show-tolm-login", "etc/hosts",
                             "var/log/syslog.log", "var/log/tarn.log", "var/log/sysboot.log", "var/log/hagentd.log",
                             "var/log/cagent.log", "var/log/haagent.log", "var/log/evtd.log", "etc/pellor/demo-login"})
        EXPECT_TRUE(fs::is_regular_file(Path(file))) << file;
    for (const char* tool : {"bin/orla-cmd", "bin/powerOffVms", "sbin/talvocli", "sbin/nodecli", "sbin/talvocfg-advcfg",
                             "sbin/tarnping", "sbin/tarnbacktrace", "sbin/backup.sh", "sbin/firmwareConfig.sh",
                             "sbin/services.sh", "sbin/grabCIMData", "etc/init.d/TalvoShell", "etc/init.d/SSH",
                             "sbin/poweroff", "sbin/reboot", "bin/poweroff", "bin/reboot"}) {
        EXPECT_EQ(::access(Path(tool).c_str(), X_OK), 0) << tool;
        EXPECT_NE(ReadText(Path(tool)).find("--root '" + Root() + "'"), std::string::npos) << tool;
    }
    EXPECT_EQ(RunProcess({Path("bin/sh"), "-c", "exit 7"}).status, 7);
    EXPECT_TRUE(fs::exists(Path("bin/less")));
    EXPECT_NE(ReadText(Path("etc/hosts")).find("192.168.10.21\ttarnhost01.lab.example.com"), std::string::npos);

    // Pages end at lines starting with "$".
    std::ifstream support(Path("etc/pellor/support"));
    int pageEnds = 0;
    for (std::string line; std::getline(support, line);)
        pageEnds += !line.empty() && line[0] == '$';
    EXPECT_GE(pageEnds, 2);
}

TEST_F(HostSimRoot, CertificateAndHostKeysAreRealOnes)
{
    Result cert = RunProcess({Path("bin/openssl"), "x509", "-in", Path("etc/pellor/ssl/nox.crt"), "-noout", "-sha1",
                              "-fingerprint"});
    EXPECT_EQ(cert.status, 0) << cert.err;
    // OpenSSL 3 writes "sha1 Fingerprint=", older ones "SHA1 Fingerprint=".
    EXPECT_EQ(cert.out.find(" Fingerprint="), 4u) << cert.out;
    for (const char* key : {"etc/ssh/ssh_host_rsa_key", "etc/ssh/ssh_host_dsa_key"}) {
        Result r = RunProcess({Path("bin/ssh-keygen"), "-l", "-f", Path(key)});
        EXPECT_EQ(r.status, 0) << key << r.err;
    }
}

TEST_F(HostSimRoot, RenewReplacesTheRootAndLoginFlagFollowsTheFixture)
{
    json fixture = State();
    fixture["system"]["loginEnabled"] = false;
    fixture["network"]["dns"]["hostname"] = "quiet";
    std::string fixturePath = Root() + "-fixture.json";
    std::ofstream(fixturePath) << fixture.dump();
    std::ofstream(Path("stray")) << "x";

    Init(fixturePath);
    fs::remove(fixturePath);
    EXPECT_FALSE(fs::exists(Path("stray")));
    EXPECT_FALSE(fs::exists(Path("var/run/pellor/show-tolm-login")));
    EXPECT_EQ(State()["network"]["dns"]["hostname"], "quiet");

    // A folder that is not a host root is never wiped.
    std::string other = Root() + "-other";
    fs::create_directories(other);
    std::ofstream(other + "/precious") << "keep";
    EXPECT_NE(RunProcess({HostSimBinary(), "init", other}).status, 0);
    EXPECT_TRUE(fs::exists(other + "/precious"));
    fs::remove_all(other);
    EXPECT_NE(RunProcess({HostSimBinary(), "init", Root(), "--fixture", "no-such-fixture"}).status, 0);
}

// Child side of the PAM check: runs under pam_wrapper (LD_PRELOAD), which
// supplies pam_start and friends, so they are looked up at run time.
int ProbeConversation(int count, const pam_message** msgs, pam_response** resp, void* password)
{
    *resp = static_cast<pam_response*>(calloc(count, sizeof(pam_response)));
    for (int i = 0; i < count; ++i)
        (*resp)[i].resp = strdup(static_cast<const char*>(password));
    (void)msgs;
    return PAM_SUCCESS;
}

TEST(HostSimPamProbe, Authenticate)
{
    const char* user = std::getenv("HOSTSIM_PROBE_USER");
    const char* password = std::getenv("HOSTSIM_PROBE_PASSWORD");
    if (user == nullptr || password == nullptr)
        GTEST_SKIP() << "runs only as the child of HostSimPam.PamAcceptsTheDemoUserAndRefusesOthersTheWayTheConsoleNeeds";
    using Start = int (*)(const char*, const char*, const pam_conv*, pam_handle_t**);
    using Step = int (*)(pam_handle_t*, int);
    auto start = reinterpret_cast<Start>(dlsym(RTLD_DEFAULT, "pam_start"));
    auto authenticate = reinterpret_cast<Step>(dlsym(RTLD_DEFAULT, "pam_authenticate"));
    auto account = reinterpret_cast<Step>(dlsym(RTLD_DEFAULT, "pam_acct_mgmt"));
    auto end = reinterpret_cast<Step>(dlsym(RTLD_DEFAULT, "pam_end"));
    ASSERT_TRUE(start && authenticate && account && end) << "pam_wrapper not preloaded";
    pam_conv conv{ProbeConversation, const_cast<char*>(password)};
    pam_handle_t* handle = nullptr;
    int rc = start("tolm", user, &conv, &handle);
    int auth = rc == PAM_SUCCESS ? authenticate(handle, PAM_SILENT) : rc;
    int acct = auth == PAM_SUCCESS ? account(handle, PAM_SILENT) : -1;
    end(handle, acct == -1 ? auth : acct);
    printf("PAMPROBE auth=%d acct=%d\n", auth, acct);
}

class HostSimPam : public HostRoot {
protected:
    std::string Probe(const std::string& user, const std::string& password)
    {
        Result r = RunProcess({fs::read_symlink("/proc/self/exe").string(), "--gtest_filter=HostSimPamProbe.*"},
                              {"LD_PRELOAD=libpam_wrapper.so", "PAM_WRAPPER=1",
                               "PAM_WRAPPER_SERVICE_DIR=" + Path("etc/pam.d"), "HOSTSIM_PROBE_USER=" + user,
                               "HOSTSIM_PROBE_PASSWORD=" + password});
        auto at = r.out.find("PAMPROBE ");
        if (at == std::string::npos)
            return "no answer: " + r.out + r.err;
        return r.out.substr(at + 9, r.out.find('\n', at) - at - 9);
    }
};

TEST_F(HostSimPam, PamAcceptsTheDemoUserAndRefusesOthersTheWayTheConsoleNeeds)
{
    std::string login = ReadText(Path("etc/pellor/demo-login"));
    ASSERT_NE(login.find("root"), std::string::npos);
    ASSERT_NE(login.find("tolmdemo"), std::string::npos);
    EXPECT_EQ(Probe("root", "tolmdemo"), "auth=0 acct=0");
    EXPECT_EQ(Probe("root", "wrong"), "auth=7 acct=-1");  // PAM_AUTH_ERR
    EXPECT_EQ(Probe("nobody", "x"), "auth=7 acct=-1");
    EXPECT_EQ(Probe("sshonly", "sshonly"), "auth=0 acct=6");  // PAM_PERM_DENIED

    // An inserted card's user id logs in with the card PIN.
    ASSERT_EQ(HostSim({"card", "insert", "alice"}).status, 0);
    EXPECT_EQ(Probe("alice", "1234"), "auth=0 acct=0");
}

TEST_F(HostSimRoot, CardChangesUpdateSlotsAndSignalTheConsole)
{
    sigset_t usr1, old;
    sigemptyset(&usr1);
    sigaddset(&usr1, SIGUSR1);
    ASSERT_EQ(sigprocmask(SIG_BLOCK, &usr1, &old), 0);
    pid_t console = fork();
    if (console == 0) {
        timespec limit{10, 0};
        _exit(sigtimedwait(&usr1, nullptr, &limit) == SIGUSR1 ? 0 : 1);
    }
    sigprocmask(SIG_SETMASK, &old, nullptr);
    std::ofstream(Path("var/run/tolm.pid")) << console << "\n";

    Result r = HostSim({"card", "insert", "alice"});
    EXPECT_EQ(r.status, 0) << r.err;
    int status = 0;
    ASSERT_EQ(waitpid(console, &status, 0), console);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the console got no SIGUSR1";
    EXPECT_EQ(State()["smartCards"]["slots"][0]["token"]["userIds"], json::array({"alice"}));

    // The pid file now names a process that is gone: no signal, no failure.
    EXPECT_NE(HostSim({"card", "insert", "alice"}).status, 0);  // already inserted
    EXPECT_EQ(HostSim({"card", "insert", "bob"}).status, 0);
    EXPECT_EQ(State()["smartCards"]["slots"].size(), 2u);
    EXPECT_EQ(HostSim({"card", "remove", "alice"}).status, 0);
    EXPECT_TRUE(State()["smartCards"]["slots"][0]["token"].is_null());
    EXPECT_NE(HostSim({"card", "remove", "alice"}).status, 0);
    EXPECT_NE(HostSim({"card", "eject", "bob"}).status, 0);
}

}  // namespace
}  // namespace Tolm::HostSimTest

// Creating a host root: its tools and files, and the smart-card slots. Its
// PAM set-up is exercised by the console's login tests.
#include "hostsim_support.h"

#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace Tolm::HostSimTest {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class HostSimRoot : public HostRoot {};

TEST_F(HostSimRoot, InitLaysOutToolsThatStayInsideTheRoot)
{
    // Every tool script names its own root, so a tool run by the console
    // never touches another test's host.
    for (const auto& entry : fs::directory_iterator(Path("sbin"))) {
        EXPECT_NE(ReadText(entry.path()).find("--root '" + Root() + "'"), std::string::npos) << entry.path();
    }
    EXPECT_EQ(RunProcess({Path("bin/sh"), "-c", "exit 7"}).status, 7);
    EXPECT_NE(ReadText(Path("etc/hosts")).find("192.168.10.21\ttarnhost01.lab.example.com"), std::string::npos);
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

// The signal to a running console is checked by the console's smart-card
// login test; here a pid file naming a gone process must not fail the change.
TEST_F(HostSimRoot, CardChangesUpdateTheSlots)
{
    pid_t gone = fork();
    if (gone == 0)
        _exit(0);
    waitpid(gone, nullptr, 0);
    std::ofstream(Path("var/run/tolm.pid")) << gone << "\n";

    Result r = HostSim({"card", "insert", "alice"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(State()["smartCards"]["slots"][0]["token"]["userIds"], json::array({"alice"}));
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

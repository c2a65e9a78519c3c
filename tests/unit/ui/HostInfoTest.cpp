#include "ui/HostInfo.h"

#include <unistd.h>

#include <regex>

#include "../host/HostRoot.h"

using namespace Tolm::HostInfo;
namespace fs = std::filesystem;

TEST(HostInfo, ParsesToolOutput) {
    EXPECT_EQ(ParseSslFingerprint("SHA1 Fingerprint=AB:CD:EF\n"), "AB:CD:EF");
    EXPECT_EQ(ParseSslFingerprint("sha1 Fingerprint=01:02\n"), "01:02");
    EXPECT_EQ(ParseSslFingerprint("unable to load certificate\n"), std::nullopt);
    EXPECT_EQ(ParseSshFingerprint("3072 SHA256:abcDEF root@host (RSA)\n"), "SHA256:abcDEF");
    EXPECT_EQ(ParseSshFingerprint("is not a key file.\n"), std::nullopt);

    const auto values = ParseCimData(
        "CIM_Chassis OtherIdentifyingInfo AssetTag= Rack 7 \n"
        "garbage line\n"
        "OMC_SMASHFirmwareIdentity VersionString BIOS=2.4.1\n"
        "Pellor_HHRCWrapperSoftwareIdentity VersionString CPLD=1.0.3\n");
    ASSERT_EQ(values.size(), 3u);
    EXPECT_EQ(PickCimValue(values, "assettag"), "Rack 7");
    EXPECT_EQ(PickCimValue(values, "BIOSversion"), "2.4.1");
    EXPECT_EQ(PickCimValue(values, "CPLDversion"), "1.0.3");
    EXPECT_EQ(PickCimValue(values, "BMCversion"), std::nullopt);
}

class HostInfoRoot : public ::testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(root / "etc/ssh");
        fs::create_directories(root / "etc/pellor/ssl");
        // As in a simulated root: the host's tools lead to the machine's.
        fs::create_directories(root / "bin");
        for (const char* tool : {"openssl", "ssh-keygen"})
            if (access((std::string("/usr/bin/") + tool).c_str(), X_OK) == 0)
                fs::create_symlink(std::string("/usr/bin/") + tool, root / "bin" / tool);
        ClearCache();
    }
    void TearDown() override { ClearCache(); }
    Tolm::Test::HostRoot host;
    fs::path root = host.Root();
};

TEST_F(HostInfoRoot, SystemToolsAreTheRootsOwn) {
    if (access("/usr/bin/openssl", X_OK) != 0) GTEST_SKIP() << "no openssl";
    EXPECT_EQ(ToolPath("openssl"), "/bin/openssl");
    fs::remove(root / "bin/openssl");
    EXPECT_EQ(ToolPath("openssl"), "") << "a root without the tool must not reach outside itself";
    // Nor does a missing management data tool.
    EXPECT_EQ(ServiceTag(), UNAVAILABLE);
}

TEST_F(HostInfoRoot, FingerprintsAreComputedAndMissingKeysFallBack) {
    if (access("/usr/bin/openssl", X_OK) != 0 || access("/usr/bin/ssh-keygen", X_OK) != 0)
        GTEST_SKIP() << "no openssl or ssh-keygen";
    const std::string ssl = (root / "etc/pellor/ssl").string();
    const std::string ssh = (root / "etc/ssh/ssh_host_rsa_key").string();
    ASSERT_EQ(std::system(("openssl req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=t -keyout " + ssl +
                           "/nox.key -out " + ssl + "/nox.crt >/dev/null 2>&1")
                              .c_str()),
              0);
    ASSERT_EQ(std::system(("ssh-keygen -q -t rsa -b 2048 -N '' -f " + ssh + " >/dev/null 2>&1").c_str()), 0);

    EXPECT_TRUE(std::regex_match(SslThumbprint(), std::regex("([0-9A-F]{2}:){19}[0-9A-F]{2}")));
    EXPECT_TRUE(SshRsaFingerprint().starts_with("SHA256:"));
    EXPECT_EQ(SshDsaFingerprint(), UNAVAILABLE);
    EXPECT_NE(host.File("/var/log/syslog.log").find("Error generating SSH Key Fingerprint: "), std::string::npos);

    // Cached: the certificate going away does not change the shown value.
    const std::string first = SslThumbprint();
    fs::remove(ssl + "/nox.crt");
    EXPECT_EQ(SslThumbprint(), first);
    ClearCache();
    EXPECT_EQ(SslThumbprint(), UNAVAILABLE);
}

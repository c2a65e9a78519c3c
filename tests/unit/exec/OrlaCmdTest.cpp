#include "exec/OrlaCmd.h"

#include "exec/Constants.h"
#include "exec/Session.h"
#include "TestRoot.h"

#include <gmock/gmock.h>

namespace Tolm {
namespace {

using ::testing::ElementsAre;
using Test::TempRootTest;

// The fake tools record each call as one line in <root>/calls.log; orla-cmd
// answers with <root>/answer and exits with <root>/status-<user> (default 0).
constexpr const char* kFakeOrlaCmd = R"(root=$(dirname "$0")/..
echo "orla-cmd $*" >> "$root/calls.log"
cat "$root/answer" 2>/dev/null
status=$(cat "$root/status-$2" 2>/dev/null)
exit ${status:-0})";

class OrlaCmdTest : public TempRootTest {
protected:
    void SetUp() override
    {
        TempRootTest::SetUp();
        WriteTool("/bin/orla-cmd", kFakeOrlaCmd);
        Exec::SetLoginName("root");
    }

    void TearDown() override
    {
        Exec::SetLoginName("");
        TempRootTest::TearDown();
    }

    std::vector<std::string> Calls() const
    {
        std::vector<std::string> calls;
        std::istringstream in(ReadFile("/calls.log"));
        for (std::string line; std::getline(in, line);)
            calls.push_back(line);
        return calls;
    }
};

TEST_F(OrlaCmdTest, RejectedUserIsRetriedOnceAsTolmWithFreshCapacity)
{
    WriteFile("/status-alice", "255");
    WriteFile("/answer", "done");
    const char* argv[] = {"orla-cmd", "-U", "alice", "hostsvc/start_ssh", nullptr};
    char out[256];
    unsigned int outLength = 2;  // too small on purpose: the retry resets it
    EXPECT_EQ(RunOrlaCmd("/bin/orla-cmd", argv, out, &outLength, nullptr, nullptr, nullptr, 0), 0);
    EXPECT_EQ(std::string(out, outLength), "done");
    EXPECT_THAT(LogLines(), ElementsAre("user.info: Unable to execute command orla-cmd "
                                        "hostsvc/start_ssh using user alice. Using user tolm"));
    EXPECT_STREQ(argv[2], "alice");  // the caller's vector is not changed

    // A second rejection is returned; other failures are not retried.
    WriteFile("/status-tolm", "255");
    EXPECT_EQ(RunOrlaCmd("/bin/orla-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0), 255);
    WriteFile("/status-alice", "254");
    EXPECT_EQ(RunOrlaCmd("/bin/orla-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0), 254);
    EXPECT_THAT(Calls(), ElementsAre("orla-cmd -U alice hostsvc/start_ssh", "orla-cmd -U tolm hostsvc/start_ssh",
                                     "orla-cmd -U alice hostsvc/start_ssh", "orla-cmd -U tolm hostsvc/start_ssh",
                                     "orla-cmd -U alice hostsvc/start_ssh"));
}

TEST_F(OrlaCmdTest, GetBoolIsTrueExactlyWhenTheOutputStartsWithTrue)
{
    for (const char* yes : {"true\n", "truer", "true"}) {
        WriteFile("/answer", yes);
        EXPECT_TRUE(OrlaCmdGetBool("orlasvc/auth/lockdown_is_enabled")) << yes;
    }
    for (const char* no : {"True", "false", "", "tru", " true"}) {
        WriteFile("/answer", no);
        EXPECT_FALSE(OrlaCmdGetBool("orlasvc/auth/lockdown_is_enabled")) << no;
    }
    EXPECT_EQ(Calls().back(), "orla-cmd -U tolm orlasvc/auth/lockdown_is_enabled");
    EXPECT_EQ(LogLines().back(), "user.info: orla-cmd invocation: get orlasvc/auth/lockdown_is_enabled");

    // The exit status is ignored but a failure logged, and never retried,
    // not even on 255.
    WriteFile("/answer", "true");
    WriteFile("/status-tolm", "255");
    const size_t calls = Calls().size();
    EXPECT_TRUE(OrlaCmdGetBool("hostsvc/ssh_is_running"));
    EXPECT_EQ(Calls().size(), calls + 1);
    EXPECT_EQ(LogLines().back().rfind("user.err: orla-cmd invocation failure: ", 0), 0u) << LogLines().back();
    // A long answer fills the 255-byte buffer without overrunning it.
    WriteFile("/answer", "true" + std::string(1000, 'x'));
    EXPECT_TRUE(OrlaCmdGetBool("hostsvc/ssh_is_running"));
}

}  // namespace
}  // namespace Tolm

#include "exec/OrlaCmd.h"

#include "exec/Constants.h"
#include "exec/Session.h"
#include "TestRoot.h"

#include <gmock/gmock.h>

namespace Tolm {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
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
    EXPECT_THAT(Calls(), ElementsAre("orla-cmd -U alice hostsvc/start_ssh",
                                     "orla-cmd -U tolm hostsvc/start_ssh"));
    EXPECT_THAT(LogLines(), ElementsAre("user.info: Unable to execute command orla-cmd "
                                        "hostsvc/start_ssh using user alice. Using user tolm"));
    // The caller's vector is not changed.
    EXPECT_STREQ(argv[2], "alice");
}

TEST_F(OrlaCmdTest, SecondRejectionIsReturnedWithoutThirdAttempt)
{
    WriteFile("/status-alice", "255");
    WriteFile("/status-tolm", "255");
    const char* argv[] = {"orla-cmd", "-U", "alice", "hostsvc/stop_ssh", "--now", nullptr};
    EXPECT_EQ(RunOrlaCmd("/bin/orla-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0), 255);
    EXPECT_THAT(Calls(), ElementsAre("orla-cmd -U alice hostsvc/stop_ssh --now",
                                     "orla-cmd -U tolm hostsvc/stop_ssh --now"));
    EXPECT_EQ(LogLines().size(), 1u);
}

TEST_F(OrlaCmdTest, OtherFailuresAreNotRetried)
{
    WriteFile("/status-alice", "254");
    const char* argv[] = {"orla-cmd", "-U", "alice", "internalsvc/refresh", nullptr};
    EXPECT_EQ(RunOrlaCmd("/bin/orla-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0), 254);
    EXPECT_EQ(Calls().size(), 1u);
    EXPECT_THAT(LogLines(), IsEmpty());
}

struct BoolCase {
    const char* answer;
    bool expected;
};

class OrlaCmdGetBoolTest : public OrlaCmdTest, public ::testing::WithParamInterface<BoolCase> {};

TEST_P(OrlaCmdGetBoolTest, AnswerIsTrueExactlyWhenOutputStartsWithTrue)
{
    WriteFile("/answer", GetParam().answer);
    EXPECT_EQ(OrlaCmdGetBool("orlasvc/auth/lockdown_is_enabled"), GetParam().expected);
    EXPECT_THAT(Calls(), ElementsAre("orla-cmd -U tolm orlasvc/auth/lockdown_is_enabled"));
    EXPECT_THAT(LogLines(),
                ElementsAre("user.info: orla-cmd invocation: get orlasvc/auth/lockdown_is_enabled"));
}

INSTANTIATE_TEST_SUITE_P(Answers, OrlaCmdGetBoolTest,
                         ::testing::Values(BoolCase{"true\n", true}, BoolCase{"truer", true},
                                           BoolCase{"true", true}, BoolCase{"True", false},
                                           BoolCase{"false", false}, BoolCase{"", false},
                                           BoolCase{"tru", false}, BoolCase{" true", false}));

TEST_F(OrlaCmdTest, GetBoolIgnoresExitStatusButLogsFailure)
{
    WriteFile("/answer", "true");
    WriteFile("/status-tolm", "255");
    EXPECT_TRUE(OrlaCmdGetBool("hostsvc/ssh_is_running"));
    // A failed query is never retried, not even on 255.
    EXPECT_EQ(Calls().size(), 1u);
    auto lines = LogLines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].rfind("user.err: orla-cmd invocation failure: ", 0), 0u) << lines[1];

    WriteFile("/answer", "");
    EXPECT_FALSE(OrlaCmdGetBool("hostsvc/ssh_is_running"));

    // A long answer fills the 255-byte buffer without overrunning it.
    WriteFile("/answer", "true" + std::string(1000, 'x'));
    EXPECT_TRUE(OrlaCmdGetBool("hostsvc/ssh_is_running"));
}

}  // namespace
}  // namespace Tolm

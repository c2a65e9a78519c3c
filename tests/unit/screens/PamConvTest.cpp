// The console's PAM conversations: what each prompt is answered with. A
// simulated host's PAM stack asks only a fixed set of prompts, so the odd
// cases (a third or fourth new-password prompt, prompts of other styles,
// several messages at once) are driven here.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "screens/access/Pam.h"
#include "screens/access/PamConv.h"

namespace Tolm {
namespace {

// Runs a conversation on messages of the given styles and collects the answers.
struct Exchange {
    int status = -1;
    std::vector<std::string> answers;
};

Exchange Converse(int (*conversation)(int, const pam_message**, pam_response**, void*), std::vector<int> styles,
                  void* appdata)
{
    std::vector<pam_message> messages;
    for (int style : styles) messages.push_back({style, "Prompt: "});
    std::vector<const pam_message*> pointers;
    for (auto& m : messages) pointers.push_back(&m);
    pam_response* responses = nullptr;
    Exchange result;
    result.status = conversation(static_cast<int>(styles.size()), pointers.data(), &responses, appdata);
    if (responses) {
        for (size_t i = 0; i < styles.size(); ++i) {
            result.answers.push_back(responses[i].resp ? responses[i].resp : "(null)");
            free(responses[i].resp);
        }
        free(responses);
    }
    return result;
}

TEST(PamConv, LoginAnswersExactlyOneMessageWithThePassword)
{
    char password[] = "s3cret";
    Exchange one = Converse(PamConv::Login, {PAM_PROMPT_ECHO_OFF}, password);
    EXPECT_EQ(one.status, PAM_SUCCESS);
    EXPECT_EQ(one.answers, std::vector<std::string>{"s3cret"});

    EXPECT_EQ(Converse(PamConv::Login, {}, password).status, PAM_CONV_ERR);
    Exchange two = Converse(PamConv::Login, {PAM_PROMPT_ECHO_OFF, PAM_PROMPT_ECHO_OFF}, password);
    EXPECT_EQ(two.status, 19);
    EXPECT_TRUE(two.answers.empty());
    EXPECT_EQ(Converse(PamConv::Login, {PAM_PROMPT_ECHO_OFF}, nullptr).status, PAM_CONV_ERR);
}

TEST(PamConv, ChangeAnswersOldThenNewTwiceAndEmptyAfterwards)
{
    const char* passwords[2] = {"old", "new"};
    pamConvRespCount = 0;
    // Authentication asks once; the password step may ask in several rounds.
    Exchange auth = Converse(PamConv::Change, {PAM_PROMPT_ECHO_OFF}, passwords);
    EXPECT_EQ(auth.answers, std::vector<std::string>{"old"});
    Exchange change = Converse(PamConv::Change,
                               {PAM_TEXT_INFO, PAM_PROMPT_ECHO_OFF, PAM_PROMPT_ECHO_ON, PAM_PROMPT_ECHO_OFF,
                                PAM_ERROR_MSG, PAM_PROMPT_ECHO_OFF},
                               passwords);
    EXPECT_EQ(change.status, PAM_SUCCESS);
    EXPECT_EQ(change.answers, (std::vector<std::string>{"", "new", "", "new", "", ""}));
    EXPECT_EQ(pamConvRespCount, 3);
    EXPECT_EQ(Converse(PamConv::Change, {PAM_PROMPT_ECHO_OFF}, passwords).answers, std::vector<std::string>{""});
}

}  // namespace
}  // namespace Tolm

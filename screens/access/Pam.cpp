#include "screens/access/Pam.h"

#include <security/pam_appl.h>

#include <cstdlib>
#include <cstring>

#include "exec/Constants.h"
#include "screens/access/PamConv.h"

namespace Tolm {

int pamConvRespCount = 0;

namespace {

// PAM frees the answers with free(), so they are malloc'd copies.
pam_response* Answers(int count)
{
    return static_cast<pam_response*>(calloc(static_cast<size_t>(count), sizeof(pam_response)));
}

// Ends the transaction with `status` and hands it back.
int Finish(pam_handle_t* handle, int status)
{
    pam_end(handle, status);
    return status;
}

}  // namespace

namespace PamConv {

int Login(int count, const struct pam_message** messages, struct pam_response** responses, void* appdata)
{
    if (count != 1 || !messages || !responses || !appdata) return PAM_CONV_ERR;
    pam_response* answers = Answers(1);
    if (!answers) return PAM_BUF_ERR;
    answers[0].resp = strdup(static_cast<const char*>(appdata));
    if (!answers[0].resp) {
        free(answers);
        return PAM_BUF_ERR;
    }
    *responses = answers;
    return PAM_SUCCESS;
}

int Change(int count, const struct pam_message** messages, struct pam_response** responses, void* appdata)
{
    const auto* passwords = static_cast<const char* const*>(appdata);
    pam_response* answers = count > 0 ? Answers(count) : nullptr;
    for (int i = 0; i < count && answers; ++i) {
        const char* text = "";
        if (messages[i]->msg_style == PAM_PROMPT_ECHO_OFF && pamConvRespCount < 3) {
            // First the old password (asked during authentication), then the new one twice.
            text = passwords[pamConvRespCount == 0 ? 0 : 1];
            ++pamConvRespCount;
        }
        answers[i].resp = strdup(text);
    }
    *responses = answers;
    return PAM_SUCCESS;
}

}  // namespace PamConv

int Authenticate(const std::string& user, const std::string& password)
{
    pam_conv conversation{PamConv::Login, const_cast<char*>(password.c_str())};
    pam_handle_t* handle = nullptr;
    int status = pam_start(TOLM_APP, user.c_str(), &conversation, &handle);
    if (status != PAM_SUCCESS) return handle ? Finish(handle, status) : status;
    status = pam_authenticate(handle, PAM_SILENT);
    if (status == PAM_SUCCESS) status = pam_acct_mgmt(handle, PAM_SILENT);
    return Finish(handle, status);
}

bool ChangePassword(const std::string& user, const std::string& oldPassword, const std::string& newPassword)
{
    pamConvRespCount = 0;
    const char* passwords[2] = {oldPassword.c_str(), newPassword.c_str()};
    pam_conv conversation{PamConv::Change, passwords};
    pam_handle_t* handle = nullptr;
    int status = pam_start(TOLM_APP, user.c_str(), &conversation, &handle);
    if (status != PAM_SUCCESS) {
        if (handle) Finish(handle, status);
        return false;
    }
    status = pam_authenticate(handle, PAM_SILENT);
    if (status == PAM_SUCCESS) status = pam_acct_mgmt(handle, PAM_SILENT);
    if (status == PAM_SUCCESS) status = pam_chauthtok(handle, PAM_SILENT);
    if (status == PAM_SUCCESS) status = pam_setcred(handle, PAM_REFRESH_CRED);
    return Finish(handle, status) == PAM_SUCCESS;
}

}  // namespace Tolm

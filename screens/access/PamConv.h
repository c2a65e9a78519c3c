#pragma once
// The two PAM conversations of the console, visible for tests.
#include <security/pam_appl.h>

namespace Tolm::PamConv {

// Login: exactly one message, answered with the password `appdata` points to
// (a NUL-terminated string); anything else is PAM_CONV_ERR.
int Login(int count, const struct pam_message** messages, struct pam_response** responses, void* appdata);

// Password change: `appdata` points to two C strings {old, new}. Echo-off
// prompts are answered old, new, new by pamConvRespCount; every other prompt
// gets an empty answer. Always PAM_SUCCESS.
int Change(int count, const struct pam_message** messages, struct pam_response** responses, void* appdata);

}  // namespace Tolm::PamConv

#pragma once
// The console's PAM calls, service "tolm".
#include <string>

namespace Tolm {

// Answers handed out by the password-change conversation since the last change began.
extern int pamConvRespCount;

// Authenticates and checks the account; the PAM status (0 is success).
int Authenticate(const std::string& user, const std::string& password);

// Changes the password of `user`; true when every PAM step succeeded.
bool ChangePassword(const std::string& user, const std::string& oldPassword,
                    const std::string& newPassword);

}  // namespace Tolm

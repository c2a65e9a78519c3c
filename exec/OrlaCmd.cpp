#include "exec/OrlaCmd.h"

#include "exec/Constants.h"
#include "exec/RunCommand.h"
#include "exec/Session.h"
#include "host/Log.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <vector>

namespace Tolm {
namespace {

constexpr const char* kOrlaCmdPath = "/bin/orla-cmd";
constexpr const char* kPowerOffVmsPath = "/bin/powerOffVms";
constexpr unsigned int kRetryCapacity = 256;
constexpr int kGetBoolTimeoutSeconds = 120;

const char* ArgOrEmpty(const std::vector<const char*>& args, size_t index)
{
    return index < args.size() && args[index] != nullptr ? args[index] : "";
}

}  // namespace

int RunOrlaCmd(const char* path, const char* const* argv, char* out, unsigned int* outLength,
               char* err, unsigned int* errLength, const char* input, unsigned int inputLength)
{
    int result = RunCommand(path, argv, out, outLength, err, errLength, input, inputLength, 0);
    if (result != 255 || argv == nullptr)
        return result;

    // The caller's vector is const; the retry runs on a copy with the user
    // replaced.
    std::vector<const char*> args;
    for (const char* const* a = argv; *a != nullptr; ++a)
        args.push_back(*a);
    Log::Write(LOG_INFO, "Unable to execute command orla-cmd %s using user %s. Using user %s",
               ArgOrEmpty(args, 3), ArgOrEmpty(args, 2), TOLM_USER);
    while (args.size() < 3)
        args.push_back("");
    args[2] = TOLM_USER;
    args.push_back(nullptr);

    if (outLength != nullptr)
        *outLength = kRetryCapacity;
    if (errLength != nullptr)
        *errLength = kRetryCapacity;
    return RunCommand(path, args.data(), out, outLength, err, errLength, input, inputLength, 0);
}

bool OrlaCmdGetBool(const std::string& command)
{
    std::string copy;
    try {
        copy = command;
    } catch (const std::bad_alloc&) {
        Log::Write(LOG_ERR, "orla-cmd invocation failure: %s", std::strerror(ENOMEM));
        return false;
    }
    Log::Write(LOG_INFO, "orla-cmd invocation: get %s", copy.c_str());

    const char* argv[] = {"orla-cmd", "-U", TOLM_USER, copy.c_str(), nullptr};
    char output[256] = {};
    unsigned int outLength = sizeof output - 1;
    int result = RunCommand(kOrlaCmdPath, argv, output, &outLength, nullptr, nullptr, nullptr, 0,
                            kGetBoolTimeoutSeconds);
    // A read error leaves the length all ones; the zero fill then terminates.
    if (outLength < sizeof output)
        output[outLength] = '\0';
    if (result != 0)
        Log::Write(LOG_ERR, "orla-cmd invocation failure: %m");
    return std::strncmp(output, "true", 4) == 0;
}

void RefreshInternalServices()
{
    const std::string user = Exec::LoginName();
    const char* argv[] = {"orla-cmd", "-U", user.c_str(), "internalsvc/refresh", nullptr};
    RunOrlaCmd(kOrlaCmdPath, argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
}

void PowerOffVms(bool noTerminate)
{
    const std::string user = Exec::LoginName();
    const char* autostop[] = {"orla-cmd", "-U", user.c_str(), "hostsvc/autostartmanager/autostop",
                              nullptr};
    RunOrlaCmd(kOrlaCmdPath, autostop, nullptr, nullptr, nullptr, nullptr, nullptr, 0);

    const char* terminate[] = {"powerOffVms", "--terminate", nullptr};
    const char* plain[] = {"powerOffVms", nullptr};
    RunCommand(kPowerOffVmsPath, noTerminate ? plain : terminate, nullptr, nullptr, nullptr, nullptr,
               nullptr, 0, 0);
}

}  // namespace Tolm

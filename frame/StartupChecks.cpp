#include "frame/StartupChecks.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "host/Log.h"

namespace Tolm {
namespace Startup {

std::optional<int> ParseVt(const char* arg)
{
    if (!arg) return std::nullopt;
    errno = 0;
    char* end = nullptr;
    long value = std::strtol(arg, &end, 10);
    if (end == arg || *end != '\0') return std::nullopt;
    // strtol pins an overflow to the limits; take either limit as overflow.
    if (value == LONG_MIN || value == LONG_MAX) return std::nullopt;
    if (value < 1 || value > 63) return std::nullopt;
    return static_cast<int>(value);
}

bool PidFileNamesLiveProcess(const std::string& path)
{
    FILE* file = std::fopen(path.c_str(), "r");
    if (!file) return false;
    int pid = 0;
    int read = std::fscanf(file, "%d", &pid);
    std::fclose(file);
    return read == 1 && pid > 0 && kill(pid, 0) == 0;
}

bool ClaimPidFile(const std::string& path, const char* shownPath)
{
    if (PidFileNamesLiveProcess(path)) {
        // Another console owns the file; we still run, we just do not claim it.
        Log::Write(LOG_ERR, "Attempt to run multiple Tolm instances, not updating %s", shownPath);
        return false;
    }
    FILE* file = std::fopen(path.c_str(), "w");
    if (!file) return false;
    std::fprintf(file, "%d", static_cast<int>(getpid()));
    std::fflush(file);
    std::fclose(file);
    return true;
}

}  // namespace Startup
}  // namespace Tolm

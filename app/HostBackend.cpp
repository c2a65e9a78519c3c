#include "app/HostBackend.h"

#include "host/HostPaths.h"
#include "host/Log.h"
#include "host/sim/SimBackend.h"

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace Tolm::App {
namespace {

constexpr const char* kSimulated = "sim";
constexpr const char* kReal = "real";

// A simulated host brings its own poweroff, reboot and friends.
void UseSimulatedRootTools()
{
    std::string path = HostPath::Resolve("/sbin") + ":" + HostPath::Resolve("/bin");
    if (const char* old = std::getenv("PATH"); old && *old) path += std::string(":") + old;
    setenv("PATH", path.c_str(), 1);
}

bool InstallSimulated(const std::string& statePath)
{
    HostSim::UseSimulatedState(statePath);
    UseSimulatedRootTools();
    return true;
}

}  // namespace

Arguments ParseArguments(int argc, char** argv)
{
    Arguments args;
    static const char kOption[] = "--backend";
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], kOption) == 0 && i + 1 < argc)
            args.backend = argv[++i];
        else if (std::strncmp(argv[i], "--backend=", sizeof kOption) == 0)
            args.backend = argv[i] + sizeof kOption;
        else
            args.positional.emplace_back(argv[i]);
    }
    return args;
}

bool InstallHostBackend(const std::optional<std::string>& requested)
{
    std::optional<std::string> name = requested;
    if (!name)
        if (const char* env = std::getenv("TOLM_BACKEND"); env && *env) name = env;

    const std::string statePath = HostSim::StateFile::DefaultPath();
    if (!name) {
        struct stat st {};
        if (stat(statePath.c_str(), &st) == 0) return InstallSimulated(statePath);
        Log::Write(LOG_ERR, "No host backend: %s holds no simulated host and this build has no backend for a real host",
                   HostPath::Root().c_str());
        return false;
    }
    if (*name == kSimulated) return InstallSimulated(statePath);
    if (*name == kReal) {
        Log::Write(LOG_ERR, "Host backend '%s' is not available in this build", name->c_str());
        return false;
    }
    Log::Write(LOG_ERR, "Unknown host backend '%s' (known: %s)", name->c_str(), kSimulated);
    return false;
}

}  // namespace Tolm::App

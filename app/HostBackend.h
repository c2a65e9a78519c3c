#pragma once
// The one place that knows which host backend runs.
#include <optional>
#include <string>
#include <vector>

namespace Tolm::App {

// The console's command line: "--backend NAME" (or "--backend=NAME")
// anywhere, and the VT number as the first other argument.
struct Arguments {
    std::optional<std::string> backend;
    std::vector<std::string> positional;
};
Arguments ParseArguments(int argc, char** argv);

// Installs the host backend named by `requested`, else by $TOLM_BACKEND,
// else the simulated host when the host root holds its state file. Logs why
// and returns false when none can run.
bool InstallHostBackend(const std::optional<std::string>& requested);

}  // namespace Tolm::App

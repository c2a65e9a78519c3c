#pragma once
// Shared pieces of the tolm-hostsim program: where a root keeps its state,
// and the errors that end a verb or a tool with a message.
#include "host/sim/StateFile.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace Tolm::HostSim {

// Arguments a verb or tool does not understand; the text is the usage line.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The host refuses a request; printed on stderr, exit status 1.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Files of a host root, relative to the root.
inline constexpr const char* STATE_FILE = "var/lib/hostsim/host.json";
inline constexpr const char* FACTORY_FILE = "var/lib/hostsim/factory.json";
inline constexpr const char* PID_FILE = "var/run/tolm.pid";
inline constexpr const char* LOGIN_FLAG_FILE = "var/run/pellor/show-tolm-login";
inline constexpr const char* PASSDB_FILE = "etc/pellor/passdb";

// `root` joined with a path given relative to it or as an absolute host path.
std::string InRoot(const std::string& root, const std::string& path);

StateFile StateOf(const std::string& root);

// The absolute path of the running tolm-hostsim executable.
std::string SelfPath();

// Creates or renews a host root from a fixture name or file.
void InitRoot(const std::string& root, const std::string& fixture);

// Plays one host tool; returns its exit status.
int RunTool(const std::string& root, const std::string& name, const std::vector<std::string>& args);

// Names of every tool a root provides, with the path of its script.
struct ToolScript {
    const char* name;
    const char* path;
};
const std::vector<ToolScript>& ToolScripts();

// Smart-card slots: puts a token carrying `userId` into the first free slot,
// or takes the token carrying it out; then signals the console.
void CardInsert(const std::string& root, const std::string& userId);
void CardRemove(const std::string& root, const std::string& userId);

}  // namespace Tolm::HostSim

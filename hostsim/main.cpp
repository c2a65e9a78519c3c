// tolm-hostsim: creates simulated host roots, reads and changes their state,
// and plays the host tools whose scripts in the root call it.
#include "hostsim/HostSim.h"

#include "host/HostCtlException.h"
#include "host/sim/SimRules.h"

#include <cstdlib>
#include <iostream>

namespace {

using namespace Tolm::HostSim;

constexpr const char* USAGE =
    "usage: tolm-hostsim init ROOT [--fixture NAME|FILE]\n"
    "       tolm-hostsim [--root ROOT] get POINTER\n"
    "       tolm-hostsim [--root ROOT] set POINTER JSON\n"
    "       tolm-hostsim [--root ROOT] card insert|remove USERID\n"
    "       tolm-hostsim [--root ROOT] boot\n"
    "       tolm-hostsim [--root ROOT] tool NAME [ARGS...]";

int Init(const std::vector<std::string>& args)
{
    if (args.empty())
        throw UsageError(USAGE);
    std::string root = args[0];
    std::string fixture = "typical";
    for (size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--fixture" && i + 1 < args.size())
            fixture = args[++i];
        else
            throw UsageError(USAGE);
    }
    InitRoot(root, fixture);
    return 0;
}

nlohmann::json::json_pointer Pointer(const std::string& text)
{
    try {
        return nlohmann::json::json_pointer(text);
    } catch (const nlohmann::json::exception& e) {
        throw UsageError(std::string("invalid JSON pointer: ") + e.what());
    }
}

int Get(const std::string& root, const std::vector<std::string>& args)
{
    if (args.size() != 1)
        throw UsageError(USAGE);
    nlohmann::json state = StateOf(root).Read();
    auto ptr = Pointer(args[0]);
    if (!state.contains(ptr))
        throw Refusal("no value at " + args[0]);
    std::cout << state.at(ptr).dump(2) << "\n";
    return 0;
}

int Set(const std::string& root, const std::vector<std::string>& args)
{
    if (args.size() != 2)
        throw UsageError(USAGE);
    auto ptr = Pointer(args[0]);
    nlohmann::json value;
    try {
        value = nlohmann::json::parse(args[1]);
    } catch (const nlohmann::json::exception& e) {
        throw UsageError(std::string("invalid JSON value: ") + e.what());
    }
    StateOf(root).Update([&](nlohmann::json& state) { state[ptr] = value; });
    return 0;
}

int Card(const std::string& root, const std::vector<std::string>& args)
{
    if (args.size() != 2 || args[1].empty())
        throw UsageError(USAGE);
    if (args[0] == "insert")
        CardInsert(root, args[1]);
    else if (args[0] == "remove")
        CardRemove(root, args[1]);
    else
        throw UsageError(USAGE);
    return 0;
}

// Brings a restarting or powered-off host back up, as its firmware would.
int Boot(const std::string& root, const std::vector<std::string>& args)
{
    if (!args.empty())
        throw UsageError(USAGE);
    StateOf(root).Update([](nlohmann::json& state) { Restart(state); });
    return 0;
}

int Main(std::vector<std::string> args)
{
    std::string root;
    if (const char* env = std::getenv("TOLM_ROOT"))
        root = env;
    if (args.size() >= 2 && args[0] == "--root") {
        root = args[1];
        args.erase(args.begin(), args.begin() + 2);
    }
    if (args.empty())
        throw UsageError(USAGE);
    std::string verb = args[0];
    args.erase(args.begin());
    if (verb == "init")
        return Init(args);
    if (root.empty() || root == "/")
        throw UsageError("tolm-hostsim: give a simulated host root with --root or TOLM_ROOT");
    if (verb == "get")
        return Get(root, args);
    if (verb == "set")
        return Set(root, args);
    if (verb == "card")
        return Card(root, args);
    if (verb == "boot")
        return Boot(root, args);
    if (verb == "tool" && !args.empty()) {
        std::string name = args[0];
        args.erase(args.begin());
        return RunTool(root, name, args);
    }
    throw UsageError(USAGE);
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        return Main(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const UsageError& e) {
        std::cerr << e.what() << "\n";
        return 2;
    } catch (const Refusal& e) {
        std::cerr << "tolm-hostsim: " << e.what() << "\n";
        return 1;
    } catch (const HostCtl::Lib::HostCtlException& e) {
        std::cerr << "tolm-hostsim: " << e.what() << "\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "tolm-hostsim: " << e.what() << "\n";
        return 1;
    }
}

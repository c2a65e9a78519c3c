// Advanced options, ping, live cores and management data.
#include "hostsim/RootFiles.h"
#include "hostsim/StateKeys.h"
#include "hostsim/Tools.h"

#include <arpa/inet.h>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <thread>

namespace Tolm::HostSim {
namespace {

long ParseLong(const std::string& text, const std::string& usage)
{
    try {
        size_t used = 0;
        long value = std::stol(text, &used);
        if (used != text.size())
            throw UsageError(usage);
        return value;
    } catch (const std::logic_error&) {
        throw UsageError(usage);
    }
}

std::string OptionName(const std::string& path)
{
    auto slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Writes `value` into an option after the checks the host makes.
void SetOption(const ToolCall& call, const std::string& path, const Json& value)
{
    call.state.Update([&](Json& state) {
        Json* option = AdvancedOption(state, path);
        if (option == nullptr)
            throw Refusal("Unable to find option " + path);
        std::string type = option->value("type", "integer");
        if (value.is_number_integer() != (type == "integer"))
            throw Refusal("Invalid value for option " + path + ": the option is of type " + type);
        if (value.is_number_integer()) {
            long v = value.get<long>();
            if ((option->contains("min") && v < (*option)["min"].get<long>()) ||
                (option->contains("max") && v > (*option)["max"].get<long>()))
                throw Refusal("Value " + std::to_string(v) + " is out of range for option " + path);
        }
        (*option)["value"] = value;
        CountTool(state, "advancedSet");
    });
}

std::string ValueText(const Json& value)
{
    return value.is_string() ? value.get<std::string>() : value.dump();
}

}  // namespace

// talvocli / nodecli system settings advanced set -o OPTION (-i INT | -s TEXT)
//                   system settings advanced list -o OPTION
int TalvoCli(const ToolCall& call)
{
    const std::string usage = "system settings advanced set -o OPTION (-i INT|-s TEXT) | "
                              "system settings advanced list -o OPTION";
    const auto& a = call.args;
    if (a.size() < 6 || a[0] != "system" || a[1] != "settings" || a[2] != "advanced" || a[4] != "-o")
        throw UsageError(usage);
    const std::string& path = a[5];
    if (a[3] == "set" && a.size() == 8 && a[6] == "-i") {
        SetOption(call, path, ParseLong(a[7], usage));
        return 0;
    }
    if (a[3] == "set" && a.size() == 8 && a[6] == "-s") {
        SetOption(call, path, a[7]);
        return 0;
    }
    if (a[3] == "list" && a.size() == 6) {
        Json state = call.state.Read();
        Json* option = AdvancedOption(state, path);
        if (option == nullptr)
            throw Refusal("Unable to find option " + path);
        std::string type = option->value("type", "integer");
        std::cout << "   Path: " << path << "\n   Type: " << type << "\n   "
                  << (type == "integer" ? "Int Value: " : "String Value: ") << ValueText(option->value("value", Json()))
                  << "\n";
        return 0;
    }
    throw UsageError(usage);
}

// talvocfg-advcfg [-q] -g OPTION   prints "Value of NAME is VALUE" (-q: VALUE only)
// talvocfg-advcfg -s VALUE OPTION  sets an integer option
int AdvCfg(const ToolCall& call)
{
    const std::string usage = "[-q] -g OPTION | -s VALUE OPTION";
    std::vector<std::string> a = call.args;
    bool quiet = !a.empty() && a[0] == "-q";
    if (quiet)
        a.erase(a.begin());
    if (a.size() == 2 && a[0] == "-g") {
        Json state = call.state.Read();
        Json* option = AdvancedOption(state, a[1]);
        if (option == nullptr)
            throw Refusal("Unable to find option " + a[1]);
        std::string value = ValueText(option->value("value", Json()));
        if (quiet)
            std::cout << value << "\n";
        else
            std::cout << "Value of " << OptionName(a[1]) << " is " << value << "\n";
        return 0;
    }
    if (a.size() == 3 && a[0] == "-s") {
        SetOption(call, a[2], ParseLong(a[1], usage));
        if (!quiet)
            std::cout << "Value of " << OptionName(a[2]) << " is " << a[1] << "\n";
        return 0;
    }
    throw UsageError(usage);
}

// tarnping ADDRESS [-I INTERFACE] [-c COUNT]: ping's output and status
// (0 answered, 1 no answer, 2 error), with the answers the state gives.
int TarnPing(const ToolCall& call)
{
    const std::string usage = "ADDRESS [-I INTERFACE] [-c COUNT]";
    std::string address;
    std::string interface;
    long count = 3;
    for (size_t i = 0; i < call.args.size(); ++i) {
        const std::string& arg = call.args[i];
        if (arg == "-I" && i + 1 < call.args.size())
            interface = call.args[++i];
        else if (arg == "-c" && i + 1 < call.args.size())
            count = ParseLong(call.args[++i], usage);
        else if (!arg.empty() && arg[0] != '-' && address.empty())
            address = arg;
        else
            throw UsageError(usage);
    }
    if (address.empty() || count < 1)
        throw UsageError(usage);

    std::string bare = address.substr(0, address.find('%'));
    unsigned char buf[16];
    bool v4 = ::inet_pton(AF_INET, bare.c_str(), buf) == 1;
    bool v6 = ::inet_pton(AF_INET6, bare.c_str(), buf) == 1;
    if (!v4 && !v6) {
        std::cerr << "ping: unknown host " << address << "\n";
        return 2;
    }
    Json state = call.state.Read();
    if (!interface.empty() && !InterfaceExists(state, interface)) {
        std::cerr << "ping: unknown interface " << interface << "\n";
        return 2;
    }
    bool reachable = IsReachable(state, bare, interface);
    long intervalMs = state.value(Json::json_pointer("/tools/pingIntervalMs"), 100L);

    std::cout << "PING " << address << " (" << bare << "): 56 data bytes\n";
    for (long seq = 0; seq < count; ++seq) {
        if (reachable)
            std::cout << "64 bytes from " << bare << ": icmp_seq=" << seq << " ttl=64 time=0." << (300 + seq * 17)
                      << " ms\n";
        std::cout.flush();
        if (seq + 1 < count && intervalMs > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(intervalMs));
    }
    long received = reachable ? count : 0;
    std::cout << "\n--- " << bare << " ping statistics ---\n"
              << count << " packets transmitted, " << received << " packets received, "
              << (reachable ? 0 : 100) << "% packet loss\n";
    if (reachable)
        std::cout << "round-trip min/avg/max = 0.300/0.317/0.334 ms\n";
    return reachable ? 0 : 1;
}

// With -w the tool waits this long for an agent that is being restarted.
constexpr auto kAgentWait = std::chrono::seconds(5);
constexpr auto kAgentPoll = std::chrono::milliseconds(20);

// tarnbacktrace (-w|-c) -n PROCESS -o NAME -d FOLDER: writes a live core of a
// running management agent into FOLDER (a host path); "%" in NAME becomes
// the time of the dump. -c needs the agent running now; -w also waits a
// while for it, as the console takes its core while it restarts the agents.
int TarnBacktrace(const ToolCall& call)
{
    const std::string usage = "(-w|-c) -n PROCESS -o NAME -d FOLDER";
    bool write = false;
    bool wait = false;
    std::string process, name, folder;
    for (size_t i = 0; i < call.args.size(); ++i) {
        const std::string& arg = call.args[i];
        bool hasValue = i + 1 < call.args.size();
        if (arg == "-w" || arg == "-c") {
            write = true;
            wait = wait || arg == "-w";
        }
        else if (arg == "-n" && hasValue)
            process = call.args[++i];
        else if (arg == "-o" && hasValue)
            name = call.args[++i];
        else if (arg == "-d" && hasValue)
            folder = call.args[++i];
        else
            throw UsageError(usage);
    }
    if (!write || process.empty() || name.empty() || folder.empty())
        throw UsageError(usage);
    static const char* agents[] = {"hagentd", "cagent", "haagent"};
    bool known = false;
    for (const char* agent : agents)
        known = known || process == agent;
    if (!known)
        throw Refusal("no running process named " + process);
    const auto until = std::chrono::steady_clock::now() + kAgentWait;
    while (!AgentsRunning(call.state.Read())) {
        if (!wait || std::chrono::steady_clock::now() >= until)
            throw Refusal("no running process named " + process);
        std::this_thread::sleep_for(kAgentPoll);
    }
    std::string stamp = std::to_string(std::chrono::duration_cast<std::chrono::seconds>(
                                           std::chrono::system_clock::now().time_since_epoch())
                                           .count());
    for (size_t pos; (pos = name.find('%')) != std::string::npos;)
        name.replace(pos, 1, stamp);
    std::string dir = InRoot(call.root, folder);
    if (!std::filesystem::is_directory(dir))
        throw Refusal("cannot write into " + folder + ": no such folder");
    std::string path = (std::filesystem::path(dir) / (name + ".core")).string();
    WriteFile(path, "live core of " + process + " taken at " + stamp + "\n");
    call.state.Update([](Json& state) { CountTool(state, "liveCore"); });
    std::cout << "Wrote live core of " << process << " to " << folder << "\n";
    return 0;
}

// grabCIMData [CLASS...]: one line per property value,
// "CLASS PROPERTY INSTANCE=VALUE", all classes or only those named.
int GrabCimData(const ToolCall& call)
{
    for (const std::string& arg : call.args)
        if (arg.empty() || arg[0] == '-')
            throw UsageError("[CLASS...]");
    for (const std::string& line : CimLines(call.state.Read())) {
        std::string cls = line.substr(0, line.find(' '));
        bool wanted = call.args.empty();
        for (const std::string& arg : call.args)
            wanted = wanted || arg == cls;
        if (wanted)
            std::cout << line << "\n";
    }
    return 0;
}

}  // namespace Tolm::HostSim

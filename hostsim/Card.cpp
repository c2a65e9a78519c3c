// Smart cards: a card change updates the slots and tells the console, as the
// host's card daemon does, with SIGUSR1 to the pid in the pid file.
#include "hostsim/HostSim.h"
#include "hostsim/RootFiles.h"
#include "hostsim/StateKeys.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace Tolm::HostSim {
namespace {

// A pid file outlives its console, and the pid may have gone to any other
// process since: only a running tolm program is the console.
bool IsConsole(long pid)
{
    std::error_code ec;
    std::string exe = std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", ec).string();
    if (ec)
        return false;
    static const std::string deleted = " (deleted)";  // the binary was rebuilt under it
    if (exe.size() > deleted.size() && exe.compare(exe.size() - deleted.size(), deleted.size(), deleted) == 0)
        exe.erase(exe.size() - deleted.size());
    return std::filesystem::path(exe).filename() == "tolm";
}

void SignalConsole(const std::string& root)
{
    std::ifstream in(InRoot(root, PID_FILE));
    long pid = 0;
    if (!(in >> pid) || pid <= 0 || !IsConsole(pid))
        return;
    if (::kill(static_cast<pid_t>(pid), SIGUSR1) != 0)
        std::cerr << "tolm-hostsim: cannot signal process " << pid << "\n";
}

}  // namespace

void CardInsert(const std::string& root, const std::string& userId)
{
    StateOf(root).Update([&](Json& state) { InsertCard(state, userId); });
    // The card's user logs in with its PIN.
    AddPamAccount(root, userId, CARD_PIN);
    SignalConsole(root);
}

void CardRemove(const std::string& root, const std::string& userId)
{
    bool removed = false;
    StateOf(root).Update([&](Json& state) { removed = RemoveCard(state, userId); });
    if (!removed)
        throw Refusal("no smart card carries user id " + userId);
    SignalConsole(root);
}

}  // namespace Tolm::HostSim

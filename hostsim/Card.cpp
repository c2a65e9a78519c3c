// Smart cards: a card change updates the slots and tells the console, as the
// host's card daemon does, with SIGUSR1 to the pid in the pid file.
#include "hostsim/HostSim.h"
#include "hostsim/RootFiles.h"
#include "hostsim/StateKeys.h"

#include <csignal>
#include <fstream>
#include <iostream>

namespace Tolm::HostSim {
namespace {

void SignalConsole(const std::string& root)
{
    std::ifstream in(InRoot(root, PID_FILE));
    long pid = 0;
    if (!(in >> pid) || pid <= 0)
        return;
    if (::kill(static_cast<pid_t>(pid), 0) != 0)
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

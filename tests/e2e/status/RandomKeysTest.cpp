// An operator's cat on the keyboard: random keys, broken escape sequences and
// control bytes, from a logged-in session onwards. The console may end only
// the deliberate way (status 0: a shutdown, a restart, ESC R), never by a
// crash or a sanitizer report.
#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "Steps.h"
#include "harness/Console.h"

namespace Tolm::E2E {
namespace {

std::string RandomKey(std::mt19937& rng)
{
    static const std::vector<Key> keys = {
        Key::F1,   Key::F2,   Key::F3,    Key::F4,    Key::F5,     Key::F6,       Key::F7,     Key::F8,
        Key::F9,   Key::F10,  Key::Up,    Key::Down,  Key::Left,   Key::Right,    Key::Home,   Key::End,
        Key::PageUp, Key::PageDown, Key::Insert, Key::Delete, Key::Enter, Key::Backspace, Key::Tab,
    };
    static const std::vector<std::string> broken = {"\033[", "\033O", "\033[1", "\033[2", "\033", "\033\033",
                                                    "\033[99~", "\033[1;5A", "\r\n", "\t\t"};
    switch (rng() % 5) {
    case 0:
        return std::string(1, static_cast<char>(rng() % 32));  // control bytes
    case 1:
        return broken[rng() % broken.size()];
    case 2:
        return std::string(1, static_cast<char>(' ' + rng() % 95));  // printable
    default:
        return KeySequence(keys[rng() % keys.size()], KeyFlavour::Xterm, rng() % 2 == 0);
    }
}

bool IgnoresSignal(pid_t pid, int sig)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("SigIgn:", 0) == 0) return (std::stoull(line.substr(7), nullptr, 16) >> (sig - 1)) & 1;
    return false;
}

TEST(RandomKeys, NeverCrashTheConsole)
{
    for (unsigned seed : {1u, 2u, 3u}) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Console tolm("typical");
        tolm.Start();
        ASSERT_TRUE(LogInToMenu(tolm));
        // Ctrl-Z (SIGTSTP) for sure, not only when the dice say so. It must
        // be ignored: a handler would redraw from inside the signal.
        EXPECT_TRUE(IgnoresSignal(tolm.Pid(), SIGTSTP));
        tolm.SendBytes("\x1a");
        std::mt19937 rng(seed);
        for (int i = 0; i < 400 && tolm.Running(); ++i) {
            tolm.SendBytes(RandomKey(rng));
            // Let the console take the keys in, as a person's typing would.
            if (i % 8 == 7) tolm.WaitForQuiet(std::chrono::milliseconds(20));
        }
        if (tolm.Running()) {
            // A Ctrl-S among the keys stops the terminal's output, as on any
            // serial line, until Ctrl-Q; then back out of whatever is open
            // (a pager takes "q").
            tolm.SendBytes("\x11q");
            tolm.Signal(SIGTERM);
        }
        const ExitStatus status = tolm.WaitForExit();
        EXPECT_EQ(status, ExitStatus::Exited(0)) << tolm.Dump();
    }
}

}  // namespace
}  // namespace Tolm::E2E

// An operator's cat on the keyboard: random keys, broken escape sequences,
// control bytes (Ctrl-S, Ctrl-Z, Ctrl-C, Ctrl-\) and resizes, on the status
// screen, in the login dialog and on every screen the menu opens. The console
// may end only the deliberate way (status 0: a terminate key or signal, a
// resize, a shutdown or restart), never by a crash, a sanitizer report or a
// hang. The seed is fixed and printed; TOLM_RANDOM_SEED picks another.

#include <cstdlib>
#include <iostream>
#include <random>

#include "Steps.h"

namespace Tolm::E2E {
namespace {

// Keys per screen; with the screens below about a thousand in all.
constexpr int KEYS_PER_SCREEN = 70;

unsigned Seed()
{
    const char* env = std::getenv("TOLM_RANDOM_SEED");
    return env && *env ? static_cast<unsigned>(std::strtoul(env, nullptr, 10)) : 20261122u;
}

// One key as a terminal sends it, or a resize (empty string).
std::string RandomKey(std::mt19937& rng)
{
    static const std::vector<Key> keys = {
        Key::F1,   Key::F2,   Key::F3,    Key::F4,    Key::F5,     Key::F6,       Key::F7,     Key::F8,
        Key::F9,   Key::F10,  Key::F11,   Key::F12,   Key::Up,     Key::Down,     Key::Left,   Key::Right,
        Key::Home, Key::End,  Key::PageUp, Key::PageDown, Key::Insert, Key::Delete, Key::Enter, Key::Backspace,
        Key::Tab,
    };
    static const std::vector<std::string> broken = {"\033[", "\033O", "\033[1", "\033[2", "\033", "\033\033",
                                                    "\033[99~", "\033[1;5A", "\r\n", "\t\t"};
    // Ctrl-S, Ctrl-Q, Ctrl-Z often; Ctrl-C and Ctrl-\ (which end the
    // console) and resizes rarely, so most screens see all their keys.
    static const std::vector<std::string> flow = {"\x13", "\x11", "\x1a"};
    const unsigned dice = rng() % 100;
    if (dice == 0) return "";
    if (dice == 1) return rng() % 2 ? "\x03" : "\x1c";
    if (dice < 8) return flow[rng() % flow.size()];
    switch (dice % 4) {
    case 0: {
        char c = static_cast<char>(rng() % 32);  // other control bytes
        return c == '\x03' || c == '\x1c' ? std::string("\x7f") : std::string(1, c);
    }
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

// Where the keys start: a menu entry (Down presses from the first, then
// `key`), or the status screen's own login (`downs` < 0). Every menu entry of
// the typical host, the log viewer's pager, the login dialog and, after F12,
// the shutdown dialog.
struct Start {
    int downs;
    Key key;
};
const std::vector<Start> STARTS = {{0, Key::Enter}, {1, Key::Enter}, {2, Key::Enter}, {3, Key::Enter},
                                   {4, Key::Enter}, {5, Key::Enter}, {6, Key::Enter}, {7, Key::Enter},
                                   {8, Key::Enter}, {9, Key::Enter}, {10, Key::Enter}, {8, Key::F1},
                                   {-1, Key::F2}, {-1, Key::F12}};

TEST(RandomKeys, NeverCrashOrHangTheConsole)
{
    const unsigned seed = Seed();
    std::cout << "random keys: seed " << seed << " (TOLM_RANDOM_SEED)\n";
    std::mt19937 rng(seed);
    int sent = 0, survived = 0, ended = 0, resized = 0;
    for (const Start& start : STARTS) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", from " + std::to_string(start.downs) + " downs");
        Console tolm("typical");
        tolm.Start();
        if (start.downs >= 0) {
            ASSERT_TRUE(LogInToMenu(tolm));
            // One entry at a time: the pane heading names the entry.
            ASSERT_TRUE(tolm.WaitForQuiet(std::chrono::milliseconds(500)));
            for (int i = 0; i < start.downs; ++i) {
                const std::string before = tolm.Row(1);
                tolm.Press(Key::Down);
                ASSERT_TRUE(tolm.WaitUntil([&] { return tolm.Row(1) != before; }, "next entry"));
            }
            ASSERT_TRUE(tolm.WaitForQuiet());
            std::cout << "  " << tolm.Row(1) << "\n";
            tolm.Press(start.key);
        } else if (start.key == Key::F12) {
            ASSERT_TRUE(LogIn(tolm, Key::F12));
        } else {
            ASSERT_TRUE(Started(tolm) && OpenLogin(tolm));
        }
        ASSERT_TRUE(tolm.WaitForQuiet());
        // Ctrl-Z must be ignored (a handler would redraw from inside the
        // signal), and a Ctrl-S must not stop the console's output.
        EXPECT_TRUE(IgnoresSignal(tolm.Pid(), SIGTSTP));
        tolm.SendBytes("\x13\x1a");

        for (int i = 0; i < KEYS_PER_SCREEN && tolm.Running(); ++i, ++sent) {
            const std::string key = RandomKey(rng);
            if (key.empty()) {
                tolm.Resize(80 + static_cast<int>(rng() % 40), 25 + static_cast<int>(rng() % 20));
                ++resized;
            } else {
                tolm.SendBytes(key);
            }
            // Let the console take the keys in, as a person's typing would.
            if (i % 8 == 7) tolm.WaitForQuiet(std::chrono::milliseconds(20));
        }
        // Still running: it must answer a terminate signal (a console stuck
        // in a write or a loop would not).
        if (tolm.Running()) {
            ++survived;
            tolm.Signal(SIGTERM);
        } else {
            ++ended;
        }
        const ExitStatus status = tolm.WaitForExit();
        EXPECT_EQ(status, ExitStatus::Exited(0)) << tolm.Dump();
    }
    std::cout << "random keys: " << sent << " keys (" << resized << " resizes) on " << STARTS.size()
              << " screens; " << survived << " survived, " << ended << " ended deliberately\n";
}

}  // namespace
}  // namespace Tolm::E2E

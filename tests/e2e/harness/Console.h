#pragma once

// End-to-end test harness: runs a program on a pseudo-terminal, feeds what it
// prints into a real terminal emulator (libvterm) and lets a GoogleTest test
// type keys, wait for the screen, and read the simulated host root.
//
//   Tolm::E2E::Console tolm;                  // fresh root, default fixture
//   tolm.Set("/network/dns/hostname", "\"host1\"");
//   tolm.Start();                             // build/bin/tolm, 80x25, xterm
//   ASSERT_TRUE(tolm.WaitForText("<F2>"));
//   tolm.Press(Key::F2);
//   EXPECT_TRUE(tolm.WaitForRow(-1, "Enter.*OK"));
//
// Every Wait* has a deadline (stretched under sanitizers and by
// TOLM_TEST_TIMEOUT_SCALE); on timeout it records a non-fatal failure showing
// what was awaited and the last screen, and returns false, so a test can
// write ASSERT_TRUE(c.WaitFor...) to stop there.

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <source_location>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

#include "harness/Keys.h"
#include "harness/Screen.h"

namespace Tolm::E2E {

using Clock = std::chrono::steady_clock;
using Duration = std::chrono::milliseconds;
using std::chrono_literals::operator""ms;
using std::chrono_literals::operator""s;

// How much longer every deadline is: TOLM_TEST_TIMEOUT_SCALE (a number,
// default 1) times 4 when built with AddressSanitizer.
double TimeoutScale();
Duration Scaled(Duration d);

// The default deadline of every Wait* (10 s, scaled).
Duration DefaultTimeout();

// Where the programs under test live (the build's bin directory).
std::filesystem::path BinDir();

// How the program ended.
struct ExitStatus {
    bool timedOut = false;  // still running at the deadline
    int code = -1;          // exit status when it exited normally
    int signal = 0;         // signal number when a signal ended it

    static ExitStatus Exited(int code) { return {false, code, 0}; }
    static ExitStatus Signalled(int sig) { return {false, -1, sig}; }
    bool operator==(const ExitStatus&) const = default;
};
std::ostream& operator<<(std::ostream& os, const ExitStatus& s);
void PrintTo(const ExitStatus& s, std::ostream* os);

struct ConsoleOptions {
    // Host root: create a fresh one with tolm-hostsim (fixture name or file;
    // empty for the program's default), or none at all.
    std::string fixture;
    bool createRoot = true;

    int cols = 80;
    int rows = 25;
    std::string term = "xterm";
    // Extra or replaced environment variables for the program.
    std::map<std::string, std::string> env;
};

class Console {
public:
    Console();  // fresh root from the default fixture, 80x25, xterm
    explicit Console(std::string fixture);
    explicit Console(ConsoleOptions options);
    // Kills the program's process group and reaps it. Removes the temporary
    // directory unless the test failed; then its path is printed to keep it.
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // ---- Before start ------------------------------------------------------
    // Run under libfaketime (e.g. "+0 x60" runs the clock 60 times faster);
    // the preload then holds both pam_wrapper and libfaketime.
    void UseFakeTime(std::string offset);

    // ---- Host root ---------------------------------------------------------
    const std::filesystem::path& Root() const { return root_; }
    std::filesystem::path RootPath(std::string_view rel) const;  // "/var/run/tolm.pid" or "var/..."
    // Changes the simulated state through `tolm-hostsim set`: Set takes JSON
    // text (Set("/a/b", "\"x\"")), SetValue a value (SetValue("/a/b", "x")).
    void Set(std::string_view pointer, std::string_view json);
    void SetValue(std::string_view pointer, const nlohmann::json& value);
    // Reads the state file directly; null when the pointer names nothing.
    nlohmann::json State(std::string_view pointer = "") const;
    void CardInsert(std::string_view userId);
    void CardRemove(std::string_view userId);
    // Runs `tolm-hostsim --root ROOT args...`; returns its standard output.
    // A non-zero status is a test failure.
    std::string HostSim(const std::vector<std::string>& args);

    std::string Syslog() const;    // var/log/syslog.log
    std::string EventLog() const;  // var/log/evtd.log
    std::string ReadRootFile(std::string_view rel) const;  // "" if missing
    std::optional<int> PidFile() const;                     // var/run/tolm.pid

    // ---- Starting ----------------------------------------------------------
    // The console itself (bin/tolm) with optional arguments.
    void Start(const std::vector<std::string>& args = {});
    // The widget probe (bin/tolm-probe).
    void StartProbe(const std::vector<std::string>& args);
    // /bin/sh -c script.
    void StartShell(const std::string& script);

    pid_t Pid() const { return pid_; }
    bool Running();

    // ---- Keys --------------------------------------------------------------
    void Press(Key key, int times = 1);
    // The serial terminal's ESC-plus-character form (ESC "2" for F2).
    void PressSerial(Key key);
    // Text as typed, byte for byte.
    void Type(std::string_view text);
    // Raw bytes, e.g. "\x1bR" or "\x7f".
    void SendBytes(std::string_view bytes);
    // A lone Escape. Any byte sent right after it would be read by curses as
    // part of an escape sequence (Alt-key), so this waits until the program
    // has answered with output, or ~150 ms at most: the one fixed wait.
    void SendEsc();

    // ---- Signals and size --------------------------------------------------
    void Signal(int sig);
    // New terminal size; the kernel sends SIGWINCH to the program.
    void Resize(int cols, int rows);

    // ---- Screen ------------------------------------------------------------
    int Cols() const;
    int Rows() const;
    std::string Row(int row, Trim trim = Trim::TrailingSpaces) const;  // -1: last row
    Cell CellAt(int col, int row) const;                                // row may be negative
    std::optional<Pos> FindText(std::string_view text) const;
    bool HasText(std::string_view text) const { return FindText(text).has_value(); }
    Pos Cursor() const;
    std::string Dump() const;  // every row with its number and a visible end "|"
    std::map<int, Rgb> Palette() const;
    int PaletteResets() const;
    // Everything the program wrote, unfiltered.
    std::string RawOutput() const;
    // When the program last wrote anything (for measuring, not for waiting).
    Clock::time_point LastOutputTime() const;

    // ---- Waits (non-fatal failure and false on timeout) --------------------
    bool WaitForText(std::string_view text, Duration timeout = DefaultTimeout(),
                     std::source_location loc = std::source_location::current());
    bool WaitForTextGone(std::string_view text, Duration timeout = DefaultTimeout(),
                         std::source_location loc = std::source_location::current());
    // ECMAScript regex searched in the row with trailing spaces trimmed.
    bool WaitForRow(int row, std::string_view regex, Duration timeout = DefaultTimeout(),
                    std::source_location loc = std::source_location::current());
    // `what` names the condition in the failure message.
    bool WaitUntil(const std::function<bool()>& predicate, std::string_view what,
                   Duration timeout = DefaultTimeout(),
                   std::source_location loc = std::source_location::current());
    // Substring of var/log/syslog.log or var/log/evtd.log.
    bool WaitForLog(std::string_view text, Duration timeout = DefaultTimeout(),
                    std::source_location loc = std::source_location::current());
    bool WaitForEvent(std::string_view text, Duration timeout = DefaultTimeout(),
                      std::source_location loc = std::source_location::current());
    // Waits until the program is reaped; on timeout the status has timedOut.
    ExitStatus WaitForExit(Duration timeout = DefaultTimeout(),
                           std::source_location loc = std::source_location::current());
    // Waits until the program printed nothing for `quiet`; useful before
    // asserting that something did NOT appear.
    bool WaitForQuiet(Duration quiet = 200ms, Duration timeout = DefaultTimeout(),
                      std::source_location loc = std::source_location::current());

private:
    void Init(ConsoleOptions options);
    void Launch(const std::string& path, const std::vector<std::string>& args);
    std::vector<std::string> ChildEnvironment() const;
    void ReaderLoop(int fd, int stopFd);
    void StopReader();
    void Reap(bool block);
    // Sanitized builds: reports the program wrote become test failures.
    void ReportSanitizerFindings();
    void Write(std::string_view bytes);
    // Waits until `done` holds; `screenOnly` conditions give up early once
    // the program's output has ended, since the screen cannot change then.
    bool Await(const std::function<bool()>& done, Duration timeout, bool screenOnly);
    bool Fail(std::string_view what, Duration timeout, const std::source_location& loc,
              std::string_view extra = {});
    static void Reply(const char* bytes, size_t len, void* user);

    ConsoleOptions opts_;
    std::filesystem::path tmpDir_;  // removed at the end unless the test failed
    std::filesystem::path root_;
    std::string fakeTime_;

    pid_t pid_ = -1;
    std::optional<ExitStatus> exit_;
    int master_ = -1;
    int stopPipe_[2] = {-1, -1};
    std::thread reader_;

    mutable std::mutex mu_;
    std::condition_variable changed_;
    std::unique_ptr<Screen> screen_;
    std::string raw_;
    uint64_t outputCount_ = 0;  // bumped on every read of output
    Clock::time_point lastOutput_;
    bool eof_ = true;  // no more output will come
};

}  // namespace Tolm::E2E

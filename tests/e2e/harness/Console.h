#pragma once

// Runs a program on a pseudo-terminal, feeds its output into libvterm, and
// lets a test type keys, wait for the screen and read the simulated host root
// (see ../README.md). Every Wait* has a deadline; on timeout it records a
// non-fatal failure with the last screen and returns false.

#include <chrono>
#include <condition_variable>
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

Duration Scaled(Duration d);
inline Duration DefaultTimeout() { return Scaled(10s); }
std::filesystem::path BinDir();

struct ExitStatus {
    bool timedOut = false;  // still running at the deadline
    int code = -1;          // exit status when it exited normally
    int signal = 0;         // signal number when a signal ended it

    static ExitStatus Exited(int code) { return {false, code, 0}; }
    static ExitStatus Signalled(int sig) { return {false, -1, sig}; }
    bool operator==(const ExitStatus&) const = default;
};
std::ostream& operator<<(std::ostream& os, const ExitStatus& s);

struct ConsoleOptions {
    // tolm-hostsim's root from a fixture (empty: the default); a bare directory without createRoot.
    std::string fixture;
    bool createRoot = true;
    int cols = 80;
    int rows = 25;
    std::string term = "xterm";              // empty: TERM unset
    std::map<std::string, std::string> env;  // extra or replaced variables
};

class Console {
    // Reads the screen under the lock.
    template <typename F> auto OnScreen(F f) const
    {
        std::lock_guard lock(mu_);
        return f(*screen_);
    }
    template <typename R> R Locked(R (Screen::*get)() const) const
    {
        return OnScreen([&](const Screen& s) { return (s.*get)(); });
    }

public:
    Console() : Console(ConsoleOptions{}) {}
    explicit Console(std::string fixture) : Console([&] { ConsoleOptions o; o.fixture = std::move(fixture); return o; }()) {}
    explicit Console(ConsoleOptions options);
    // Kills the program's process group; keeps the files only when the test failed.
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Before Start: run under libfaketime ("+0 x60" runs the clock 60 times faster).
    void UseFakeTime(std::string offset) { fakeTime_ = std::move(offset); }

    const std::filesystem::path& Root() const { return root_; }
    std::filesystem::path RootPath(std::string_view rel) const;  // "/var/..." or "var/..."
    // `tolm-hostsim set`: Set takes JSON text, SetValue a value.
    void Set(std::string_view pointer, std::string_view json) { HostSim({"set", std::string(pointer), std::string(json)}); }
    void SetValue(std::string_view pointer, const nlohmann::json& value) { Set(pointer, value.dump()); }
    nlohmann::json State(std::string_view pointer = "") const;  // null when nothing is there
    void CardInsert(std::string_view user) { HostSim({"card", "insert", std::string(user)}); }
    void CardRemove(std::string_view user) { HostSim({"card", "remove", std::string(user)}); }
    // `tolm-hostsim --root ROOT args...`; its output. A failure fails the test.
    std::string HostSim(const std::vector<std::string>& args);
    std::string ReadRootFile(std::string_view rel) const;  // "" if missing
    std::string Syslog() const { return ReadRootFile("var/log/syslog.log"); }
    std::string EventLog() const { return ReadRootFile("var/log/evtd.log"); }
    std::optional<int> PidFile() const;

    void Start(const std::vector<std::string>& args = {});  // bin/tolm
    void StartShell(const std::string& script);             // /bin/sh -c
    pid_t Pid() const { return pid_; }
    bool Running();
    void Signal(int sig);
    void Resize(int cols, int rows);  // the kernel sends SIGWINCH

    void Press(Key key, int times = 1);
    void PressSerial(Key key) { Write(SerialKeySequence(key)); }  // ESC "2" for F2
    void Type(std::string_view text) { Write(text); }             // byte for byte
    void SendBytes(std::string_view bytes) { Write(bytes); }
    // A lone Escape: waits until the program answered (~150 ms at most), as a
    // byte right after it would make an Alt-key.
    void SendEsc();

    int Cols() const { return Locked(&Screen::Cols); }
    int Rows() const { return Locked(&Screen::Rows); }
    std::string Row(int row, Trim trim = Trim::TrailingSpaces) const  // -1: last row
    {
        return OnScreen([&](const Screen& s) { return s.Row(row, trim); });
    }
    std::string Grid(int top, int bottom, int left = 0, int right = -1) const
    {
        return OnScreen([&](const Screen& s) { return s.Grid(top, bottom, left, right); });
    }
    Cell CellAt(int col, int row) const { return OnScreen([&](const Screen& s) { return s.CellAt(col, row); }); }
    std::optional<Pos> FindText(std::string_view text) const
    {
        return OnScreen([&](const Screen& s) { return s.Find(text); });
    }
    bool HasText(std::string_view text) const { return FindText(text).has_value(); }
    Pos Cursor() const { return Locked(&Screen::Cursor); }
    std::string Dump() const { return Locked(&Screen::Dump); }
    std::string RawOutput() const { return OnScreen([&](const Screen&) { return raw_; }); }
    // When the program last wrote (for measuring, not for waiting).
    Clock::time_point LastOutputTime() const { return OnScreen([&](const Screen&) { return lastOutput_; }); }

    using Where = std::source_location;
    bool WaitForText(std::string_view text, Duration timeout = DefaultTimeout(), Where loc = Where::current());
    bool WaitForTextGone(std::string_view text, Duration timeout = DefaultTimeout(), Where loc = Where::current());
    // ECMAScript regex searched in the row, trailing spaces trimmed.
    bool WaitForRow(int row, std::string_view regex, Duration timeout = DefaultTimeout(), Where loc = Where::current());
    bool WaitUntil(const std::function<bool()>& predicate, std::string_view what,
                   Duration timeout = DefaultTimeout(), Where loc = Where::current());
    bool WaitForLog(std::string_view text, Duration timeout = DefaultTimeout(), Where loc = Where::current());
    bool WaitForEvent(std::string_view text, Duration timeout = DefaultTimeout(), Where loc = Where::current());
    // On timeout the status has timedOut set.
    ExitStatus WaitForExit(Duration timeout = DefaultTimeout(), Where loc = Where::current());
    // Until the program printed nothing for `quiet` and waits for a key: before
    // asserting that something did NOT appear, and before a key that a window
    // being drawn would discard.
    bool WaitForQuiet(Duration quiet = 200ms, Duration timeout = DefaultTimeout(), Where loc = Where::current());

private:
    bool WaitsForKey() const;
    void Launch(const std::string& path, const std::vector<std::string>& args);
    std::vector<std::string> ChildEnvironment() const;
    void ReaderLoop(int fd, int stopFd);
    void StopReader();
    void Reap(bool block);
    void Write(std::string_view bytes);
    // Until `done` holds; `screenOnly` conditions give up once the output ended.
    bool Await(const std::function<bool()>& done, Duration timeout, bool screenOnly);
    bool Fail(std::string_view what, Duration timeout, const Where& loc, std::string_view extra = {});
    bool WaitForFile(std::string_view rel, std::string_view text, Duration timeout, const Where& loc);
    static void Reply(const char* bytes, size_t len, void* user);

    ConsoleOptions opts_;
    std::filesystem::path tmpDir_;
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

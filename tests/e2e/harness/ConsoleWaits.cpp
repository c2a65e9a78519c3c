// Console: deadline waits and the host root.
#include <cstdio>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <sys/syscall.h>

#include <gtest/gtest.h>

#include "harness/Console.h"
#include "harness/Process.h"

namespace Tolm::E2E {

namespace {

std::string Seconds(Duration d)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.1f s", static_cast<double>(d.count()) / 1000.0);
    return buf;
}

std::string Quoted(std::string_view s)
{
    // Appended piece by piece: GCC 12 at -O3 reports a false overlap in "\"" + std::string.
    std::string quoted(1, '"');
    quoted.append(s);
    quoted += '"';
    return quoted;
}

}  // namespace

std::string Console::HostSim(const std::vector<std::string>& args)
{
    std::vector<std::string> argv = {(BinDir() / "tolm-hostsim").string(), "--root", root_.string()};
    argv.insert(argv.end(), args.begin(), args.end());
    const RunResult r = RunCapture(argv);
    if (r.status != 0) {
        std::string cmd;
        for (const auto& a : args)
            cmd += " " + a;
        ADD_FAILURE() << "tolm-hostsim" << cmd << " failed with status " << r.status << ": " << r.out;
    }
    return r.out;
}

nlohmann::json Console::State(std::string_view pointer) const
{
    const std::string text = ReadRootFile("var/lib/hostsim/host.json");
    if (text.empty())
        throw std::runtime_error("no host state in " + root_.string());
    const nlohmann::json state = nlohmann::json::parse(text);
    const nlohmann::json::json_pointer ptr{std::string(pointer)};
    return state.contains(ptr) ? state.at(ptr) : nlohmann::json();
}

std::string Console::ReadRootFile(std::string_view rel) const
{
    return ReadFile(RootPath(rel).string());
}

std::optional<int> Console::PidFile() const
{
    try {
        return std::stoi(ReadRootFile("var/run/tolm.pid"));
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

bool Console::Await(const std::function<bool()>& done, Duration timeout, bool screenOnly)
{
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        if (done())
            return true;
        std::unique_lock lock(mu_);
        if (screenOnly && eof_) {
            lock.unlock();  // all output is in: the screen can no longer change
            return done();
        }
        const auto now = Clock::now();
        if (now >= deadline)
            return false;
        // Output wakes us at once; files (logs, state) are looked at every 50 ms.
        const auto next = std::min(deadline, now + 50ms);
        const uint64_t seen = outputCount_;
        changed_.wait_until(lock, next, [&] { return outputCount_ != seen; });
    }
}

bool Console::Fail(std::string_view what, Duration timeout, const Where& loc, std::string_view extra)
{
    bool ended;
    {
        std::lock_guard lock(mu_);
        ended = eof_;
    }
    // The terminal closes a moment before the process can be reaped.
    Reap(false);
    for (auto until = Clock::now() + Scaled(2s); ended && !exit_ && Clock::now() < until;) {
        std::this_thread::sleep_for(10ms);
        Reap(false);
    }
    std::ostringstream msg;
    if (pid_ <= 0)
        msg << "No program was started while waiting for " << what << ".\n";
    else if (ended && exit_)
        msg << "The program ended (" << *exit_ << ") while waiting for " << what << ".\n";
    else
        msg << "Timed out after " << Seconds(timeout) << " waiting for " << what << ".\n";
    ADD_FAILURE_AT(loc.file_name(), static_cast<int>(loc.line())) << msg.str() << Dump() << extra;
    return false;
}

bool Console::WaitForText(std::string_view text, Duration timeout, Where loc)
{
    return Await([&] { return HasText(text); }, timeout, true) ||
           Fail("text " + Quoted(text) + " on the screen", timeout, loc);
}

bool Console::WaitForTextGone(std::string_view text, Duration timeout, Where loc)
{
    return Await([&] { return !HasText(text); }, timeout, true) ||
           Fail("text " + Quoted(text) + " to leave the screen", timeout, loc);
}

bool Console::WaitForRow(int row, std::string_view regex, Duration timeout, Where loc)
{
    const std::regex re{std::string(regex)};
    return Await([&] { return std::regex_search(Row(row), re); }, timeout, true) ||
           Fail("row " + std::to_string(row) + " to match /" + std::string(regex) + "/ (it reads " +
                    Quoted(Row(row)) + ")", timeout, loc);
}

bool Console::WaitUntil(const std::function<bool()>& predicate, std::string_view what, Duration timeout, Where loc)
{
    return Await(predicate, timeout, false) || Fail(what, timeout, loc);
}

bool Console::WaitForFile(std::string_view rel, std::string_view text, Duration timeout, const Where& loc)
{
    if (Await([&] { return ReadRootFile(rel).find(text) != std::string::npos; }, timeout, false))
        return true;
    std::string log = ReadRootFile(rel);
    size_t from = log.size();
    for (int lines = 0; from > 0 && lines <= 20; --from)
        lines += log[from - 1] == '\n';
    return Fail(Quoted(text) + " in " + std::string(rel), timeout, loc,
                "Last lines of " + std::string(rel) + ":\n" + log.substr(from));
}

bool Console::WaitForLog(std::string_view text, Duration timeout, Where loc)
{
    return WaitForFile("var/log/syslog.log", text, timeout, loc);
}

bool Console::WaitForEvent(std::string_view text, Duration timeout, Where loc)
{
    return WaitForFile("var/log/evtd.log", text, timeout, loc);
}

ExitStatus Console::WaitForExit(Duration timeout, Where loc)
{
    const auto deadline = Clock::now() + timeout;
    while (Reap(false), pid_ > 0 && !exit_ && Clock::now() < deadline) {
        std::unique_lock lock(mu_);
        changed_.wait_for(lock, 10ms);
    }
    if (!exit_) {
        Fail("the program to exit", timeout, loc);
        return ExitStatus{true, -1, 0};
    }
    // Let the last output reach the screen; a process the program left
    // behind may hold the terminal open, so this wait is bounded.
    std::unique_lock lock(mu_);
    changed_.wait_until(lock, std::min(deadline, Clock::now() + Scaled(1s)), [&] { return eof_; });
    return *exit_;
}

// The console blocked in its key wait (select), which it reaches only after
// drawing, and so after discarding type-ahead. Quiet output alone is not
// enough: a host tool may be working, and the window drawn after it would
// discard a key sent meanwhile. Programs other than the console, and a
// console that cannot be looked at, count as waiting.
bool Console::WaitsForKey() const
{
    const std::string proc = "/proc/" + std::to_string(pid_);
    if (ReadFile(proc + "/comm") != "tolm\n")
        return true;
    std::istringstream syscall(ReadFile(proc + "/syscall"));
    long number = -1;
    if (!(syscall >> number))
        return syscall.str().rfind("running", 0) != 0;
#ifdef SYS_select
    if (number == SYS_select)
        return true;
#endif
    return number == SYS_pselect6;
}

bool Console::WaitForQuiet(Duration quiet, Duration timeout, Where loc)
{
    auto isQuiet = [&] {
        {
            std::lock_guard lock(mu_);
            if (eof_)
                return true;
            if (Clock::now() - lastOutput_ < quiet)
                return false;
        }
        return WaitsForKey();
    };
    if (Await(isQuiet, timeout, false))
        return true;
    const std::string proc = "/proc/" + std::to_string(pid_);
    return Fail("the output to pause for " + Seconds(quiet) + " with the program waiting for a key", timeout, loc,
                "Where the program was: syscall " + ReadFile(proc + "/syscall") + "wchan " + ReadFile(proc + "/wchan") +
                    "\nstat " + ReadFile(proc + "/stat"));
}

}  // namespace Tolm::E2E

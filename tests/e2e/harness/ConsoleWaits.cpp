// Console: deadline waits and the host root.

#include <cstdio>
#include <regex>
#include <sstream>
#include <stdexcept>

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
    // Appended piece by piece: GCC 12 at -O3 reports a false overlap in
    // "\"" + std::string.
    std::string quoted(1, '"');
    quoted.append(s);
    quoted += '"';
    return quoted;
}

// The last `n` lines of a log, enough to see what happened before a timeout.
std::string Tail(const std::string& text, size_t n)
{
    size_t pos = text.size();
    if (pos && text[pos - 1] == '\n')
        --pos;
    for (size_t lines = 0; pos > 0; --pos) {
        if (text[pos - 1] == '\n' && ++lines == n)
            break;
    }
    return text.substr(pos);
}

}  // namespace

// ---- Host root -------------------------------------------------------------

std::string Console::HostSim(const std::vector<std::string>& args)
{
    std::vector<std::string> argv = {(BinDir() / "tolm-hostsim").string(), "--root", root_.string()};
    argv.insert(argv.end(), args.begin(), args.end());
    const RunResult r = RunCapture(argv);
    if (r.status != 0) {
        std::string cmd;
        for (const auto& a : args)
            cmd += " " + a;
        ADD_FAILURE() << "tolm-hostsim" << cmd << " failed with status " << r.status << ": " << r.err << r.out;
    }
    return r.out;
}

void Console::Set(std::string_view pointer, std::string_view json)
{
    HostSim({"set", std::string(pointer), std::string(json)});
}

void Console::SetValue(std::string_view pointer, const nlohmann::json& value)
{
    Set(pointer, value.dump());
}

nlohmann::json Console::State(std::string_view pointer) const
{
    const std::string path = RootPath("var/lib/hostsim/host.json").string();
    const std::string text = ReadFile(path);
    if (text.empty())
        throw std::runtime_error("no host state in " + path);
    const nlohmann::json state = nlohmann::json::parse(text);
    if (pointer.empty())
        return state;
    const nlohmann::json::json_pointer ptr{std::string(pointer)};
    return state.contains(ptr) ? state.at(ptr) : nlohmann::json();
}

void Console::CardInsert(std::string_view userId)
{
    HostSim({"card", "insert", std::string(userId)});
}

void Console::CardRemove(std::string_view userId)
{
    HostSim({"card", "remove", std::string(userId)});
}

std::string Console::ReadRootFile(std::string_view rel) const
{
    return ReadFile(RootPath(rel).string());
}

std::string Console::Syslog() const
{
    return ReadRootFile("var/log/syslog.log");
}

std::string Console::EventLog() const
{
    return ReadRootFile("var/log/evtd.log");
}

std::optional<int> Console::PidFile() const
{
    const std::string text = ReadRootFile("var/run/tolm.pid");
    try {
        return std::stoi(text);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// ---- Waits -----------------------------------------------------------------

bool Console::Await(const std::function<bool()>& done, Duration timeout, bool screenOnly)
{
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        if (done())
            return true;
        std::unique_lock lock(mu_);
        if (screenOnly && eof_) {
            // All output is in: the screen can no longer change.
            lock.unlock();
            return done();
        }
        const auto now = Clock::now();
        if (now >= deadline)
            return false;
        // Output wakes us at once; files (logs, state) are looked at again
        // every 50 ms.
        const auto next = std::min(deadline, now + 50ms);
        if (eof_) {
            lock.unlock();
            std::this_thread::sleep_until(next);
            continue;
        }
        const uint64_t seen = outputCount_;
        changed_.wait_until(lock, next, [&] { return outputCount_ != seen || eof_; });
    }
}

bool Console::Fail(std::string_view what, Duration timeout, const std::source_location& loc,
                   std::string_view extra)
{
    Reap(false);
    std::ostringstream msg;
    bool ended;
    {
        std::lock_guard lock(mu_);
        ended = eof_;
    }
    // The terminal closes a moment before the process can be reaped.
    for (auto until = Clock::now() + Scaled(2s); ended && !exit_ && Clock::now() < until;) {
        std::this_thread::sleep_for(10ms);
        Reap(false);
    }
    if (pid_ <= 0)
        msg << "No program was started while waiting for " << what << ".\n";
    else if (ended && exit_)
        msg << "The program ended (" << *exit_ << ") while waiting for " << what << ".\n";
    else
        msg << "Timed out after " << Seconds(timeout) << " waiting for " << what << ".\n";
    msg << Dump();
    if (!extra.empty())
        msg << extra;
    ADD_FAILURE_AT(loc.file_name(), static_cast<int>(loc.line())) << msg.str();
    return false;
}

bool Console::WaitForText(std::string_view text, Duration timeout, std::source_location loc)
{
    if (Await([&] { return HasText(text); }, timeout, true))
        return true;
    return Fail("text " + Quoted(text) + " on the screen", timeout, loc);
}

bool Console::WaitForTextGone(std::string_view text, Duration timeout, std::source_location loc)
{
    if (Await([&] { return !HasText(text); }, timeout, true))
        return true;
    return Fail("text " + Quoted(text) + " to leave the screen", timeout, loc);
}

bool Console::WaitForRow(int row, std::string_view regex, Duration timeout, std::source_location loc)
{
    const std::regex re{std::string(regex)};
    if (Await([&] { return std::regex_search(Row(row), re); }, timeout, true))
        return true;
    return Fail("row " + std::to_string(row) + " to match /" + std::string(regex) + "/ (it reads " +
                    Quoted(Row(row)) + ")",
                timeout, loc);
}

bool Console::WaitUntil(const std::function<bool()>& predicate, std::string_view what, Duration timeout,
                        std::source_location loc)
{
    if (Await(predicate, timeout, false))
        return true;
    return Fail(std::string(what), timeout, loc);
}

bool Console::WaitForLog(std::string_view text, Duration timeout, std::source_location loc)
{
    if (Await([&] { return Syslog().find(text) != std::string::npos; }, timeout, false))
        return true;
    return Fail(Quoted(text) + " in var/log/syslog.log", timeout, loc,
                "Last lines of var/log/syslog.log:\n" + Tail(Syslog(), 20));
}

bool Console::WaitForEvent(std::string_view text, Duration timeout, std::source_location loc)
{
    if (Await([&] { return EventLog().find(text) != std::string::npos; }, timeout, false))
        return true;
    return Fail(Quoted(text) + " in var/log/evtd.log", timeout, loc,
                "Last lines of var/log/evtd.log:\n" + Tail(EventLog(), 20));
}

ExitStatus Console::WaitForExit(Duration timeout, std::source_location loc)
{
    if (pid_ <= 0) {
        Fail("the program to exit", timeout, loc);
        return ExitStatus{true, -1, 0};
    }
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        Reap(false);
        if (exit_)
            break;
        if (Clock::now() >= deadline) {
            Fail("the program to exit", timeout, loc);
            return ExitStatus{true, -1, 0};
        }
        std::unique_lock lock(mu_);
        changed_.wait_for(lock, 10ms);
    }
    // Let the last output reach the screen; a process the program left
    // behind may hold the terminal open, so this wait is bounded.
    std::unique_lock lock(mu_);
    changed_.wait_until(lock, std::min(deadline, Clock::now() + Scaled(1s)), [&] { return eof_; });
    return *exit_;
}

bool Console::WaitForQuiet(Duration quiet, Duration timeout, std::source_location loc)
{
    auto isQuiet = [&] {
        std::lock_guard lock(mu_);
        return eof_ || Clock::now() - lastOutput_ >= quiet;
    };
    if (Await(isQuiet, timeout, false))
        return true;
    return Fail("the output to pause for " + Seconds(quiet), timeout, loc);
}

}  // namespace Tolm::E2E

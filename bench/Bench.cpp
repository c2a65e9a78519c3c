// What the console costs on the wire: drives the real tolm on a
// pseudo-terminal at 80x25 and prints, per step, the bytes it wrote, the cells
// that changed, what those bytes take at 9600 and 115200 baud, and how long
// the answer took. Then start-up time and peak memory beside a bare curses
// program. A measurement, not a test: nothing here passes or fails.
#include <cstdlib>
#include <fstream>
#include <regex>
#include <iostream>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "Steps.h"
#include "harness/Console.h"

namespace Tolm::E2E {
namespace {

using Ms = std::chrono::duration<double, std::milli>;

struct Figures {
    std::string step;
    size_t bytes = 0;
    int cells = 0;
    double latencyMs = 0;
};

std::vector<Cell> Snapshot(const Console& c)
{
    std::vector<Cell> cells;
    for (int row = 0; row < c.Rows(); ++row)
        for (int col = 0; col < c.Cols(); ++col) cells.push_back(c.CellAt(col, row));
    return cells;
}

bool Same(const Cell& a, const Cell& b)
{
    return a.text == b.text && a.fg == b.fg && a.bg == b.bg && a.bold == b.bold && a.reverse == b.reverse &&
           a.underline == b.underline;
}

int Changed(const std::vector<Cell>& before, const std::vector<Cell>& after)
{
    int n = 0;
    for (size_t i = 0; i < before.size() && i < after.size(); ++i) n += Same(before[i], after[i]) ? 0 : 1;
    return n;
}

// TOLM_BENCH_DUMP=1 shows what each step wrote, escapes made visible.
void Dump(const std::string& step, const std::string& bytes)
{
    std::cout << "--- " << step << "\n";
    for (unsigned char ch : bytes) {
        if (ch == 27)
            std::cout << "\\E";
        else if (ch < 32 || ch == 127)
            std::cout << "^" << static_cast<char>(ch ^ 64);
        else
            std::cout << ch;
    }
    std::cout << "\n";
}

// How long the program's answer took: from the key to its last byte.
Figures Measure(Console& c, const std::string& step, const std::function<void()>& action,
                const std::function<bool()>& done = {})
{
    c.WaitForQuiet(300ms);
    const auto before = Snapshot(c);
    const size_t bytes = c.RawOutput().size();
    const auto start = Clock::now();
    action();
    if (done) c.WaitUntil(done, step);
    c.WaitUntil([&] { return c.RawOutput().size() > bytes; }, step + ": any output");
    c.WaitForQuiet(300ms);
    Figures f{step, c.RawOutput().size() - bytes, Changed(before, Snapshot(c)),
              Ms(c.LastOutputTime() - start).count()};
    if (std::getenv("TOLM_BENCH_DUMP")) Dump(step, c.RawOutput().substr(bytes));
    return f;
}

// Kilobytes of the peak resident set of a running process.
long PeakKb(pid_t pid)
{
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmHWM:", 0) == 0) return std::stol(line.substr(6));
    return -1;
}

ConsoleOptions Options(const std::string& term)
{
    ConsoleOptions o;
    o.fixture = "typical";
    o.term = term;
    return o;
}

void Print(const std::string& term, const std::vector<Figures>& rows)
{
    std::cout << "\nTERM=" << term << " (80x25)\n";
    std::cout << std::left << std::setw(34) << "step" << std::right << std::setw(9) << "bytes" << std::setw(8)
              << "cells" << std::setw(10) << "9600 s" << std::setw(10) << "115200 s" << std::setw(12)
              << "latency ms" << "\n";
    for (const Figures& f : rows) {
        std::cout << std::left << std::setw(34) << f.step << std::right << std::setw(9) << f.bytes << std::setw(8)
                  << f.cells << std::fixed << std::setprecision(2) << std::setw(10) << f.bytes * 10.0 / 9600
                  << std::setprecision(3) << std::setw(10) << f.bytes * 10.0 / 115200 << std::setprecision(1)
                  << std::setw(12) << f.latencyMs << "\n";
    }
}

// A key and its whole answer.
void PressAndSettle(Console& c, Key key)
{
    const size_t bytes = c.RawOutput().size();
    c.Press(key);
    c.WaitUntil([&] { return c.RawOutput().size() > bytes; }, "an answer");
    c.WaitForQuiet(100ms);
}

bool ToEntry(Console& c, const std::string& entry)
{
    for (int i = 0; i < 15; ++i) {
        if (std::regex_search(c.Row(1), std::regex("System Customization +" + entry))) return true;
        PressAndSettle(c, Key::Down);
    }
    return false;
}

std::vector<Figures> Scenarios(const std::string& term)
{
    std::vector<Figures> rows;
    Console c(Options(term));
    const auto started = Clock::now();
    c.Start();
    Started(c);
    rows.push_back({"first status screen", c.RawOutput().size(), c.Rows() * c.Cols(),
                    Ms(c.LastOutputTime() - started).count()});
    if (std::getenv("TOLM_BENCH_DUMP")) Dump("first status screen", c.RawOutput());
    rows.push_back(Measure(c, "status screen key (full repaint)", [&] { c.Type(" "); }));

    // Logging in: F2, the password typed, Enter; one typed character apart.
    Figures login{"login, to the menu", 0, 0, 0};
    const auto add = [&](const Figures& f) {
        login.bytes += f.bytes;
        login.latencyMs += f.latencyMs;
    };
    const auto statusCells = Snapshot(c);
    add(Measure(c, "open login", [&] { c.Press(Key::F2); }, [&] { return c.HasText("Login Name:"); }));
    add(Measure(c, "tab", [&] { c.Press(Key::Tab); }));
    const Figures typed = Measure(c, "typing one character", [&] { c.Type(std::string(1, ROOT_PASSWORD[0])); });
    add(typed);
    add(Measure(c, "rest", [&] { c.Type(ROOT_PASSWORD + 1); }));
    add(Measure(c, "enter", [&] { c.Press(Key::Enter); },
                [&] { return c.HasText("System Customization") && c.HasText("Configure Password"); }));
    login.cells = Changed(statusCells, Snapshot(c));
    rows.push_back(typed);
    rows.push_back(login);

    rows.push_back(Measure(c, "menu Down", [&] { c.Press(Key::Down); }));
    rows.push_back(Measure(c, "menu Up", [&] { c.Press(Key::Up); }));

    ToEntry(c, "Configure Keyboard");
    rows.push_back(Measure(c, "open Configure Keyboard", [&] { c.Press(Key::Enter); },
                           [&] { return c.HasText("US Default"); }));
    {
        c.WaitForQuiet(300ms);
        const auto before = Snapshot(c);
        const size_t bytes = c.RawOutput().size();
        const auto start = Clock::now();
        c.SendBytes("\x1b");
        c.WaitUntil([&] { return c.RawOutput().size() > bytes; }, "Esc answered");
        const double answered = Ms(Clock::now() - start).count();
        c.WaitForQuiet(300ms);
        rows.push_back({"lone Esc (close the dialog)", c.RawOutput().size() - bytes, Changed(before, Snapshot(c)),
                        answered});
    }

    ToEntry(c, "View System Logs");
    c.Press(Key::F1);
    c.WaitForText("<Q> Quit");
    rows.push_back(Measure(c, "leave the log viewer", [&] { c.Type("q"); },
                           [&] { return c.HasText("Configure Password"); }));
    rows.push_back(Measure(c, "log out", [&] { c.SendEsc(); }, [&] { return c.HasText(STATUS_FOOTER); }));
    return rows;
}

// Log in, ten moves down and up, log out: everything written from the start.
Figures Session(const std::string& term)
{
    Console c(Options(term));
    const auto started = Clock::now();
    c.Start();
    LogInToMenu(c);
    for (int i = 0; i < 10; ++i) PressAndSettle(c, Key::Down);
    for (int i = 0; i < 10; ++i) PressAndSettle(c, Key::Up);
    c.SendEsc();
    c.WaitForRow(-1, STATUS_FOOTER);
    c.WaitForQuiet(300ms);
    return {"whole session", c.RawOutput().size(), 0, Ms(Clock::now() - started).count()};
}

// How soon a lone Esc acts: it closes the login dialog. TERM decides the
// terminal kind (xterm and linux are the local console).
double EscLatency(const std::string& term)
{
    Console c(Options(term));
    c.Start();
    Started(c);
    c.Press(Key::F2);
    c.WaitForText("Login Name:");
    c.WaitForQuiet(300ms);
    const size_t bytes = c.RawOutput().size();
    const auto start = Clock::now();
    c.SendBytes("\x1b");
    c.WaitUntil([&] { return c.RawOutput().size() > bytes; }, "Esc answered");
    return Ms(Clock::now() - start).count();
}

struct Start {
    double ms = 0;
    long peakKb = 0;
};

Start StartTolm()
{
    Console c(Options("xterm-256color"));
    const auto started = Clock::now();
    c.Start();
    c.WaitForRow(-1, STATUS_FOOTER);
    const double ms = Ms(Clock::now() - started).count();
    c.WaitForQuiet(300ms);
    return {ms, PeakKb(c.Pid())};
}

Start StartBare()
{
    ConsoleOptions o;
    o.createRoot = false;
    o.term = "xterm-256color";
    Console c(o);
    const auto started = Clock::now();
    c.StartShell("exec '" + (BinDir() / "tolm-bare-curses").string() + "'");
    c.WaitForText("bare curses");
    const double ms = Ms(Clock::now() - started).count();
    c.WaitForQuiet(300ms);
    return {ms, PeakKb(c.Pid())};
}

}  // namespace
}  // namespace Tolm::E2E

int main()
{
    using namespace Tolm::E2E;
    for (const std::string term : {"xterm-256color", "vt100"}) {
        auto rows = Scenarios(term);
        rows.push_back(Session(term));
        Print(term, rows);
    }
    std::cout << "\nlone Esc, login dialog closed after (ms):";
    for (const std::string term : {"xterm", "linux", "xterm-256color", "vt100"})
        std::cout << "  " << term << " " << std::fixed << std::setprecision(1) << EscLatency(term);
    std::cout << "\n";
    const Start tolm = StartTolm();
    const Start bare = StartBare();
    std::cout << "\nstart-up to first screen (xterm-256color)\n"
              << std::fixed << std::setprecision(1) << "  tolm         " << std::setw(8) << tolm.ms << " ms  peak "
              << tolm.peakKb << " kB\n"
              << "  bare curses  " << std::setw(8) << bare.ms << " ms  peak " << bare.peakKb << " kB\n";
    return 0;
}

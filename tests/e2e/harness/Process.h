#pragma once

// Small process helpers for the harness (not for the code under test).

#include <string>
#include <vector>

namespace Tolm::E2E {

struct RunResult {
    int status = -1;  // exit code, or 128 + signal
    std::string out;
    std::string err;
};

// Runs argv[0] (an absolute path) with the harness's own environment and
// collects its standard output and error.
RunResult RunCapture(const std::vector<std::string>& argv);

// The libfaketime preload library for programs with threads, "" if missing.
std::string FakeTimeLibrary();

std::string ReadFile(const std::string& path);  // "" if missing

}  // namespace Tolm::E2E

#pragma once
// Small process helpers for the harness (not for the code under test).
#include <string>
#include <vector>

namespace Tolm::E2E {

struct RunResult {
    int status = -1;  // exit code, or 128 + signal
    std::string out;  // standard output and error
};

// Runs argv[0] (an absolute path) with the harness's environment.
RunResult RunCapture(const std::vector<std::string>& argv);
std::string FakeTimeLibrary();                  // libfaketime for threaded programs, "" if missing
std::string ReadFile(const std::string& path);  // "" if missing

}  // namespace Tolm::E2E

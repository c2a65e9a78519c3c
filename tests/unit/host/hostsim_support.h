#pragma once
// Helpers for the tolm-hostsim tests: a fresh host root per test and real
// processes run the way the console runs them.
#include "host/sim/StateFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace Tolm::HostSimTest {

struct Result {
    int status = -1;  // exit status, or -1 after a signal
    std::string out;
    std::string err;
};

// Runs argv[0] (a path) with `env` as the whole environment.
Result RunProcess(const std::vector<std::string>& argv,
           const std::vector<std::string>& env = {"PYTHONHOME=/"});

std::string HostSimBinary();
std::string ReadText(const std::string& path);

class HostRoot : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Renews the root from a fixture name or file.
    void Init(const std::string& fixture = "typical");
    // Runs a tool script of the root, e.g. Tool("bin/orla-cmd", {...}).
    Result Tool(const std::string& script, const std::vector<std::string>& args = {});
    Result HostSim(const std::vector<std::string>& args);
    nlohmann::json State() const;
    void Change(const std::string& pointer, const nlohmann::json& value);
    std::string Path(const std::string& rel) const { return _root + "/" + rel; }
    std::string Root() const { return _root; }

private:
    std::string _top;   // temporary folder holding the root
    std::string _root;
};

}  // namespace Tolm::HostSimTest

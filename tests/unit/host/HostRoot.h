#pragma once
// A fresh simulated host root per test, loaded from a fixture.
#include "host/Backend.h"
#include "host/sim/SimBackend.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

namespace Tolm::Test {

class HostRoot {
public:
    explicit HostRoot(const std::string& fixture = "typical")
    {
        char tmpl[] = "/tmp/tolm-host-XXXXXX";
        _root = ::mkdtemp(tmpl);
        std::filesystem::create_directories(_root + "/var/lib/hostsim");
        std::filesystem::create_directories(_root + "/var/log");
        std::ifstream in(std::string(TOLM_SOURCE_DIR) + "/tests/fixtures/" + fixture + ".json");
        nlohmann::json state = nlohmann::json::parse(in);
        State().Write(state);
        ::setenv("TOLM_ROOT", _root.c_str(), 1);
        HostSim::UseSimulatedState(StatePath());
    }
    ~HostRoot()
    {
        Host::SetBackend(nullptr);
        ::unsetenv("TOLM_ROOT");
        std::error_code ec;
        std::filesystem::remove_all(_root, ec);
    }
    HostRoot(const HostRoot&) = delete;
    HostRoot& operator=(const HostRoot&) = delete;

    const std::string& Root() const { return _root; }
    std::string StatePath() const { return _root + "/var/lib/hostsim/host.json"; }
    HostSim::StateFile State() const { return HostSim::StateFile(StatePath()); }
    nlohmann::json Read() const { return State().Read(); }
    // The text of the root's file `rel` ("/var/log/syslog.log"), "" if missing.
    std::string File(const std::string& rel) const
    {
        std::ifstream in(_root + rel, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    void Set(const std::string& pointer, const nlohmann::json& value) const
    {
        State().Update([&](nlohmann::json& s) { s[nlohmann::json::json_pointer(pointer)] = value; });
    }

private:
    std::string _root;
};

}  // namespace Tolm::Test

#pragma once
#ifndef TOLM_HOST_BACKEND_SIM
#error "Only the program that chooses the host backend, tolm-hostsim and tests use the simulated host directly"
#endif
// The simulated host's state: one JSON file shared by the console and the
// host tools, which are separate processes. Readers see a whole file; every
// change is read-modify-write under an exclusive flock on a sibling lock file
// and lands by rename, so a crash mid-write leaves the previous state.
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace Tolm::HostSim {

class StateFile {
public:
    explicit StateFile(std::string path);

    // <host root>/var/lib/hostsim/host.json
    static std::string DefaultPath();

    const std::string& Path() const { return _path; }

    // Throws HostCtl::Lib::HostCtlException when missing or not valid JSON.
    nlohmann::json Read() const;

    // Reads the current state, lets `change` edit it, writes it back; all
    // under the lock, so concurrent updaters lose nothing. If `change`
    // throws, nothing is written.
    void Update(const std::function<void(nlohmann::json&)>& change) const;

    // Replaces the whole state (used when a root is created).
    void Write(const nlohmann::json& state) const;

private:
    std::string _path;
};

}  // namespace Tolm::HostSim

#pragma once
// The files of a new host root besides its state: texts, logs, keys,
// certificate, PAM set-up and the tool scripts.
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace Tolm::HostSim {

// The demo account that `make run` prints; pam_matrix checks it.
inline constexpr const char* DEMO_USER = "root";
inline constexpr const char* DEMO_PASSWORD = "tolmdemo";
// An account whose password is right but that PAM refuses for the console.
inline constexpr const char* DENIED_USER = "sshonly";
inline constexpr const char* DENIED_PASSWORD = "sshonly";
// The PIN that a smart card's user id logs in with.
inline constexpr const char* CARD_PIN = "1234";

void WriteFile(const std::string& path, const std::string& text, unsigned mode = 0644);

// Runs a program found on PATH with its output discarded; returns its exit
// status, or -1 when it could not be run.
int RunQuiet(const std::vector<std::string>& argv);

// Full path of a program on PATH, or empty.
std::string FindProgram(const std::string& name);

void WriteSupportPages(const std::string& root);
void WriteSampleLogs(const std::string& root, const nlohmann::json& state);
void WriteHostsFile(const std::string& root, const nlohmann::json& state);
void WriteCertificateAndKeys(const std::string& root, const nlohmann::json& state);
void WritePamSetup(const std::string& root, const nlohmann::json& state);
void WriteToolScripts(const std::string& root);

// Adds `user` with `password` for the console's PAM service unless present.
void AddPamAccount(const std::string& root, const std::string& user, const std::string& password);

}  // namespace Tolm::HostSim

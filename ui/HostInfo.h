#pragma once
// The host facts behind the markup placeholders ({ssl-thumbprint},
// {memory}, ...). Every function returns a text to show: a failed query gives
// a fall-back text, never an exception. Results that cannot change while the
// console runs (fingerprints, management data) are cached.
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tolm::HostInfo {

// Shown in place of a value the host could not give.
inline constexpr const char* UNAVAILABLE = "(not available)";

using Function = std::string (*)();
// The placeholder names with their functions, in table order.
const std::vector<std::pair<std::string, Function>>& Placeholders();

std::string SslThumbprint();
std::string SshDsaFingerprint();
std::string SshRsaFingerprint();
std::string ProductName();
std::string ProductVersion();
std::string Memory();
std::string ServiceTag();
std::string AssetTag();
std::string BiosVersion();
std::string BmcVersion();
std::string CpldVersion();
std::string PlsaVersion();

// Forget cached results (tests, and a changed host root).
void ClearCache();

// The path to hand to RunCommand for a system program such as "openssl":
// the host's own "/bin/NAME" or "/usr/bin/NAME". Empty when the host has
// neither (the placeholder then shows its fallback).
std::string ToolPath(std::string_view name);

// Parsers, exposed for tests.
std::optional<std::string> ParseSslFingerprint(std::string_view output);
std::optional<std::string> ParseSshFingerprint(std::string_view output);

struct CimValue {
    std::string cls, property, instance, value;
};
// Lines "CLASS PROPERTY INSTANCE=VALUE"; other lines are skipped.
std::vector<CimValue> ParseCimData(std::string_view output);
// The value a CIM placeholder shows ("servicetag", "BIOSversion", ...).
std::optional<std::string> PickCimValue(const std::vector<CimValue>& values, std::string_view placeholder);

}  // namespace Tolm::HostInfo

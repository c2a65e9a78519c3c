#include "ui/HostInfo.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>

#include "exec/RunCommand.h"
#include "exec/TextUtil.h"
#include "host/HostPaths.h"
#include "host/Log.h"
#include "host/TarnCtl.h"
#include "ui/MemoryLine.h"

namespace Tolm::HostInfo {

namespace {

constexpr int TOOL_TIMEOUT_SECONDS = 10;
// A failed query is asked again only after this long, so a redraw loop does
// not start a tool (and log its failure) on every key.
constexpr auto RETRY_AFTER = std::chrono::seconds(60);

struct ToolResult {
    int status = -1;
    std::string out;
    std::string err;
};

ToolResult RunTool(const std::string& path, const std::vector<std::string>& args)
{
    ToolResult result;
    if (path.empty()) return result;
    std::vector<const char*> argv;
    for (const auto& a : args) argv.push_back(a.c_str());
    argv.push_back(nullptr);
    char out[4096];
    char err[1024];
    unsigned outLength = sizeof out;
    unsigned errLength = sizeof err;
    result.status = RunCommand(path.c_str(), argv.data(), out, &outLength, err, &errLength, nullptr, 0,
                               TOOL_TIMEOUT_SECONDS);
    if (outLength <= sizeof out) result.out.assign(out, outLength);
    if (errLength <= sizeof err) result.err.assign(err, errLength);
    return result;
}

// One cached text: kept for good once known, asked again a while after a
// failure.
struct CacheEntry {
    std::optional<std::string> value;
    std::chrono::steady_clock::time_point failedAt{};
    bool failed = false;
};

std::map<std::string, CacheEntry>& Cache()
{
    static std::map<std::string, CacheEntry> cache;
    return cache;
}

template <class Query>
std::string Cached(const std::string& key, Query query)
{
    CacheEntry& entry = Cache()[key + "\n" + HostPath::Root()];
    if (entry.value) return *entry.value;
    const auto now = std::chrono::steady_clock::now();
    if (!entry.failed || now - entry.failedAt >= RETRY_AFTER) {
        entry.value = query();
        if (entry.value) return *entry.value;
        entry.failed = true;
        entry.failedAt = now;
    }
    return UNAVAILABLE;
}

bool Executable(const std::string& path) { return access(path.c_str(), X_OK) == 0; }

std::string Lower(std::string_view text)
{
    std::string lower(text);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

std::string SshFingerprint(const char* key)
{
    return Cached(key, [key]() -> std::optional<std::string> {
        const std::string tool = ToolPath("ssh-keygen");
        if (tool.empty()) {
            Log::Write(LOG_ERR, "Error generating SSH Key Fingerprint: %s", "ssh-keygen not found");
            return std::nullopt;
        }
        ToolResult r = RunTool(tool, {"ssh-keygen", "-l", "-f", HostPath::Resolve(key)});
        std::optional<std::string> fingerprint;
        if (r.status == 0) fingerprint = ParseSshFingerprint(r.out);
        if (!fingerprint) {
            std::string why = CollapseWhitespace(r.err);
            if (why.empty()) why = r.status < 0 ? std::strerror(errno) : "exit status " + std::to_string(r.status);
            Log::Write(LOG_ERR, "Error generating SSH Key Fingerprint: %s", why.c_str());
        }
        return fingerprint;
    });
}

// The product and version fields of the system version record.
std::optional<std::string> VersionField(size_t offset, size_t size)
{
    char record[TarnCtl::Util::SYSINFO_VERSION_SIZE] = {};
    try {
        TarnCtl::Util::SysinfoUtil::SysinfoGet(TarnCtl::Util::QSI_NODE_system_version, record, sizeof record);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting system version failed: %s", e.what());
        return std::nullopt;
    }
    std::string field(record + offset, strnlen(record + offset, size));
    field = CollapseWhitespace(field);
    if (field.empty()) return std::nullopt;
    return field;
}

std::string CimPlaceholder(std::string_view name)
{
    static const std::string key = "grabCIMData";
    const std::string data = Cached(key, []() -> std::optional<std::string> {
        ToolResult r = RunTool("/sbin/grabCIMData", {"grabCIMData"});
        if (r.status != 0) {
            Log::Write(LOG_ERR, "Reading management data failed: %s",
                       r.status < 0 ? "grabCIMData did not run" : CollapseWhitespace(r.err).c_str());
            return std::nullopt;
        }
        return r.out;
    });
    if (data == UNAVAILABLE) return UNAVAILABLE;
    auto value = PickCimValue(ParseCimData(data), name);
    return value ? *value : UNAVAILABLE;
}

}  // namespace

const std::vector<std::pair<std::string, Function>>& Placeholders()
{
    static const std::vector<std::pair<std::string, Function>> table = {
        {"ssl-thumbprint", SslThumbprint}, {"ssh-dsa-fingerprint", SshDsaFingerprint},
        {"ssh-rsa-fingerprint", SshRsaFingerprint}, {"talvoproduct", ProductName},
        {"talvoversion", ProductVersion}, {"memory", Memory},
        {"servicetag", ServiceTag}, {"assettag", AssetTag},
        {"BIOSversion", BiosVersion}, {"BMCversion", BmcVersion},
        {"CPLDversion", CpldVersion}, {"PLSAversion", PlsaVersion},
    };
    return table;
}

void ClearCache() { Cache().clear(); }

std::string ToolPath(std::string_view name)
{
    // The host's own tools; a simulated root links them to the machine's.
    for (const char* dir : {"/bin/", "/usr/bin/"}) {
        std::string path = dir + std::string(name);
        if (Executable(HostPath::Resolve(path))) return path;
    }
    return {};
}

std::string SslThumbprint()
{
    return Cached("ssl-thumbprint", []() -> std::optional<std::string> {
        const std::string tool = ToolPath("openssl");
        if (tool.empty()) return std::nullopt;
        ToolResult r = RunTool(tool, {"openssl", "x509", "-noout", "-sha1", "-fingerprint", "-in",
                                      HostPath::Resolve("/etc/pellor/ssl/nox.crt")});
        if (r.status != 0) {
            Log::Write(LOG_ERR, "Getting the SSL thumbprint failed: %s", CollapseWhitespace(r.err).c_str());
            return std::nullopt;
        }
        return ParseSslFingerprint(r.out);
    });
}

std::string SshDsaFingerprint() { return SshFingerprint("/etc/ssh/ssh_host_dsa_key"); }
std::string SshRsaFingerprint() { return SshFingerprint("/etc/ssh/ssh_host_rsa_key"); }

std::string ProductName()
{
    auto field = VersionField(TarnCtl::Util::SYSINFO_PRODUCT_OFFSET,
                              TarnCtl::Util::SYSINFO_VERSION_OFFSET - TarnCtl::Util::SYSINFO_PRODUCT_OFFSET);
    return field ? *field : UNAVAILABLE;
}

std::string ProductVersion()
{
    auto field = VersionField(TarnCtl::Util::SYSINFO_VERSION_OFFSET,
                              TarnCtl::Util::SYSINFO_KERNEL_RELEASE_OFFSET - TarnCtl::Util::SYSINFO_VERSION_OFFSET);
    return field ? *field : UNAVAILABLE;
}

std::string Memory()
{
    try {
        TarnCtl::Hardware::MemoryInfoImpl memory;
        return FormatMemorySize(memory.GetTotalPages() * memory.GetPageSize());
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting memory size failed: %s", e.what());
        return UNAVAILABLE;
    }
}

std::string ServiceTag() { return CimPlaceholder("servicetag"); }
std::string AssetTag() { return CimPlaceholder("assettag"); }
std::string BiosVersion() { return CimPlaceholder("BIOSversion"); }
std::string BmcVersion() { return CimPlaceholder("BMCversion"); }
std::string CpldVersion() { return CimPlaceholder("CPLDversion"); }
std::string PlsaVersion() { return CimPlaceholder("PLSAversion"); }

std::optional<std::string> ParseSslFingerprint(std::string_view output)
{
    // Older tools print "SHA1 Fingerprint=", newer ones "sha1 Fingerprint=".
    std::string text(output);
    std::string lower = Lower(text);
    const auto at = lower.find("sha1 fingerprint=");
    if (at == std::string::npos) return std::nullopt;
    char value[256] = {};
    std::string line = "SHA1" + text.substr(at + 4);
    if (std::sscanf(line.c_str(), "SHA1 Fingerprint=%255s", value) != 1) return std::nullopt;
    return std::string(value);
}

std::optional<std::string> ParseSshFingerprint(std::string_view output)
{
    // "2048 SHA256:abc... comment (RSA)": the second field is the fingerprint.
    std::string line = CollapseWhitespace(output.substr(0, output.find('\n')));
    const auto first = line.find(' ');
    if (first == std::string::npos) return std::nullopt;
    std::string rest = line.substr(first + 1);
    std::string fingerprint = rest.substr(0, rest.find(' '));
    if (fingerprint.empty() || fingerprint.find(':') == std::string::npos) return std::nullopt;
    return fingerprint;
}

std::vector<CimValue> ParseCimData(std::string_view output)
{
    std::vector<CimValue> values;
    while (!output.empty()) {
        const auto end = output.find('\n');
        std::string_view line = output.substr(0, end);
        output = end == std::string_view::npos ? std::string_view() : output.substr(end + 1);
        const auto s1 = line.find(' ');
        if (s1 == std::string_view::npos) continue;
        const auto s2 = line.find(' ', s1 + 1);
        if (s2 == std::string_view::npos) continue;
        const auto eq = line.find('=', s2 + 1);
        if (eq == std::string_view::npos) continue;
        values.push_back({std::string(line.substr(0, s1)), std::string(line.substr(s1 + 1, s2 - s1 - 1)),
                          std::string(line.substr(s2 + 1, eq - s2 - 1)),
                          CollapseWhitespace(line.substr(eq + 1))});
    }
    return values;
}

std::optional<std::string> PickCimValue(const std::vector<CimValue>& values, std::string_view placeholder)
{
    // Which class and property holds each value; an instance naming the value
    // wins, otherwise the value's place among its class's values.
    static constexpr struct {
        std::string_view placeholder, cls, property, keyword;
        size_t index;
    } table[] = {
        {"servicetag", "CIM_Chassis", "OtherIdentifyingInfo", "service", 0},
        {"assettag", "CIM_Chassis", "OtherIdentifyingInfo", "asset", 1},
        {"BIOSversion", "OMC_SMASHFirmwareIdentity", "VersionString", "bios", 0},
        {"BMCversion", "OMC_MCFirmwareIdentity", "VersionString", "bmc", 0},
        {"CPLDversion", "Pellor_HHRCWrapperSoftwareIdentity", "VersionString", "cpld", 0},
        {"PLSAversion", "Pellor_HHRCWrapperSoftwareIdentity", "VersionString", "plsa", 1},
    };
    for (const auto& row : table) {
        if (row.placeholder != placeholder) continue;
        std::vector<const CimValue*> candidates;
        for (const auto& v : values)
            if (v.cls == row.cls && v.property == row.property) candidates.push_back(&v);
        for (const auto* v : candidates)
            if (Lower(v->instance).find(row.keyword) != std::string::npos && !v->value.empty()) return v->value;
        if (row.index < candidates.size() && !candidates[row.index]->value.empty())
            return candidates[row.index]->value;
        return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace Tolm::HostInfo

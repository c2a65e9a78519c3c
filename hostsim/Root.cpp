// Creating and renewing a host root.
#include "hostsim/HostSim.h"
#include "hostsim/RootFiles.h"
#include "hostsim/StateKeys.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace Tolm::HostSim {
namespace {

std::string FixturePath(const std::string& fixture)
{
    if (fixture.find('/') != std::string::npos || fs::exists(fixture))
        return fixture;
    return std::string(TOLM_FIXTURE_DIR) + "/" + fixture + ".json";
}

nlohmann::json LoadFixture(const std::string& fixture)
{
    std::string path = FixturePath(fixture);
    std::ifstream in(path);
    if (!in)
        throw Refusal("cannot read fixture " + path);
    std::stringstream text;
    text << in.rdbuf();
    nlohmann::json state;
    try {
        state = nlohmann::json::parse(text.str());
    } catch (const nlohmann::json::exception& e) {
        throw Refusal("fixture " + path + " is not valid JSON: " + e.what());
    }
    if (!state.is_object())
        throw Refusal("fixture " + path + " is not a JSON object");
    return state;
}

// Renewing wipes the folder, so only an empty folder or an earlier host
// root may be renewed: a mistyped path must never cost someone their files.
void ClearRoot(const fs::path& root)
{
    if (!fs::exists(root))
        return;
    if (!fs::is_directory(root))
        throw Refusal(root.string() + " exists and is not a folder");
    bool empty = fs::directory_iterator(root) == fs::directory_iterator();
    if (!empty && !fs::exists(root / STATE_FILE))
        throw Refusal(root.string() + " is neither empty nor a simulated host root; not replacing it");
    fs::remove_all(root);
}

void LinkSystemProgram(const fs::path& root, const std::string& name, const std::string& linkPath)
{
    std::string target = FindProgram(name);
    if (target.empty())
        return;
    fs::create_directories((root / linkPath).parent_path());
    fs::create_symlink(target, root / linkPath);
}

}  // namespace

std::string InRoot(const std::string& root, const std::string& path)
{
    std::string rel = path;
    while (!rel.empty() && rel.front() == '/')
        rel.erase(rel.begin());
    return (fs::path(root) / rel).string();
}

StateFile StateOf(const std::string& root)
{
    return StateFile(InRoot(root, STATE_FILE));
}

std::string SelfPath()
{
    std::error_code ec;
    fs::path self = fs::read_symlink("/proc/self/exe", ec);
    if (ec)
        throw Refusal("cannot find the tolm-hostsim executable: " + ec.message());
    return self.string();
}

void InitRoot(const std::string& rootArg, const std::string& fixture)
{
    nlohmann::json state = LoadFixture(fixture);
    fs::path root = fs::weakly_canonical(fs::absolute(rootArg));
    if (root == root.root_path())
        throw Refusal("refusing to use / as a simulated host root");
    ClearRoot(root);

    for (const char* dir : {"var/lib/hostsim", "var/run/pellor", "var/log", "etc/pellor/ssl",
                            "etc/ssh", "etc/pam.d", "etc/init.d", "bin", "sbin", "tmp"})
        fs::create_directories(root / dir);

    std::string r = root.string();
    StateOf(r).Write(state);
    StateFile(InRoot(r, FACTORY_FILE)).Write(state);

    if (LoginEnabled(state))
        WriteFile(InRoot(r, LOGIN_FLAG_FILE), "");
    WriteSupportPages(r);
    WriteSampleLogs(r, state);
    WriteHostsFile(r, state);
    WriteCertificateAndKeys(r, state);
    WritePamSetup(r, state);
    LinkSystemProgram(root, "sh", "bin/sh");
    LinkSystemProgram(root, "less", "bin/less");
    LinkSystemProgram(root, "openssl", "bin/openssl");
    LinkSystemProgram(root, "ssh-keygen", "bin/ssh-keygen");
    WriteToolScripts(r);
}

}  // namespace Tolm::HostSim

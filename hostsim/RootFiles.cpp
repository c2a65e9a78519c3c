// The files of a new host root besides its state.
#include "hostsim/RootFiles.h"

#include "hostsim/HostSim.h"
#include "hostsim/pam/passdb.h"
#include "hostsim/StateKeys.h"
#include "host/ShellQuote.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <spawn.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace fs = std::filesystem;

namespace Tolm::HostSim {
namespace {

// Where Debian's libpam-wrapper puts pam_matrix; the first that exists wins.
std::string PamMatrixModule()
{
    const char* candidates[] = {
        "/usr/lib/x86_64-linux-gnu/pam_wrapper/pam_matrix.so",
        "/usr/lib/aarch64-linux-gnu/pam_wrapper/pam_matrix.so",
        "/usr/lib/i386-linux-gnu/pam_wrapper/pam_matrix.so",
        "/usr/lib64/pam_wrapper/pam_matrix.so",
        "/usr/lib/pam_wrapper/pam_matrix.so",
    };
    for (const char* path : candidates)
        if (fs::exists(path))
            return path;
    std::cerr << "tolm-hostsim: warning: pam_matrix.so not found (package libpam-wrapper)\n";
    return candidates[0];
}

}  // namespace

void WriteFile(const std::string& path, const std::string& text, unsigned mode)
{
    {
        std::ofstream out(path, std::ios::trunc);
        if (!out)
            throw Refusal("cannot write " + path);
        out << text;
        if (!out.flush())
            throw Refusal("cannot write " + path);
    }
    ::chmod(path.c_str(), mode);
}

std::string FindProgram(const std::string& name)
{
    const char* pathEnv = std::getenv("PATH");
    std::string dirs = pathEnv != nullptr && *pathEnv != '\0' ? pathEnv : "/usr/bin:/bin:/usr/sbin:/sbin";
    dirs += ":/usr/bin:/bin";
    std::stringstream in(dirs);
    std::string dir;
    while (std::getline(in, dir, ':')) {
        if (dir.empty())
            continue;
        std::string candidate = dir + "/" + name;
        if (::access(candidate.c_str(), X_OK) == 0 && !fs::is_directory(candidate))
            return candidate;
    }
    return "";
}

int RunQuiet(const std::vector<std::string>& argv)
{
    std::vector<char*> args;
    for (const std::string& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = -1;
    int rc = ::posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0)
        return -1;
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void WriteSupportPages(const std::string& root)
{
    // Pages end at a line starting with "$"; lines starting with "#" are notes
    // for whoever edits the file and are never shown.
    WriteFile(InRoot(root, "etc/pellor/support"),
              "# Support information shown by the console, one page per block.\n"
              "# A line starting with '$' ends a page.\n"
              "{color:white}Contacting support{/color}\n"
              "\n"
              "Before you call, note the host's product version and service tag\n"
              "from the status screen, and the time the problem began.\n"
              "\n"
              "Support line: +1 555 0100 (around the clock)\n"
              "Web: support.pellor.example\n"
              "$\n"
              "{color:white}Collecting logs{/color}\n"
              "\n"
              "Enable the Talvo Shell or SSH under Troubleshooting Options and run\n"
              "the log bundle tool; it writes one archive into /var/tmp.\n"
              "\n"
              "Without network access, View System Logs shows the most recent logs\n"
              "on this console.\n"
              "$\n"
              "# Page three is kept short on purpose.\n"
              "{color:white}Licensing{/color}\n"
              "\n"
              "This host runs in evaluation mode until a licence key is assigned\n"
              "by the central management server.\n");
}

void WriteSampleLogs(const std::string& root, const nlohmann::json& state)
{
    std::string host = HostName(state);
    auto log = [&](const char* name, const std::string& text) { WriteFile(InRoot(root, std::string("var/log/") + name), text); };
    log("syslog.log",
        "2026-11-21T09:58:01 daemon.info init[1]: Starting host services\n"
        "2026-11-21T09:58:03 daemon.info hagentd[812]: Management agent started\n"
        "2026-11-21T09:58:04 auth.info sshd[840]: Server listening on 0.0.0.0 port 22\n");
    log("tarn.log",
        "0:00:00:01.002 cpu0:1)Boot: Tarn kernel starting\n"
        "0:00:00:02.517 cpu0:1)Mem: 32768 MB of memory found\n"
        "0:00:00:04.090 cpu1:33)Net: uplinks initialised\n");
    log("sysboot.log",
        "sysboot: loading configuration\n"
        "sysboot: hostname " + host + "\n"
        "sysboot: configuration loaded\n");
    log("hagentd.log",
        "2026-11-21T09:58:03 [info] hagentd: accepting connections\n"
        "2026-11-21T09:59:10 [info] hagentd: inventory refreshed\n");
    log("cagent.log", "2026-11-21T09:58:05 [info] cagent: not connected to a central server\n");
    log("haagent.log", "2026-11-21T09:58:06 [info] haagent: high availability not configured\n");
    log("evtd.log", "2026-11-21T09:58:02 evt.host.boot Host " + host + " booted\n");
}

void WriteHostsFile(const std::string& root, const nlohmann::json& state)
{
    std::string text = "127.0.0.1\tlocalhost.localdomain localhost\n::1\tlocalhost.localdomain localhost\n";
    std::string host = HostName(state);
    std::string domain = DomainName(state);
    std::string address = ManagementAddress(state);
    if (!host.empty() && !address.empty())
        text += address + "\t" + (domain.empty() ? host : host + "." + domain + " " + host) + "\n";
    WriteFile(InRoot(root, "etc/hosts"), text);
}

void WriteCertificateAndKeys(const std::string& root, const nlohmann::json& state)
{
    std::string host = HostName(state).empty() ? "localhost" : HostName(state);
    std::string ssl = InRoot(root, "etc/pellor/ssl");
    if (RunQuiet({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-sha256", "-days", "3650",
                  "-subj", "/CN=" + host, "-keyout", ssl + "/nox.key", "-out", ssl + "/nox.crt"}) != 0)
        throw Refusal("openssl could not make the host certificate");
    std::string ssh = InRoot(root, "etc/ssh");
    if (RunQuiet({"ssh-keygen", "-q", "-t", "rsa", "-b", "2048", "-N", "", "-C", "root@" + host, "-f",
                  ssh + "/ssh_host_rsa_key"}) != 0)
        throw Refusal("ssh-keygen could not make the RSA host key");
    // Newer OpenSSH builds drop DSA; the console then logs its fingerprint error.
    if (RunQuiet({"ssh-keygen", "-q", "-t", "dsa", "-N", "", "-C", "root@" + host, "-f",
                  ssh + "/ssh_host_dsa_key"}) != 0)
        std::cerr << "tolm-hostsim: warning: this ssh-keygen cannot make DSA keys; no ssh_host_dsa_key\n";
}

void WritePamSetup(const std::string& root, const nlohmann::json& state)
{
    std::string module = PamMatrixModule();
    std::string passdb = InRoot(root, PASSDB_FILE);
    std::string args = module + " passdb=" + passdb + "\n";
    // pam_matrix's own password step asks for the old password again, which
    // a host's password step does not; the simulated host brings its own.
    std::string passwordModule = std::string(TOLM_PAM_MODULE_DIR) + "/pam_tolmsim.so";
    if (!fs::exists(passwordModule))
        std::cerr << "tolm-hostsim: warning: " << passwordModule << " not built; password changes will fail\n";
    WriteFile(InRoot(root, "etc/pam.d/tolm"),
              "# Simulated host: pam_wrapper's pam_matrix checks the root's password file\n"
              "# (user:password:service per line); pam_tolmsim changes passwords in it.\n"
              "auth     required " + args +
              "account  required " + args +
              "password required " + passwordModule + " passdb=" + passdb + "\n");
    // pam_matrix refuses the account step for a user whose line names another
    // service, which is how the console meets a valid but unauthorised user.
    WriteFile(passdb, std::string(DEMO_USER) + ":" + DEMO_PASSWORD + ":tolm\n" + DENIED_USER + ":" +
                          DENIED_PASSWORD + ":sshd\n",
              0600);
    for (const std::string& user : CardUserIds(state))
        AddPamAccount(root, user, CARD_PIN);
    WriteFile(InRoot(root, "etc/pellor/demo-login"),
              std::string("Login name: ") + DEMO_USER + "\nPassword:   " + DEMO_PASSWORD + "\n");
}

void AddPamAccount(const std::string& root, const std::string& user, const std::string& password)
{
    std::string passdb = InRoot(root, PASSDB_FILE);
    if (PassdbChange(passdb.c_str(), user.c_str(), password.c_str(), "tolm", PASSDB_ADD) != 0)
        throw Refusal("cannot write " + passdb);
}

void WriteToolScripts(const std::string& root)
{
    std::string self = SelfPath();
    for (const ToolScript& tool : ToolScripts()) {
        std::string path = InRoot(root, tool.path);
        fs::create_directories(fs::path(path).parent_path());
        // The console runs tools with nothing but PYTHONHOME in the
        // environment, so the root and the program are written in here.
        WriteFile(path,
                  "#!/bin/sh\nexec " + ShellQuote(self) + " --root " + ShellQuote(root) + " tool " + tool.name +
                      " \"$@\"\n",
                  0755);
    }
}

}  // namespace Tolm::HostSim

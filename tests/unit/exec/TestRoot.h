#pragma once
// A throwaway simulated host root for the exec tests (the typical host, with
// TOLM_ROOT pointing at it while the test runs): tools are small shell scripts
// placed inside it, and the log module's lines are read back from
// <root>/var/log/syslog.log.
#include "../host/HostRoot.h"

#include <regex>
#include <sys/stat.h>
#include <vector>

namespace Tolm::Test {

class TempRootTest : public ::testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(Root() + "/bin"); }

    const std::string& Root() const { return host.Root(); }

    // Writes an executable /bin/sh script at the host path `hostPath`.
    void WriteTool(const std::string& hostPath, const std::string& body) const
    {
        std::string path = Root() + hostPath;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path) << "#!/bin/sh\n" << body << "\n";
        ::chmod(path.c_str(), 0755);
    }

    void WriteFile(const std::string& hostPath, const std::string& text) const
    {
        std::ofstream(Root() + hostPath, std::ios::binary) << text;
    }

    std::string ReadFile(const std::string& hostPath) const { return host.File(hostPath); }

    // The log lines written under this root, without their time stamp and
    // process id: "user.err: Run Command did not terminate normally".
    std::vector<std::string> LogLines() const
    {
        static const std::regex line(R"((?:^|\n)\S+ (\S+) \S*?\]: ([^\n]*))");
        std::vector<std::string> lines;
        const std::string log = ReadFile("/var/log/syslog.log");
        for (std::sregex_iterator it(log.begin(), log.end(), line), end; it != end; ++it)
            lines.push_back((*it)[1].str() + ": " + (*it)[2].str());
        return lines;
    }

    HostRoot host;
};

}  // namespace Tolm::Test

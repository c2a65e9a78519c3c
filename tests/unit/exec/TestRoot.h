#pragma once
// A throwaway simulated host root for the exec tests (the typical host, with
// TOLM_ROOT pointing at it while the test runs): tools are small shell scripts
// placed inside it, and the log module's lines are read back from
// <root>/var/log/syslog.log.
#include "../host/HostRoot.h"

#include <sstream>
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

    std::string ReadFile(const std::string& hostPath) const
    {
        std::ifstream in(Root() + hostPath, std::ios::binary);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }

    // The log lines written under this root, without their time stamp and
    // process id: "user.err: Run Command did not terminate normally".
    std::vector<std::string> LogLines() const
    {
        std::vector<std::string> lines;
        std::istringstream in(ReadFile("/var/log/syslog.log"));
        for (std::string line; std::getline(in, line);) {
            size_t levelStart = line.find(' ');
            size_t identStart = line.find(' ', levelStart + 1);
            size_t messageStart = line.find("]: ", identStart);
            if (levelStart == std::string::npos || identStart == std::string::npos ||
                messageStart == std::string::npos) {
                lines.push_back(line);
                continue;
            }
            lines.push_back(line.substr(levelStart + 1, identStart - levelStart - 1) + ": " +
                            line.substr(messageStart + 3));
        }
        return lines;
    }

    HostRoot host;
};

}  // namespace Tolm::Test

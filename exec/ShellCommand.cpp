#include "exec/ShellCommand.h"

#include "host/HostPaths.h"
#include "host/Log.h"

#include <cstdlib>

namespace Tolm {
namespace {

// Single quotes keep a root path with blanks in it one word.
std::string Quote(const std::string& word)
{
    std::string out = "'";
    for (char c : word) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    return out + "'";
}

}  // namespace

int RunShellCommand(const std::string& program, const std::string& args)
{
    std::string line = program.empty() || program.front() != '/'
                           ? program
                           : Quote(HostPath::Resolve(program));
    if (!args.empty())
        line += " " + args;
    int status = std::system(line.c_str());
    if (status == -1)
        Log::Errno("system() failed");
    return status;
}

}  // namespace Tolm

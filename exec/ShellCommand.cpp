#include "exec/ShellCommand.h"

#include "exec/ToolRun.h"

#include "host/HostPaths.h"
#include "host/Log.h"
#include "host/ShellQuote.h"

#include <cstdlib>

namespace Tolm {

int RunShellCommand(const std::string& program, const std::string& args)
{
    std::string line = program.empty() || program.front() != '/'
                           ? program
                           : ShellQuote(HostPath::Resolve(program));
    if (!args.empty())
        line += " " + args;
    BeforeToolWait();
    int status = std::system(line.c_str());
    if (status == -1)
        Log::Errno("system() failed");
    return status;
}

}  // namespace Tolm

#pragma once
#include <string>

namespace TarnCtl::Util {

// Runs one shell command line and returns its exit status (-1 when it could
// not be run or ended by a signal). Tolm passes 0, 1, 0 for the three
// settings; they are accepted and ignored. Absolute paths in the line are
// taken inside the host root.
int TarnCtl_Exec(const std::string& commandLine, int background = 0, int wait = 1, int quiet = 0);

}  // namespace TarnCtl::Util

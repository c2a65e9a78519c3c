#pragma once
// The host logs the menu can show, and the pager that shows them.
#include <string>

namespace Tolm {

struct HostLog {
    int key;           // the key that opens it
    const char* keyName;
    const char* name;  // display name
    const char* file;  // host path
};

extern const HostLog kHostLogs[];
extern const int kHostLogCount;

// The log whose key is `key`, or null.
const HostLog* FindHostLog(int key);

// Runs the pager on the log on this terminal (curses mode is left while it
// runs) and waits for it. A missing log or a pager that cannot start is
// logged; the caller redraws its screen either way. True when the pager ran.
bool ViewHostLog(const HostLog& log);

}  // namespace Tolm

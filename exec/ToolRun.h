#pragma once
// Waiting for one host tool: its input is fed and its output collected while
// it runs (so no pipe fills up), the wait wakes when the tool exits (a pidfd,
// no polling), and the time limit kills the tool's whole process group and
// ends the wait at once, whoever else still holds the pipes.
#include <sys/types.h>

#include <chrono>

namespace Tolm {

struct PipePair;

// How a wait for a tool meets the rest of the program. Per thread: only the
// thread that installs them (the user-interface thread) uses them.
struct ToolWaitHooks {
    // Called before waiting, so the screen shows its progress text while
    // the host works.
    void (*beforeWait)() = nullptr;
    // Whenever `wakeFd` becomes readable during the wait, `onWake` runs (the
    // console's signal pipe: a terminate signal must not wait for a tool).
    int wakeFd = -1;
    void (*onWake)() = nullptr;
};
void SetToolWaitHooks(const ToolWaitHooks& hooks);
// The beforeWait hook, for waits that do not go through ToolRun.
void BeforeToolWait();

// A pidfd for `pid` (close-on-exec), readable once the process has ended;
// -1 where the kernel has none.
int OpenPidFd(pid_t pid);
// waitpid, tried again when a signal cuts it short.
pid_t WaitChild(pid_t pid, int* status, int flags);

// Waits without a limit for `pid`, which leads its own process group, as for
// a tool: the hooks are heard and KillRunningTool ends it. Its wait status,
// or -1. For programs that others start (the host library's).
int WaitForTool(pid_t pid);

// Kills the process group of the tool this thread is waiting for, if any;
// for an onWake that ends the process.
void KillRunningTool();

class ToolRun {
public:
    // `pid` leads its own process group; `timeoutSeconds` <= 0: no limit.
    ToolRun(pid_t pid, int timeoutSeconds);
    ~ToolRun();
    ToolRun(const ToolRun&) = delete;
    ToolRun& operator=(const ToolRun&) = delete;

    // Before Wait: what to write to the tool's input (its write end is
    // closed when done), and where each output goes (`buffer` null: read and
    // dropped). On return *length is the count stored, or all bits set after
    // a read error; bytes beyond the capacity are read and dropped.
    void Feed(PipePair& in, const char* input, unsigned int length);
    void Collect(int fd, char* buffer, unsigned int* length);

    // The wait status of the tool, or -1 when it was killed at the limit.
    int Wait();

private:
    struct Sink {
        int fd = -1;
        char* buffer = nullptr;
        unsigned int* length = nullptr;
        unsigned int stored = 0;
        bool failed = false;
    };
    void Drain(Sink& sink, bool all);
    void FeedSome();
    bool Reap(int flags);
    void KillGroup();

    pid_t _pid;
    int _pidfd = -1;
    int _timeoutSeconds;
    std::chrono::steady_clock::time_point _deadline;
    int _status = -1;
    bool _reaped = false;
    Sink _sinks[2];
    int _sinkCount = 0;
    PipePair* _in = nullptr;
    const char* _input = nullptr;
    unsigned int _inputLength = 0;
    unsigned int _fed = 0;
    ToolRun* _outer = nullptr;

    friend void KillRunningTool();
};

}  // namespace Tolm

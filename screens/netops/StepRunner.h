#pragma once
// Runs the network test's steps one at a time, each in a child process, and
// hears of a child's end through SIGCHLD while it exists: the constructor
// installs the handler, the destructor restores the default. The handler
// only writes a byte to a pipe that the key wait watches; the step is then
// reaped by its own pid, so the command runner's children (waited for by
// theirs) are never taken from it.
#include <sys/types.h>

#include <functional>
#include <optional>

#include "exec/PipePair.h"

namespace Tolm {

class StepRunner {
public:
    StepRunner();
    // Abandons a step still running, restores SIGCHLD, stops the watch.
    ~StepRunner();
    StepRunner(const StepRunner&) = delete;
    StepRunner& operator=(const StepRunner&) = delete;

    // Forks a child that runs `body` and ends with its result. Prepare
    // everything `body` needs before: it runs in a copy of a threaded
    // process. False when the child could not be made.
    bool Start(const std::function<int()>& body);
    bool Running() const { return _pid > 0; }

    // Call when the key wait reported the pipe: the step's wait status once
    // it ended (-1 when it cannot be known), nothing while it runs.
    std::optional<int> Collect();

    // Ends the running step at once: the child is killed and reaped, so it
    // changes nothing after this and leaves nothing behind.
    void Abandon();

private:
    PipePair _wake;
    sigset_t _savedMask{};
    pid_t _pid = -1;
};

}  // namespace Tolm

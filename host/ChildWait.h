#pragma once
// How the host library waits for a program it started. On its own it blocks
// in waitpid; the console puts in a wait that still serves its signals, so a
// program that never ends cannot keep the console from ending.
#include <sys/types.h>

namespace Tolm::Host {

// Waits for `pid` (the leader of a process group of its own) and returns its
// wait status, or -1 when none could be had.
using ChildWait = int (*)(pid_t pid);
// Null restores the plain blocking wait.
void SetChildWait(ChildWait wait);
int WaitForChild(pid_t pid);

}  // namespace Tolm::Host

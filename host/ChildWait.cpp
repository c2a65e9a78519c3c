#include "host/ChildWait.h"

#include <cerrno>
#include <sys/wait.h>

namespace Tolm::Host {
namespace {

int BlockingWait(pid_t pid)
{
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    return status;
}

ChildWait g_wait = &BlockingWait;

}  // namespace

void SetChildWait(ChildWait wait)
{
    g_wait = wait ? wait : &BlockingWait;
}

int WaitForChild(pid_t pid)
{
    return g_wait(pid);
}

}  // namespace Tolm::Host

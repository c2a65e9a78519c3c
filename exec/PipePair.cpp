#include "exec/PipePair.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace Tolm {
namespace {

void CloseFd(int& fd)
{
    if (fd != -1) {
        int saved = errno;
        ::close(fd);
        errno = saved;
        fd = -1;
    }
}

// Moves a descriptor that landed on 0, 1 or 2 (possible when the process was
// started with a standard stream closed) to 3 or above.
bool LiftAboveStandard(int& fd)
{
    if (fd > 2)
        return true;
    int moved = ::fcntl(fd, F_DUPFD_CLOEXEC, 3);
    if (moved < 0)
        return false;
    CloseFd(fd);
    fd = moved;
    return true;
}

}  // namespace

PipePair::~PipePair()
{
    Close();
}

bool PipePair::Open()
{
    Close();
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0)
        return false;
    readEnd = fds[0];
    writeEnd = fds[1];
    if (!LiftAboveStandard(readEnd) || !LiftAboveStandard(writeEnd)) {
        int saved = errno;
        Close();
        errno = saved;
        return false;
    }
    return true;
}

void PipePair::CloseRead()
{
    CloseFd(readEnd);
}

void PipePair::CloseWrite()
{
    CloseFd(writeEnd);
}

void PipePair::Close()
{
    CloseRead();
    CloseWrite();
}

}  // namespace Tolm

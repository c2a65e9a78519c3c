#pragma once
// Both ends of one pipe, closed when the pair goes out of scope, so every way
// out of the command runner (errors and exceptions included) closes them.

namespace Tolm {

struct PipePair {
    int readEnd = -1;
    int writeEnd = -1;

    PipePair() = default;
    PipePair(const PipePair&) = delete;
    PipePair& operator=(const PipePair&) = delete;
    ~PipePair();

    // Creates the pipe with close-on-exec on both ends, and keeps both ends
    // above the standard descriptors so the child's dup2 onto 0-2 cannot
    // clobber another end. False with errno set on failure.
    bool Open();

    void CloseRead();
    void CloseWrite();
    void Close();
};

}  // namespace Tolm

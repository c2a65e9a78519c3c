#pragma once
// The one routine through which the console runs a host tool as a child
// process, synchronously, optionally with a time limit.

namespace Tolm {

// Runs the executable at `path` (an absolute host path, resolved inside the
// host root) with `argv` (null-terminated; element 0 is the tool's short name)
// and an environment of exactly "PYTHONHOME=/". When the program is the shell
// and its first argument an absolute path (a script), that script is a host
// path too and is resolved inside the host root.
//
// `out`/`err` may be null; then nothing is collected and the matching length
// is left alone. Otherwise *outLength is the capacity on entry and the count
// stored on return (not terminated), or all bits set after a read error.
// Output is read while the child runs; what goes beyond the capacity is read
// and dropped, so a tool never blocks on a full pipe.
//
// `input` (may be null) is fed to the child's standard input, which is then
// closed. The child leads a process group of its own; `timeoutSeconds` > 0
// kills that whole group with SIGKILL when it runs longer. The call returns
// when the child itself has ended (or at the limit), whatever processes it
// left behind still hold its pipes.
//
// Result: the exit status (0..255), or -1 when the pipes or the child could not
// be made (errno tells why), the child died from a signal or was killed.
int RunCommand(const char* path, const char* const* argv, char* out, unsigned int* outLength,
               char* err, unsigned int* errLength, const char* input, unsigned int inputLength,
               int timeoutSeconds);

}  // namespace Tolm

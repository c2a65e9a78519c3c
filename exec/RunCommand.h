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
// Output is read only after the child has ended, so tools run this way must
// write less than a pipe's capacity.
//
// `input` (may be null) is fed to the child's standard input, which is then
// closed. `timeoutSeconds` > 0 kills the child with SIGKILL when it runs
// longer; the killed child is not reaped.
//
// Result: the exit status (0..255), or -1 when the pipes or the child could not
// be made (errno tells why), the child died from a signal or was killed.
int RunCommand(const char* path, const char* const* argv, char* out, unsigned int* outLength,
               char* err, unsigned int* errLength, const char* input, unsigned int inputLength,
               int timeoutSeconds);

}  // namespace Tolm

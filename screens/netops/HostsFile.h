#pragma once
// The host's "/etc/hosts" moved aside while the network test resolves a name,
// so the name is looked up through DNS only.
namespace Tolm::HostsFile {

// Copies the file to "/etc/hosts.backup" and removes it; false (logged)
// when it could not be set aside, and then the file stays in place.
bool MoveAside();
// Renames the backup back over the file (logged when that fails).
void Restore();
// After a step that may have ended half-way: the backup goes back when the
// file itself is missing.
void EnsureInPlace();

}  // namespace Tolm::HostsFile

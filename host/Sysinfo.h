#pragma once
// The kernel sysinfo nodes.
#include <cstddef>

namespace TarnCtl::Util {

enum QsiNode : int {
    QSI_NODE_system_version = 1,     // SysinfoVersion record, 312 bytes
    QSI_NODE_system_bootOption = 2,  // 4-byte int, 1 = audit mode
};

// Layout of the system version record: four NUL-terminated fields.
inline constexpr size_t SYSINFO_VERSION_SIZE = 312;
inline constexpr size_t SYSINFO_PRODUCT_OFFSET = 0;
inline constexpr size_t SYSINFO_VERSION_OFFSET = 32;
inline constexpr size_t SYSINFO_KERNEL_RELEASE_OFFSET = 96;
inline constexpr size_t SYSINFO_BUILD_OFFSET = 128;

namespace SysinfoUtil {
// Fills `out` (at least the node's size) with the node's record; throws
// HostCtl::Lib::HostCtlException when the node cannot be read or `size` is
// too small.
void SysinfoGet(int node, void* out, size_t size);
}  // namespace SysinfoUtil

// Non-throwing read: 0 on success, a non-zero error code otherwise.
int Qsi_Get(int node, void* out, size_t size);

}  // namespace TarnCtl::Util

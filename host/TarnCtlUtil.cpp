#include "host/TarnCtlUtil.h"

#include "host/Backend.h"
#include "host/HostCtlException.h"
#include "host/Sysinfo.h"

#include <algorithm>
#include <cstring>

namespace TarnCtl::Util {

using HostCtl::Lib::HostCtlException;

int TarnCtl_Exec(const std::string& commandLine, int, int, int)
{
    return Tolm::Host::Use("TarnCtl_Exec")->Exec(commandLine);
}

namespace {

void PutField(char* record, size_t offset, size_t width, const std::string& text)
{
    size_t n = std::min(text.size(), width - 1);
    std::memcpy(record + offset, text.data(), n);
    record[offset + n] = '\0';
}

void ReadNode(int node, void* out, size_t size)
{
    auto& backend = Tolm::Host::Current();
    if (out == nullptr)
        throw HostCtlException("sysinfo: no buffer");
    if (node == QSI_NODE_system_version) {
        if (size < SYSINFO_VERSION_SIZE)
            throw HostCtlException("sysinfo: buffer too small for the version record");
        auto v = backend.GetSystemVersion();
        char* record = static_cast<char*>(out);
        std::memset(record, 0, SYSINFO_VERSION_SIZE);
        PutField(record, SYSINFO_PRODUCT_OFFSET, SYSINFO_VERSION_OFFSET - SYSINFO_PRODUCT_OFFSET, v.product);
        PutField(record, SYSINFO_VERSION_OFFSET, SYSINFO_KERNEL_RELEASE_OFFSET - SYSINFO_VERSION_OFFSET, v.version);
        PutField(record, SYSINFO_KERNEL_RELEASE_OFFSET, SYSINFO_BUILD_OFFSET - SYSINFO_KERNEL_RELEASE_OFFSET,
                 v.kernelRelease);
        PutField(record, SYSINFO_BUILD_OFFSET, SYSINFO_VERSION_SIZE - SYSINFO_BUILD_OFFSET, v.build);
        return;
    }
    if (node == QSI_NODE_system_bootOption) {
        if (size < sizeof(int32_t))
            throw HostCtlException("sysinfo: buffer too small for the boot option");
        int32_t value = backend.GetBootOption();
        std::memcpy(out, &value, sizeof value);
        return;
    }
    throw HostCtlException("sysinfo: unknown node " + std::to_string(node));
}

}  // namespace

void SysinfoUtil::SysinfoGet(int node, void* out, size_t size)
{
    Tolm::Host::Operation operation("SysinfoGet");
    ReadNode(node, out, size);
}

int Qsi_Get(int node, void* out, size_t size)
{
    try {
        Tolm::Host::Operation operation("Qsi_Get");
        ReadNode(node, out, size);
        return 0;
    } catch (const HostCtlException&) {
        return 1;
    }
}

}  // namespace TarnCtl::Util

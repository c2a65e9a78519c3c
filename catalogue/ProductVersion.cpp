#include "catalogue/StringFactory.h"

#include "host/HostCtlException.h"
#include "host/Sysinfo.h"

#include <array>
#include <cstddef>
#include <string>

namespace Tolm {
namespace {

using namespace TarnCtl::Util;

constexpr std::size_t kRecordSize = SYSINFO_VERSION_SIZE;

std::string gProductVersion;

// A field ends at its NUL or, should the host forget one, at the record's end.
std::string Field(const std::array<char, kRecordSize>& record, std::size_t offset)
{
    std::size_t end = offset;
    while (end < record.size() && record[end] != '\0')
        ++end;
    return std::string(record.data() + offset, end - offset);
}

}  // namespace

const char* StringFactory::GetProductVersionString()
{
    if (!gProductVersion.empty())
        return gProductVersion.c_str();

    std::array<char, kRecordSize> record{};
    try {
        SysinfoUtil::SysinfoGet(QSI_NODE_system_version, record.data(), record.size());
    } catch (const HostCtl::Lib::HostCtlException&) {
        // Leave the cache empty so the next request asks the host again.
        gProductVersion.clear();
        return gProductVersion.c_str();
    }

    gProductVersion = Field(record, SYSINFO_PRODUCT_OFFSET) + " " + Field(record, SYSINFO_VERSION_OFFSET) +
                      " (Tarn " + Field(record, SYSINFO_KERNEL_RELEASE_OFFSET) + " Build " +
                      Field(record, SYSINFO_BUILD_OFFSET) + ")";
    return gProductVersion.c_str();
}

}  // namespace Tolm

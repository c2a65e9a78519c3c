#pragma once
// Hardware, processors, memory and smart cards. Throws
// HostCtl::Lib::HostCtlException on failure.
#include "host/HostCtlHardware.h"

#include <cstdint>
#include <string>
#include <vector>

namespace TarnCtl::Hardware {

class HardwareInfoImpl {
public:
    std::string GetVendorName();
    std::string GetProductName();
    std::string GetSerialNumber();
};

class CpuInfoImpl {
public:
    int GetNumCpuPackages();
    int GetNumCpuCores();
    int GetNumCpuThreads();
    std::string GetModelName();
};

class MemoryInfoImpl {
public:
    uint64_t GetTotalPages();
    uint64_t GetPageSize();  // bytes
};

class SmartCardInfoImpl {
public:
    std::vector<HostCtl::Hardware::SmartCardSlot> GetSlots();
};

}  // namespace TarnCtl::Hardware

#include "host/TarnCtlHardware.h"

#include "host/Backend.h"

namespace TarnCtl::Hardware {

using Tolm::Host::Use;

std::string HardwareInfoImpl::GetVendorName() { return Use("GetVendorName")->GetHardware().vendor; }
std::string HardwareInfoImpl::GetProductName() { return Use("GetProductName")->GetHardware().product; }
std::string HardwareInfoImpl::GetSerialNumber() { return Use("GetSerialNumber")->GetHardware().serialNumber; }

int CpuInfoImpl::GetNumCpuPackages() { return Use("GetNumCpuPackages")->GetHardware().cpuPackages; }
int CpuInfoImpl::GetNumCpuCores() { return Use("GetNumCpuCores")->GetHardware().cpuCores; }
int CpuInfoImpl::GetNumCpuThreads() { return Use("GetNumCpuThreads")->GetHardware().cpuThreads; }
std::string CpuInfoImpl::GetModelName() { return Use("GetModelName")->GetHardware().cpuModel; }

uint64_t MemoryInfoImpl::GetTotalPages() { return Use("GetTotalPages")->GetHardware().totalPages; }
uint64_t MemoryInfoImpl::GetPageSize() { return Use("GetPageSize")->GetHardware().pageSize; }

std::vector<HostCtl::Hardware::SmartCardSlot> SmartCardInfoImpl::GetSlots()
{
    return Use("GetSlots")->GetSmartCardSlots();
}

}  // namespace TarnCtl::Hardware

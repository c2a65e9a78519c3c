#pragma once
// Hardware, processors, memory and smart cards. Throws
// HostCtl::Lib::HostCtlException on failure.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace HostCtl::Hardware {

struct SmartCardToken {
    std::string label;
    std::vector<std::string> userIds;  // may hold empty strings
    const std::string& GetLabel() const { return label; }
    std::vector<std::string> GetUserIds() const { return userIds; }
};

struct SmartCardSlot {
    std::string name;
    std::optional<SmartCardToken> token;  // none while the slot is empty
    const std::string& GetName() const { return name; }
    std::optional<SmartCardToken> GetToken() const { return token; }
};

}  // namespace HostCtl::Hardware

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

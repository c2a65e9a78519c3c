#include "screens/status/WelcomeContent.h"

#include <cstdint>
#include <memory>

#include "exec/HostCall.h"
#include "host/Sysinfo.h"
#include "host/TarnCtlHardware.h"
#include "host/TarnCtlNetwork.h"
#include "ui/Markup.h"
#include "ui/MemoryLine.h"
#include "catalogue/StringFactory.h"
#include "catalogue/TextId.h"

namespace Tolm {

namespace {

using namespace HostCtl::Network;

constexpr TextId ID_PRODUCT = TextId::ProductVersion;
constexpr TextId ID_HEADING = TextId::DownloadToolsFrom;
constexpr TextId ID_DHCP_FAILED = TextId::WarningDHCPLookupFailed;
constexpr TextId ID_AUDIT_MODE = TextId::WarningAuditMode;
constexpr TextId ID_DHCP = TextId::DHCP;
constexpr TextId ID_STATIC = TextId::STATIC;
constexpr TextId ID_AUTOCONF = TextId::AUTOCONF;

constexpr const char* NO_ADAPTER_TEXT =
    "No compatible network adapter found. Please consult the product's Hardware Compatibility Guide "
    "(HCG) for a list of supported adapters.";

std::string Text(StringFactory* factory, TextId id) { return factory ? factory->GetString(static_cast<unsigned>(id)) : ""; }

void AddDescription(WelcomeContent& content, StringFactory* factory)
{
    const std::string product = Text(factory, ID_PRODUCT);
    if (!product.empty()) content.description.push_back(Markup::Literal(product));

    HostCall("Getting hardware info failed:", [&] {
        TarnCtl::Hardware::HardwareInfoImpl hardware;
        const std::string vendor = hardware.GetVendorName();
        content.description.push_back(Markup::Literal(vendor + " " + hardware.GetProductName()));
    });
    HostCall("Getting CPU info failed:", [&] {
        TarnCtl::Hardware::CpuInfoImpl cpu;
        const int packages = cpu.GetNumCpuPackages();
        content.description.push_back(Markup::Literal(std::to_string(packages) + " x " + cpu.GetModelName()));
    });
    HostCall("Getting memory info failed:", [&] {
        TarnCtl::Hardware::MemoryInfoImpl memory;
        const std::uint64_t pages = memory.GetTotalPages();
        content.description.push_back(FormatMemoryLine(pages * memory.GetPageSize()));
    });
}

TextId Ipv6Origin(int type)
{
    switch (type) {
    case IPV6_TYPE_DHCP: return ID_DHCP;
    case IPV6_TYPE_AUTOCONF: return ID_AUTOCONF;
    default: return ID_STATIC;
    }
}

// Addresses of the management interface; returns whether its DHCP lookup failed.
bool AddAddresses(WelcomeContent& content, StringFactory* factory)
{
    content.addresses.push_back(Text(factory, ID_HEADING));

    std::string hostname;
    HostCall("Getting hostname failed:", [&] { hostname = TarnCtl::Network::DnsConfigImpl().GetHostname(); });
    if (!hostname.empty() && hostname != "localhost")
        content.addresses.push_back("http://" + Markup::Literal(hostname) + "/ ");

    TarnCtl::Network::NetworkInfoImpl network;
    std::unique_ptr<TarnNic> nic;
    HostCall("Getting management interface failed:", [&] { nic = network.GetManagementInterface(); });
    if (!nic) return false;

    bool dhcpFailed = false;
    HostCall("Getting IPv4 configuration failed:", [&] {
        const IpConfig config = nic->GetIpConfig();
        const Ipv4Address& address = config.GetIpv4Address();
        if (address.GetBinaryAddress() != 0) {
            const TextId origin = config.GetUseDhcp() ? ID_DHCP : ID_STATIC;
            content.addresses.push_back("http://" + address.GetStringAddress() + "/ (" + Text(factory, origin) + ")");
        }
        // A lookup that failed leaves the interface without an address.
        if (config.GetUseDhcp() && !config.GetIpv4UseNone())
            dhcpFailed = address.GetBinaryAddress() == 0 || nic->IsDhcpLookupFailed();
    });

    HostCall("Getting IPv6 configuration failed:", [&] {
        if (!network.IsTarnIpv6Enabled()) return;
        const IpConfig config = nic->GetIpv6Config();
        for (const Ipv6Network& net : config.GetIpv6Network()) {
            content.addresses.push_back("http://[" + net.GetAddress().GetStringAddress() + "]/ (" +
                                        Text(factory, Ipv6Origin(net.GetIpv6AddressType())) + ")");
        }
    });
    return dhcpFailed;
}

bool AuditMode()
{
    std::int32_t bootOption = 0;
    return TarnCtl::Util::Qsi_Get(TarnCtl::Util::QSI_NODE_system_bootOption, &bootOption, sizeof bootOption) == 0 &&
           bootOption == 1;
}

}  // namespace

WelcomeContent ComposeWelcome(StringFactory* factory)
{
    WelcomeContent content;
    AddDescription(content, factory);
    const bool dhcpFailed = AddAddresses(content, factory);

    HostCall("Getting physical NICs failed:", [&] {
        content.noAdapter = TarnCtl::Network::NetworkInfoImpl().GetPnics().empty();
    });
    if (content.noAdapter) content.warnings.push_back(NO_ADAPTER_TEXT);
    if (dhcpFailed) content.warnings.push_back(Text(factory, ID_DHCP_FAILED));
    if (AuditMode()) content.warnings.push_back(Text(factory, ID_AUDIT_MODE));
    return content;
}

std::string FitLine(const std::string& text, int columns)
{
    if (columns <= 0) return "";
    if (Markup::Columns(text) <= columns) return text;
    if (columns <= 3) return std::string(static_cast<size_t>(columns), '.');
    return std::string(Markup::CutToColumns(text, columns - 3)) + "...";
}

}  // namespace Tolm

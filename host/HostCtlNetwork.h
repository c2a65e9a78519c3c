#pragma once
// The host network data model: plain values copied out of the host and handed
// back to it. Live objects (kernel interfaces, switches) are in TarnNic.h and
// TarnCtlNetwork.h.
//
// Conventions chosen here:
//  - Ipv4Address::GetBinaryAddress() is in host byte order (192.168.1.1 is
//    0xC0A80101); 0 means unset. A DHCP lookup that failed leaves the
//    interface's address at 0 ("0.0.0.0").
//  - Ipv6Network address types: 0 static, 1 DHCPv6, 2 autoconfigured (router
//    advertisement or link-local), 3 other. Scopes: 0 unknown, 1 link-local,
//    2 site-local, 3 global.
//  - Lists and optional parts are returned by value, so a range-for over
//    a temporary (nic->GetIpConfig().GetIpv6Network()) is safe.
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace HostCtl::Network {

class IpAddress {
public:
    virtual ~IpAddress() = default;
    virtual std::string GetStringAddress() const = 0;
    virtual bool IsIpv6() const = 0;
    virtual std::unique_ptr<IpAddress> Clone() const = 0;
};

class Ipv4Address : public IpAddress {
public:
    Ipv4Address() = default;                      // 0.0.0.0, unset
    explicit Ipv4Address(uint32_t binary) : _binary(binary) {}
    // Dotted text; an invalid text yields the unset address.
    explicit Ipv4Address(const std::string& text);

    uint32_t GetBinaryAddress() const { return _binary; }
    std::string GetStringAddress() const override;
    bool IsIpv6() const override { return false; }
    std::unique_ptr<IpAddress> Clone() const override { return std::make_unique<Ipv4Address>(*this); }

    // Four decimal parts 0-255 separated by dots, nothing else.
    static bool IsValidAddress(const std::string& text);
    // Contiguous ones followed by zeros (0.0.0.0 is refused).
    bool IsValidNetmask() const;
    static bool IsValidNetmask(const std::string& text);

    bool operator==(const Ipv4Address& other) const { return _binary == other._binary; }

private:
    uint32_t _binary = 0;
};

class Ipv6Address : public IpAddress {
public:
    using Bytes = std::array<uint8_t, 16>;
    Ipv6Address() = default;                      // "::", unset
    explicit Ipv6Address(const Bytes& bytes) : _bytes(bytes) {}
    // Text form; an invalid text yields the unset address. A "%zone" suffix
    // is dropped.
    explicit Ipv6Address(const std::string& text);

    const Bytes& GetBinaryAddress() const { return _bytes; }
    std::string GetStringAddress() const override;  // canonical, "::" when unset
    bool IsIpv6() const override { return true; }
    std::unique_ptr<IpAddress> Clone() const override { return std::make_unique<Ipv6Address>(*this); }
    bool IsUnset() const;
    bool IsLinkLocal() const;                       // fe80::/10

    static bool IsValidAddress(const std::string& text);

    bool operator==(const Ipv6Address& other) const { return _bytes == other._bytes; }

private:
    Bytes _bytes{};
};

// Parses either family: IPv6 is tried first. Null for an invalid text.
std::unique_ptr<IpAddress> ParseIpAddress(const std::string& text);

enum Ipv6AddressType : int { IPV6_TYPE_STATIC = 0, IPV6_TYPE_DHCP = 1, IPV6_TYPE_AUTOCONF = 2, IPV6_TYPE_OTHER = 3 };
enum Ipv6Scope : int { IPV6_SCOPE_UNKNOWN = 0, IPV6_SCOPE_LINK_LOCAL = 1, IPV6_SCOPE_SITE_LOCAL = 2, IPV6_SCOPE_GLOBAL = 3 };

class Ipv6Network {
public:
    Ipv6Network() = default;
    Ipv6Network(Ipv6Address address, int prefixLength, int addressType = IPV6_TYPE_STATIC,
                int scope = IPV6_SCOPE_GLOBAL)
        : _address(address), _prefixLength(prefixLength), _type(addressType), _scope(scope) {}
    // "x:x::x/len" text; invalid text yields "::/0".
    explicit Ipv6Network(const std::string& text, int addressType = IPV6_TYPE_STATIC,
                         int scope = IPV6_SCOPE_GLOBAL);

    const Ipv6Address& GetAddress() const { return _address; }
    int GetPrefixLength() const { return _prefixLength; }
    std::string GetStringAddress() const;  // "x:x::x/len"
    int GetIpv6AddressType() const { return _type; }
    int GetIpv6Scope() const { return _scope; }

    // An IPv6 address, "/", and a prefix length 1-128.
    static bool IsValidAddressAndNetmask(const std::string& text);

    bool operator==(const Ipv6Network& other) const
    {
        return _address == other._address && _prefixLength == other._prefixLength;
    }

private:
    Ipv6Address _address;
    int _prefixLength = 0;
    int _type = IPV6_TYPE_STATIC;
    int _scope = IPV6_SCOPE_GLOBAL;
};

// The IP settings of one kernel interface, both families. The IPv4 gateway
// and the IPv6 gateway are carried here for editing; the host's default
// routes are changed through RoutingInfoImpl, not by handing an IpConfig to
// an interface.
class IpConfig {
public:
    bool GetUseDhcp() const { return _useDhcp; }
    void SetUseDhcp(bool useDhcp) { _useDhcp = useDhcp; }
    // Two-flag form: DHCP for the address, and whether DNS comes from DHCP too.
    void SetUseDhcp(bool useDhcp, bool dhcpDns) { _useDhcp = useDhcp; _dhcpDns = dhcpDns; }
    bool GetIpv4UseNone() const { return _ipv4UseNone; }
    void SetIpv4UseNone(bool none) { _ipv4UseNone = none; }
    const Ipv4Address& GetIpv4Address() const { return _ipv4Address; }
    void SetIpv4Address(const Ipv4Address& a) { _ipv4Address = a; }
    const Ipv4Address& GetIpv4Netmask() const { return _ipv4Netmask; }
    void SetIpv4Netmask(const Ipv4Address& a) { _ipv4Netmask = a; }
    const Ipv4Address& GetIpv4Gateway() const { return _ipv4Gateway; }
    void SetIpv4Gateway(const Ipv4Address& a) { _ipv4Gateway = a; }

    bool GetUseIpv6Dhcp() const { return _useIpv6Dhcp; }
    void SetUseIpv6Dhcp(bool on) { _useIpv6Dhcp = on; }
    bool GetUseIpv6RouterAdvertised() const { return _useIpv6RouterAdvertised; }
    void SetUseIpv6RouterAdvertised(bool on) { _useIpv6RouterAdvertised = on; }
    std::vector<Ipv6Network> GetIpv6Network() const { return _ipv6Networks; }
    void AddIpv6Network(const Ipv6Network& n) { _ipv6Networks.push_back(n); }
    // Removes the first network equal in address and prefix; false if none.
    bool RemoveIpv6Network(const Ipv6Network& n);
    void ClearIpv6Networks() { _ipv6Networks.clear(); }
    const Ipv6Address& GetIpv6Gateway() const { return _ipv6Gateway; }
    void SetIpv6Gateway(const Ipv6Address& a) { _ipv6Gateway = a; }

    bool GetDhcpDns() const { return _dhcpDns; }
    void SetDhcpDns(bool on) { _dhcpDns = on; }

private:
    bool _useDhcp = false;
    bool _ipv4UseNone = false;
    Ipv4Address _ipv4Address, _ipv4Netmask, _ipv4Gateway;
    bool _useIpv6Dhcp = false;
    bool _useIpv6RouterAdvertised = false;
    std::vector<Ipv6Network> _ipv6Networks;
    Ipv6Address _ipv6Gateway;
    bool _dhcpDns = false;
};

class MacAddress {
public:
    MacAddress() = default;
    // "aa:bb:cc:dd:ee:ff" (or with "-"); invalid text yields 00:00:00:00:00:00.
    explicit MacAddress(const std::string& text);
    std::string GetStringAddress() const;  // lower-case, colon separated
    const std::array<uint8_t, 6>& GetBytes() const { return _bytes; }
    static bool IsValidAddress(const std::string& text);
    bool operator==(const MacAddress& other) const { return _bytes == other._bytes; }

private:
    std::array<uint8_t, 6> _bytes{};
};

// The PCI function behind a physical adapter.
struct PciDevice {
    std::string address;        // "0000:02:00.0"
    std::string vendorName;
    std::string deviceName;
    std::string hardwareLabel;  // may be empty
    const std::string& GetHardwareLabel() const { return hardwareLabel; }
    const std::string& GetAddress() const { return address; }
};

// A physical adapter ("hwnic0").
class Pnic {
public:
    std::string name;
    MacAddress mac;
    std::optional<PciDevice> pci;
    bool linkUp = false;
    int speedMbps = 0;     // 0 while the link is down
    bool fullDuplex = false;
    std::string driver;

    const std::string& GetName() const { return name; }
    const MacAddress& GetMacAddress() const { return mac; }
    std::optional<PciDevice> GetPciDevice() const { return pci; }
    bool IsLinkUp() const { return linkUp; }
    int GetLinkSpeed() const { return speedMbps; }
};

// Uplink order and how many of them may be active at once.
struct NicTeamingPolicy {
    std::vector<std::string> uplinkOrder;  // adapter names, team order
    int maxActiveUplinks = 1;
    std::vector<std::string> GetUplinkOrder() const { return uplinkOrder; }
    int GetMaxActiveUplinks() const { return maxActiveUplinks; }
};

struct PortGroup {
    std::string name;
    int vlanId = 0;        // 0 none, 1-4094, 4095 all
    std::string key;       // distributed port groups only
    const std::string& GetName() const { return name; }
    int GetVlanId() const { return vlanId; }
};

// A standard switch.
struct VirtualSwitch {
    std::string name;
    std::vector<std::string> uplinks;  // adapter names
    NicTeamingPolicy teaming;
    std::vector<PortGroup> portGroups;
    int mtu = 1500;
    const std::string& GetName() const { return name; }
    std::vector<std::string> GetUplinks() const { return uplinks; }
    const NicTeamingPolicy& GetTeamingPolicy() const { return teaming; }
    std::vector<PortGroup> GetPortGroups() const { return portGroups; }
};

struct DlswitchUplinkPort {
    std::string key;   // "uplink1"
    std::string pnic;  // adapter name, empty when the port is unused
};

// A distributed switch (managed from outside the host; read-only here
// except for the VLAN of a port group).
struct Dlswitch {
    std::string name;
    std::string uuid;
    std::vector<DlswitchUplinkPort> uplinkPorts;
    NicTeamingPolicy teaming;
    std::vector<PortGroup> portGroups;
    const std::string& GetName() const { return name; }
    std::vector<DlswitchUplinkPort> GetUplinkPorts() const { return uplinkPorts; }
    const NicTeamingPolicy& GetTeamingPolicy() const { return teaming; }
    std::vector<PortGroup> GetPortGroups() const { return portGroups; }
};

// Connectee types of a kernel interface's connection point.
enum ConnecteeType : int {
    CONNECTEE_PORTGROUP = 1,  // standard switch port group
    CONNECTEE_DVSPORT = 2,    // distributed switch port
    CONNECTEE_OPAQUE = 3,     // opaque network
};

// Where a kernel interface is plugged in.
struct ConnectionPoint {
    int connecteeType = CONNECTEE_PORTGROUP;
    std::string switchName;   // standard or distributed switch
    std::string portGroup;    // port group name (both kinds)
    std::string portKey;      // distributed switch port key
    std::string networkId;    // opaque network id
    int GetConnecteeType() const { return connecteeType; }
    const std::string& GetSwitchName() const { return switchName; }
    const std::string& GetPortGroupName() const { return portGroup; }
    const std::string& GetPortKey() const { return portKey; }
};

}  // namespace HostCtl::Network

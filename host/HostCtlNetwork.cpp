#include "host/HostCtlNetwork.h"

#include <arpa/inet.h>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace HostCtl::Network {
namespace {

// Strict dotted quad: inet_pton accepts exactly four decimal parts.
bool ParseIpv4(const std::string& text, uint32_t& out)
{
    in_addr addr{};
    if (text.empty() || inet_pton(AF_INET, text.c_str(), &addr) != 1)
        return false;
    out = ntohl(addr.s_addr);
    return true;
}

bool ParseIpv6(std::string text, Ipv6Address::Bytes& out)
{
    auto zone = text.find('%');
    if (zone != std::string::npos) {
        if (zone + 1 == text.size())
            return false;
        text.erase(zone);
    }
    in6_addr addr{};
    if (text.empty() || inet_pton(AF_INET6, text.c_str(), &addr) != 1)
        return false;
    for (size_t i = 0; i < 16; ++i)
        out[i] = addr.s6_addr[i];
    return true;
}

// "addr/len" with len 1-128; false for anything else.
bool ParseNetwork(const std::string& text, Ipv6Address::Bytes& bytes, int& prefix)
{
    auto slash = text.find('/');
    if (slash == std::string::npos || slash + 1 >= text.size() || text.size() - slash > 4)
        return false;
    for (size_t i = slash + 1; i < text.size(); ++i)
        if (!std::isdigit(static_cast<unsigned char>(text[i])))
            return false;
    int len = std::atoi(text.c_str() + slash + 1);
    if (len < 1 || len > 128)
        return false;
    std::string addr = text.substr(0, slash);
    if (addr.find('%') != std::string::npos || !ParseIpv6(addr, bytes))
        return false;
    prefix = len;
    return true;
}

}  // namespace

Ipv4Address::Ipv4Address(const std::string& text)
{
    uint32_t value = 0;
    if (ParseIpv4(text, value))
        _binary = value;
}

std::string Ipv4Address::GetStringAddress() const
{
    char buf[16];
    std::snprintf(buf, sizeof buf, "%u.%u.%u.%u", (_binary >> 24) & 0xff, (_binary >> 16) & 0xff,
                  (_binary >> 8) & 0xff, _binary & 0xff);
    return buf;
}

bool Ipv4Address::IsValidAddress(const std::string& text)
{
    uint32_t value = 0;
    return ParseIpv4(text, value);
}

bool Ipv4Address::IsValidNetmask() const
{
    if (_binary == 0)
        return false;
    uint32_t inverted = ~_binary;
    // Ones then zeros: the inverted mask plus one is a power of two.
    return (inverted & (inverted + 1)) == 0;
}

bool Ipv4Address::IsValidNetmask(const std::string& text)
{
    return IsValidAddress(text) && Ipv4Address(text).IsValidNetmask();
}

Ipv6Address::Ipv6Address(const std::string& text)
{
    Bytes bytes{};
    if (ParseIpv6(text, bytes))
        _bytes = bytes;
}

std::string Ipv6Address::GetStringAddress() const
{
    in6_addr addr{};
    for (size_t i = 0; i < 16; ++i)
        addr.s6_addr[i] = _bytes[i];
    char buf[INET6_ADDRSTRLEN];
    if (!inet_ntop(AF_INET6, &addr, buf, sizeof buf))
        return "::";
    return buf;
}

bool Ipv6Address::IsUnset() const
{
    return _bytes == Bytes{};
}

bool Ipv6Address::IsLinkLocal() const
{
    return _bytes[0] == 0xfe && (_bytes[1] & 0xc0) == 0x80;
}

bool Ipv6Address::IsValidAddress(const std::string& text)
{
    Bytes bytes{};
    return ParseIpv6(text, bytes);
}

std::unique_ptr<IpAddress> ParseIpAddress(const std::string& text)
{
    if (Ipv6Address::IsValidAddress(text))
        return std::make_unique<Ipv6Address>(text);
    if (Ipv4Address::IsValidAddress(text))
        return std::make_unique<Ipv4Address>(text);
    return nullptr;
}

Ipv6Network::Ipv6Network(const std::string& text, int addressType, int scope) : _type(addressType), _scope(scope)
{
    Ipv6Address::Bytes bytes{};
    int prefix = 0;
    if (ParseNetwork(text, bytes, prefix)) {
        _address = Ipv6Address(bytes);
        _prefixLength = prefix;
    }
}

std::string Ipv6Network::GetStringAddress() const
{
    return _address.GetStringAddress() + "/" + std::to_string(_prefixLength);
}

bool Ipv6Network::IsValidAddressAndNetmask(const std::string& text)
{
    Ipv6Address::Bytes bytes{};
    int prefix = 0;
    return ParseNetwork(text, bytes, prefix);
}

bool IpConfig::RemoveIpv6Network(const Ipv6Network& n)
{
    for (auto it = _ipv6Networks.begin(); it != _ipv6Networks.end(); ++it) {
        if (*it == n) {
            _ipv6Networks.erase(it);
            return true;
        }
    }
    return false;
}

namespace {

bool ParseMac(const std::string& text, std::array<uint8_t, 6>& out)
{
    if (text.size() != 17)
        return false;
    for (size_t i = 0; i < 6; ++i) {
        char hi = text[i * 3], lo = text[i * 3 + 1];
        if (!std::isxdigit(static_cast<unsigned char>(hi)) || !std::isxdigit(static_cast<unsigned char>(lo)))
            return false;
        if (i < 5 && text[i * 3 + 2] != ':' && text[i * 3 + 2] != '-')
            return false;
        out[i] = static_cast<uint8_t>(std::strtoul(text.substr(i * 3, 2).c_str(), nullptr, 16));
    }
    return true;
}

}  // namespace

MacAddress::MacAddress(const std::string& text)
{
    std::array<uint8_t, 6> bytes{};
    if (ParseMac(text, bytes))
        _bytes = bytes;
}

std::string MacAddress::GetStringAddress() const
{
    char buf[18];
    std::snprintf(buf, sizeof buf, "%02x:%02x:%02x:%02x:%02x:%02x", _bytes[0], _bytes[1], _bytes[2], _bytes[3],
                  _bytes[4], _bytes[5]);
    return buf;
}

bool MacAddress::IsValidAddress(const std::string& text)
{
    std::array<uint8_t, 6> bytes{};
    return ParseMac(text, bytes);
}

}  // namespace HostCtl::Network

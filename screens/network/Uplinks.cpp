#include "screens/network/Uplinks.h"

#include <algorithm>

#include "exec/HostCall.h"
#include "host/Log.h"
#include "host/TarnCtlNetwork.h"
#include "screens/network/PendingNetwork.h"

namespace Tolm::Uplinks {

using namespace HostCtl::Network;
using TarnCtl::Network::DlswitchImpl;
using TarnCtl::Network::NetworkInfoImpl;
using TarnCtl::Network::VirtualSwitchImpl;

namespace {

constexpr const char* UNSUPPORTED_LSWITCH = "Unsupported lswitch type";

// A refusal: logged alone.
bool Refuse(Failure* failure, std::string message)
{
    Log::Write(LOG_ERR, "%s", message.c_str());
    if (failure)
        *failure = {"", std::move(message)};
    return false;
}

// Runs `body`; a host failure is logged under `prefix` and answers false.
template <typename Body>
bool Attempt(const char* prefix, Failure* failure, Body body)
{
    bool ok = false;
    const auto error = HostCall(prefix, [&] { ok = body(); });
    if (error && failure)
        *failure = {prefix, *error};
    return ok;
}

// The switch kind and name behind the interface; false after logging when
// the connection point is none of a switch's.
bool Connection(const TarnNic& nic, ConnectionPoint& point, const char* prefix, Failure* failure)
{
    return Attempt(prefix, failure, [&] {
        point = nic.GetConnectionPoint();
        if (point.GetConnecteeType() == CONNECTEE_PORTGROUP || point.GetConnecteeType() == CONNECTEE_DVSPORT)
            return true;
        return Refuse(failure, UNSUPPORTED_LSWITCH);
    });
}

}  // namespace

std::string Failure::BoxText() const { return prefix.empty() ? message : prefix + ExceptionDetail(message); }

bool IsOnDistributedSwitch()
{
    bool onDvs = false;
    HostCall("Could not determine if a DVS was in use:", [&] {
        NetworkInfoImpl info;
        info.UpdateManagementInterface();
        auto nic = info.GetManagementInterface();
        if (!nic) {
            Log::Write(LOG_ERR, "Could not locate the management interface");
            return;
        }
        onDvs = nic->GetConnectionPoint().GetConnecteeType() == CONNECTEE_DVSPORT;
    });
    return onDvs;
}

bool SwitchName(const TarnNic& nic, std::string& name, Failure* failure)
{
    constexpr const char* prefix = "Getting switch name failed:";
    return Attempt(prefix, failure, [&] {
        ConnectionPoint point = nic.GetConnectionPoint();
        switch (point.GetConnecteeType()) {
        case CONNECTEE_PORTGROUP:
        case CONNECTEE_DVSPORT:
            name = point.GetSwitchName();
            return true;
        case CONNECTEE_OPAQUE:
            return Refuse(failure, "Opaque network connectee type not supported");
        default:
            return Refuse(failure, "Unsupported connectee type");
        }
    });
}

bool GetUplinks(const TarnNic& nic, std::vector<std::string>& uplinks, Failure* failure)
{
    constexpr const char* prefix = "Getting uplinks failed:";
    ConnectionPoint point;
    if (!Connection(nic, point, prefix, failure))
        return false;
    if (point.GetConnecteeType() == CONNECTEE_DVSPORT) {
        DlswitchImpl dvs(point.GetSwitchName());
        return Attempt("Getting uplink ports or info failed:", failure, [&] {
                   dvs.GetUplinkPorts();
                   return true;
               }) &&
               Attempt("DVS: getting used uplinks failed:", failure, [&] {
                   uplinks = dvs.GetUsedUplinks();
                   return true;
               });
    }
    return Attempt(prefix, failure, [&] {
        // Team order first, then any uplink the order leaves out.
        VirtualSwitchImpl vs(point.GetSwitchName());
        std::vector<std::string> members = vs.GetUplinks();
        uplinks.clear();
        for (const auto& name : vs.GetTeamingPolicy().GetUplinkOrder())
            if (std::find(members.begin(), members.end(), name) != members.end())
                uplinks.push_back(name);
        for (const auto& name : members)
            if (std::find(uplinks.begin(), uplinks.end(), name) == uplinks.end())
                uplinks.push_back(name);
        return true;
    });
}

bool GetMaxActiveUplinks(const TarnNic& nic, int& count, Failure* failure)
{
    constexpr const char* prefix = "Getting max number of active uplinks failed:";
    ConnectionPoint point;
    return Connection(nic, point, prefix, failure) && Attempt(prefix, failure, [&] {
               count = point.GetConnecteeType() == CONNECTEE_DVSPORT
                           ? DlswitchImpl(point.GetSwitchName()).GetTeamingPolicy().GetMaxActiveUplinks()
                           : VirtualSwitchImpl(point.GetSwitchName()).GetTeamingPolicy().GetMaxActiveUplinks();
               return true;
           });
}

bool SetMaxActiveUplinks(const TarnNic& nic, int count, Failure* failure)
{
    constexpr const char* prefix = "VS: set max active uplinks failed:";
    ConnectionPoint point;
    if (!Connection(nic, point, prefix, failure))
        return false;
    if (point.GetConnecteeType() != CONNECTEE_PORTGROUP)
        return Refuse(failure, UNSUPPORTED_LSWITCH);
    return Attempt(prefix, failure, [&] {
        VirtualSwitchImpl(point.GetSwitchName()).SetMaxActiveUplinks(count);
        return true;
    });
}

bool GetVlanId(const TarnNic& nic, int& vlanId, Failure* failure)
{
    constexpr const char* prefix = "Getting VlanID failed:";
    ConnectionPoint point;
    return Connection(nic, point, prefix, failure) && Attempt(prefix, failure, [&] {
               const std::string& group = point.GetPortGroupName();
               vlanId = point.GetConnecteeType() == CONNECTEE_DVSPORT
                            ? DlswitchImpl(point.GetSwitchName()).GetVlanId(group)
                            : VirtualSwitchImpl(point.GetSwitchName()).GetVlanId(group);
               return true;
           });
}

bool SetVlanId(const TarnNic& nic, int vlanId, Failure* failure)
{
    constexpr const char* prefix = "Setting VlanID failed:";
    ConnectionPoint point;
    return Connection(nic, point, prefix, failure) && Attempt(prefix, failure, [&] {
               const std::string& group = point.GetPortGroupName();
               if (point.GetConnecteeType() == CONNECTEE_DVSPORT)
                   DlswitchImpl(point.GetSwitchName()).SetVlanId(group, vlanId);
               else
                   VirtualSwitchImpl(point.GetSwitchName()).SetVlanId(group, vlanId);
               return true;
           });
}

bool AddUplink(const TarnNic& nic, const std::string& pnic, Failure* failure)
{
    constexpr const char* prefix = "VS: add uplink to teaming policy failed:";
    ConnectionPoint point;
    if (!Connection(nic, point, prefix, failure))
        return false;
    if (point.GetConnecteeType() != CONNECTEE_PORTGROUP)
        return Refuse(failure, UNSUPPORTED_LSWITCH);
    Log::Write(LOG_INFO, "Adding uplink %s", pnic.c_str());
    return Attempt(prefix, failure, [&] {
        VirtualSwitchImpl(point.GetSwitchName()).AddUplink(pnic);
        return true;
    });
}

bool RemoveUplink(const TarnNic& nic, const std::string& pnic, Failure* failure)
{
    constexpr const char* prefix = "VS: remove uplink from teaming policy failed:";
    ConnectionPoint point;
    if (!Connection(nic, point, prefix, failure))
        return false;
    if (point.GetConnecteeType() != CONNECTEE_PORTGROUP)
        return Refuse(failure, UNSUPPORTED_LSWITCH);
    Log::Write(LOG_INFO, "Removing uplink %s", pnic.c_str());
    return Attempt(prefix, failure, [&] {
        VirtualSwitchImpl(point.GetSwitchName()).RemoveUplink(pnic);
        return true;
    });
}

bool ReleaseFromOtherSwitch(const TarnNic& nic, const std::string& pnic, Failure* failure)
{
    constexpr const char* prefix = "VS: remove uplink from teaming policy failed:";
    ConnectionPoint point;
    if (!Connection(nic, point, prefix, failure))
        return false;
    return Attempt(prefix, failure, [&] {
        NetworkInfoImpl info;
        for (const auto& sw : info.GetVirtualSwitches()) {
            const auto uplinks = sw.GetUplinks();
            if (sw.GetName() == point.GetSwitchName() ||
                std::find(uplinks.begin(), uplinks.end(), pnic) == uplinks.end())
                continue;
            Log::Write(LOG_INFO, "Removing uplink %s", pnic.c_str());
            VirtualSwitchImpl(sw.GetName()).RemoveUplink(pnic);
        }
        // A distributed switch is managed from outside the host.
        for (const auto& dvs : info.GetDlswitches())
            for (const auto& port : dvs.GetUplinkPorts())
                if (port.pnic == pnic)
                    return Refuse(failure, UNSUPPORTED_LSWITCH);
        return true;
    });
}

}  // namespace Tolm::Uplinks

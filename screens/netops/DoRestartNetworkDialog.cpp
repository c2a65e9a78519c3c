#include "screens/netops/DoRestartNetworkDialog.h"

#include <syslog.h>

#include "exec/Events.h"
#include "frame/Keys.h"
#include "host/Log.h"
#include "host/TarnNic.h"
#include "ui/TextArea.h"

namespace Tolm {

namespace {

// Tall enough for the longest progress: two status lines, the IPv4 line,
// three IPv6 lines and the closing "Done.".
constexpr int WIDTH = 60;
constexpr int HEIGHT = 16;
constexpr int TITLE_HEIGHT = 5;

constexpr const char* INDENT = "   ";
constexpr std::size_t MAX_IPV6_LINES = 2;

}  // namespace

DoRestartNetworkDialog::DoRestartNetworkDialog(Frame* parent, HostCtl::Network::TarnNic& nic)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _nic(nic)
{
    if (Window* content = Content()) _progress = content->AddChild<TextArea>(0, 0, content->Width(), content->Height());
}

std::string DoRestartNetworkDialog::Ipv6Lines(const std::vector<HostCtl::Network::Ipv6Network>& networks,
                                              const std::string& label)
{
    std::string lines;
    std::size_t shown = 0;
    for (std::size_t i = 0; i < networks.size(); ++i) {
        // Three fit the box whole; a longer list shows two and says so.
        if (networks.size() != 3 && shown == MAX_IPV6_LINES) {
            lines += std::string(INDENT) + "...\n";
            break;
        }
        const auto& network = networks[i];
        if (network.GetIpv6AddressType() != HostCtl::Network::IPV6_TYPE_STATIC ||
            network.GetIpv6Scope() == HostCtl::Network::IPV6_SCOPE_LINK_LOCAL)
            continue;
        lines += std::string(INDENT) + label + " " + network.GetStringAddress() + "\n";
        ++shown;
    }
    return lines;
}

void DoRestartNetworkDialog::Show(const std::string& progress)
{
    if (_progress) _progress->SetText(Markup::Literal(progress));
    Push();
    // The host call that follows blocks: the operator sees the step first.
    Flush();
}

int DoRestartNetworkDialog::Execute()
{
    const bool dhcp = _nic.GetIpConfig().GetUseDhcp();
    const std::string name = _nic.GetName();
    Log::Write(LOG_INFO, "Restarting %s\n", name.c_str());
    RaiseEvent(Events::NetworkRestart, name.c_str());

    SetTitle(Text(TextId::RestartManagementNetworkTitle));
    SetText(Text(TextId::PleaseWaitNetworkRestarts));
    std::string progress = Text(TextId::StoppingManagementNetwork) + " ";
    Show(progress);
    _nic.Stop();
    _nic.Refresh();
    progress += Text(TextId::Done) + "\n";
    Show(progress);
    _nic.Start();
    progress += Text(TextId::StartingManagementNetwork) + " ";
    if (!dhcp) {
        // The lease of a DHCP interface is not known yet, so only a static
        // address is shown.
        progress += "\n" + std::string(INDENT) + Text(TextId::IPAddressIs) + " " +
                    _nic.GetIpConfig().GetIpv4Address().GetStringAddress() + "\n";
    }
    const auto networks = _nic.GetIpv6Config().GetIpv6Network();
    if (!networks.empty()) {
        if (dhcp) progress += "\n";
        progress += Ipv6Lines(networks, Text(TextId::IPAddressIs));
    }
    progress += Text(TextId::Done);
    Show(progress);

    SetFooter(FOOTER_PROGRESS_ENTER_OK);
    AwaitKey(Key::Enter);
    return 1;
}

}  // namespace Tolm

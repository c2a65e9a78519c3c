#include "screens/netops/RunTestDialog.h"

#include <fcntl.h>
#include <netdb.h>
#include <unistd.h>

#include <vector>

#include "exec/HostCall.h"
#include "frame/Keys.h"
#include "host/HostPaths.h"
#include "host/TarnCtlNetwork.h"
#include "screens/netops/HostsFile.h"
#include "screens/netops/StepRunner.h"
#include "ui/Markup.h"
#include "ui/TextArea.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 70;
constexpr int HEIGHT = 14;
constexpr int TITLE_HEIGHT = 5;

constexpr const char* PING_TOOL = "/sbin/tarnping";

// fe80::/10 as the host tests it: the first byte without its lowest bit is
// fe, the second byte's top two bits are 10.
bool IsLinkLocal(const HostCtl::Network::IpAddress& address)
{
    const auto* v6 = dynamic_cast<const HostCtl::Network::Ipv6Address*>(&address);
    if (v6 == nullptr) return false;
    const auto& b = v6->GetBinaryAddress();
    return (b[0] & 0xfe) == 0xfe && (b[1] & 0xc0) == 0x80;
}

}  // namespace

RunTestDialog::RunTestDialog(Frame* parent, std::array<Address, ROWS> addresses, std::string hostname)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _addresses(std::move(addresses)), _hostname(std::move(hostname))
{
    if (Window* content = Content()) _area = content->AddChild<TextArea>(0, 0, content->Width(), content->Height());
    HostCall("Getting management interface failed:", [this] {
        if (auto nic = TarnCtl::Network::NetworkInfoImpl().GetManagementInterface()) _interface = nic->GetName();
    });
}

RunTestDialog::~RunTestDialog() = default;

void RunTestDialog::Append(const std::string& markup)
{
    _progress += markup;
    if (_area) _area->SetText(_progress);
    Push();
}

bool RunTestDialog::RunStep(StepRunner& runner, const std::function<int()>& body)
{
    bool ended = runner.Start(body);
    int status = -1;
    while (ended && runner.Running()) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Escape) {
            runner.Abandon();
            return false;
        }
        if (key != Frame::WAIT_WATCHED) continue;  // other keys wait for the step
        if (auto result = runner.Collect()) status = *result;
    }
    Append("{align:right}" + Text(status == 0 ? TextId::ResultOK : TextId::ResultFailed) + "{/align}");
    return true;
}

bool RunTestDialog::Ping(StepRunner& runner, int row, const HostCtl::Network::IpAddress& address)
{
    const std::string text = address.GetStringAddress();
    std::string shown = text;
    if (IsLinkLocal(address) && !_interface.empty()) shown += "%" + _interface;
    Append(Text(TextId::PingingAddress) + " #" + std::to_string(row + 1) + " (" + Markup::Literal(shown) + ").");

    // Everything the child needs is made here: after the fork it only
    // rearranges descriptors and executes the tool.
    const std::string tool = HostPath::Resolve(PING_TOOL);
    std::vector<const char*> argv = {"tarnping", text.c_str()};
    if (!_interface.empty()) {
        argv.push_back("-I");
        argv.push_back(_interface.c_str());
    }
    argv.push_back(nullptr);
    return RunStep(runner, [&] {
        // The tool's output goes nowhere, however much it writes.
        const int null = open("/dev/null", O_RDWR);
        for (int fd = 0; fd < 3; ++fd) null >= 0 ? dup2(null, fd) : close(fd);
        close_range(3, ~0U, 0);
        char* const env[] = {nullptr};
        execve(tool.c_str(), const_cast<char* const*>(argv.data()), env);
        return 1;
    });
}

bool RunTestDialog::Resolve(StepRunner& runner)
{
    Append(Text(TextId::ResolvingHostname) + " (" + Markup::Literal(_hostname) + ").");
    // Whatever ends the step (Esc, the idle timeout, the child dying half
    // way), the hosts file is back before the test goes on.
    struct PutBack {
        StepRunner& runner;
        ~PutBack()
        {
            runner.Abandon();
            HostsFile::EnsureInPlace();
        }
    } putBack{runner};
    return RunStep(runner, [this] {
        const bool movedAside = HostsFile::MoveAside();
        int result = EAI_FAIL;
        HostCall("Resolving hostname failed:",
                 [&] { result = TarnCtl::Network::DnsConfigImpl().ResolveHostname(_hostname); });
        if (movedAside) HostsFile::Restore();
        return result == 0 ? 0 : 1;
    });
}

int RunTestDialog::Execute()
{
    SetTitle(Text(TextId::TestingManagementNetwork));
    SetText(Text(TextId::YouMayInterruptTest));
    {
        StepRunner runner;
        bool going = true;
        for (int row = 0; row < ROWS && going; ++row)
            if (_addresses[row]) going = Ping(runner, row, *_addresses[row]);
        if (going && !_hostname.empty()) Resolve(runner);
    }
    SetFooter(FOOTER_PROGRESS_ENTER_OK);
    AwaitKey(Key::Enter);
    return 1;
}

}  // namespace Tolm

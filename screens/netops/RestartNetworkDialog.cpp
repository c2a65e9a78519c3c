#include "screens/netops/RestartNetworkDialog.h"

#include "exec/HostCall.h"
#include "frame/Keys.h"
#include "host/TarnCtlNetwork.h"
#include "screens/netops/DoRestartNetworkDialog.h"
#include "ui/MessageDialog.h"
#include "ui/TextArea.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 70;
constexpr int HEIGHT = 12;
constexpr int TITLE_HEIGHT = 7;

// The interface is gone when the host no longer names it as the management
// interface; any other failure is one of the operation.
TextId FailureText(const HostCtl::Network::TarnNic& nic)
{
    std::unique_ptr<HostCtl::Network::TarnNic> current;
    HostCall("Getting management interface failed:",
             [&] { current = TarnCtl::Network::NetworkInfoImpl().GetManagementInterface(); });
    return current && current->GetName() == nic.GetName() ? TextId::ManagementInterfaceOperationFailed
                                                          : TextId::ManagementInterfaceNotFound;
}

}  // namespace

RestartNetworkDialog::RestartNetworkDialog(Frame* parent, HostCtl::Network::TarnNic& nic)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _nic(nic)
{
    if (Window* content = Content()) _question = content->AddChild<TextArea>(0, 0, content->Width(), content->Height());
}

int RestartNetworkDialog::Execute()
{
    SetTitle(Text(TextId::RestartManagementNetworkConfirm));
    SetText(Text(TextId::RestartManagementNetworkText));
    SetFooter(FOOTER_F11_OK_CANCEL);
    if (_question) _question->SetText(Text(TextId::RestartManagementNetworkNow));
    if (!AwaitChoice(Key::F11)) return 0;
    DoRestartNetworkDialog restart(this, _nic);
    Frame::Run(&restart);
    return 1;
}

int RestartNetworkDialog::Open(Frame* menu, HostCtl::Network::TarnNic* nic)
{
    if (nic == nullptr) return 0;
    int result = 0;
    const auto error = HostCall("Restarting management network failed:", [&] {
        RestartNetworkDialog confirm(menu, *nic);
        result = Frame::Run(&confirm);
    });
    if (!error) return result;
    MessageDialog box(menu, TextId::RestartManagementNetworkError, FailureText(*nic));
    Frame::Run(&box);
    return 0;
}

}  // namespace Tolm

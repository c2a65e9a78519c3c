#include "screens/system/RestoreDialog.h"

#include "exec/Exec.h"
#include "exec/ShellCommand.h"
#include "frame/Keys.h"
#include "host/Log.h"
#include "screens/system/HostDown.h"
#include "catalogue/StringFactory.h"
#include "ui/Item.h"
#include "ui/ItemList.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 12;
constexpr int TITLE_HEIGHT = 7;

constexpr TextId ID_CONFIRM_TITLE = TextId::ResetSystemConfigurationConfirm;
constexpr TextId ID_CONFIRM_TEXT = TextId::ResetSystemConfigurationWarning;
constexpr TextId ID_QUESTION = TextId::ResetSystemConfigurationNow;
constexpr TextId ID_BUSY_TITLE = TextId::ResetSystemConfigurationTitle;
constexpr TextId ID_BUSY_TEXT = TextId::PleaseWaitDefaultSettings;
constexpr TextId ID_DONE_TEXT = TextId::DefaultSettingsRestored;


constexpr const char* RESET_COMMAND = "/sbin/firmwareConfig.sh";
constexpr const char* RESET_ARGS = "--reset-only > /dev/null 2>&1";

}  // namespace

RestoreDialog::RestoreDialog(Frame* parent)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _label(std::make_unique<LabelItem>("", false))
{
    if (Window* content = Content()) {
        _items = content->AddChild<ItemList>(0, 0, content->Width(), content->Height());
        _items->SetItems({_label.get()});
    }
}

RestoreDialog::~RestoreDialog() = default;

void RestoreDialog::ShowLabel(std::string text)
{
    _label->SetLabel(std::move(text));
    if (_items) _items->Redraw();
}

int RestoreDialog::Execute()
{
    SetTitle(Text(ID_CONFIRM_TITLE));
    SetText(Text(ID_CONFIRM_TEXT));
    ShowLabel(Text(ID_QUESTION));
    SetFooter(FOOTER_F11_OK_CANCEL);
    if (!AwaitChoice(Key::F11)) return 0;

    Log::Write(LOG_INFO, "%s", "Restoring factory defaults");
    RaiseEvent(Events::RestoreFactoryDefaults);

    SetTitle(Text(ID_BUSY_TITLE));
    SetText(Text(ID_BUSY_TEXT));
    SetFooter("");
    if (RunShellCommand(RESET_COMMAND, RESET_ARGS) == -1) return 0;

    ShowLabel("");
    SetFooter(FOOTER_ENTER_RESTART_HOST);
    SetText(Text(ID_DONE_TEXT));
    // Drawing the window afresh discards the keys typed while the reset
    // ran: only an Enter pressed after reading the question restarts.
    Draw(true);
    AwaitKey(Key::Enter);

    if (RunShellCommand("reboot", "-f") == -1) return 0;
    AwaitHostDown(this);
}

}  // namespace Tolm

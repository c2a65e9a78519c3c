#include "screens/system/ShutdownDialog.h"

#include "exec/Exec.h"
#include "frame/Keys.h"
#include "host/Log.h"
#include "screens/system/RebootConfirmDialog.h"
#include "screens/system/ShutdownConfirmDialog.h"
#include "catalogue/StringFactory.h"
#include "ui/Item.h"
#include "ui/ItemList.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 19;
constexpr int TITLE_HEIGHT = 13;

constexpr TextId ID_TITLE = TextId::ShutDownRestartTitle;
constexpr TextId ID_TEXT = TextId::ShutDownRestartText;
constexpr TextId ID_FORCE = TextId::ForcefullyTerminateRunningVMs;

// The log line and the event go out when the confirmation opens, before the
// host is stopped.
struct PowerChoice {
    int key;
    const char* logLine;
    const Event& event;
    void (*confirm)(Frame* parent, bool force);
};

template <class ConfirmDialog>
void RunConfirm(Frame* parent, bool force)
{
    ConfirmDialog dialog(parent, force);
    Frame::Run(&dialog);
}

const PowerChoice kChoices[] = {
    {Key::F2, "Shutting down host", Events::ShutdownHost, RunConfirm<ShutdownConfirmDialog>},
    {Key::F11, "Rebooting host", Events::RebootHost, RunConfirm<RebootConfirmDialog>},
};

}  // namespace

ShutdownDialog::ShutdownDialog(Frame* parent)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT),
      _force(std::make_unique<CheckItem>(Text(ID_FORCE)))
{
    if (Window* content = Content()) {
        _items = content->AddChild<ItemList>(0, 0, content->Width(), content->Height());
        _items->SetItems({_force.get()});
    }
}

ShutdownDialog::~ShutdownDialog() = default;

int ShutdownDialog::Execute()
{
    SetTitle(Text(ID_TITLE));
    SetText(Text(ID_TEXT));
    SetFooter(FOOTER_SHUT_DOWN_RESTART_CANCEL);
    if (_items) _items->Redraw();
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Escape) return 0;
        if (key == ' ') {
            _force->SetChecked(!_force->IsChecked());
            if (_items) _items->Redraw();
            continue;
        }
        for (const PowerChoice& choice : kChoices) {
            if (key != choice.key) continue;
            Log::Write(LOG_INFO, "%s", choice.logLine);
            RaiseEvent(choice.event);
            choice.confirm(this, _force->IsChecked());
        }
    }
}

}  // namespace Tolm

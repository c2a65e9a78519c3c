#include "screens/troubleshooting/RestartAgentsDialog.h"

#include <pthread.h>

#include <cstring>

#include "catalogue/Footers.h"
#include "exec/Exec.h"
#include "frame/Keys.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "host/TarnCtlSystem.h"
#include "host/TarnCtlUtil.h"
#include "ui/Item.h"
#include "ui/ItemList.h"
#include "ui/TextArea.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 71;
constexpr int HEIGHT = 20;
constexpr int TITLE_HEIGHT = 9;
// Question and progress above, the check item on the content's last row.
constexpr int PROGRESS_ROWS = 5;

constexpr TextId ID_TITLE = TextId::RestartManagementAgentsConfirm;
constexpr TextId ID_WARNING = TextId::RestartManagementAgentsWarning;
constexpr TextId ID_QUESTION = TextId::RestartManagementAgentsNow;
constexpr TextId ID_STOPPING = TextId::StoppingManagementAgents;
constexpr TextId ID_STARTING = TextId::StartingManagementAgents;
constexpr TextId ID_COLLECT = TextId::CollectExtraTroubleshootingInformation;
constexpr TextId ID_COLLECTING = TextId::CollectingHostAgentLive;
constexpr TextId ID_DONE = TextId::Done;

constexpr const char* STOP_AGENTS = "/bin/sh /sbin/services.sh stop";
constexpr const char* START_AGENTS = "/bin/sh /sbin/services.sh start";
constexpr const char* LIVE_CORE = "/sbin/tarnbacktrace -w -n hagentd -o hagentd-restart% -d /var/log/";
constexpr const char* CORE_ALERT = "Hagentd core dump completed";

}  // namespace

RestartAgentsDialog::RestartAgentsDialog(Frame* parent)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _collect(std::make_unique<CheckItem>(Text(ID_COLLECT)))
{
    if (Window* content = Content()) {
        // Indented as far as the check item's text.
        _progress = content->AddChild<TextArea>(1, 0, content->Width() - 1, PROGRESS_ROWS);
        _items = content->AddChild<ItemList>(0, content->Height() - 1, content->Width(), 1);
        _items->SetItems({_collect.get()});
    }
}

RestartAgentsDialog::~RestartAgentsDialog() = default;

void RestartAgentsDialog::Append(const std::string& markup)
{
    _text += markup;
    if (_progress) _progress->SetText(_text);
}

void* RestartAgentsDialog::GenerateHagentdLiveCore(void*)
{
    try {
        Log::Write(LOG_INFO, "Executing tarnbacktrace -c against hagentd");
        if (TarnCtl::Util::TarnCtl_Exec(LIVE_CORE, 0, 1, 0) != 0) {
            Log::Write(LOG_ERR, "tarnbacktrace failed, probably hagentd was down");
            return nullptr;
        }
        TarnCtl::System::SystemInfoImpl().SetSystemAlert(CORE_ALERT);
    } catch (const HostCtl::Lib::HostCtlException&) {
    }
    return nullptr;
}

bool RestartAgentsDialog::StartLiveCore()
{
    pthread_attr_t attr;
    int rc = pthread_attr_init(&attr);
    if (rc == 0) {
        pthread_t thread;
        rc = pthread_create(&thread, &attr, GenerateHagentdLiveCore, nullptr);
        pthread_attr_destroy(&attr);
        // Nobody waits for it; its resources go when it ends.
        if (rc == 0) pthread_detach(thread);
    }
    if (rc != 0) Log::Write(LOG_ERR, "failed to create live core generation thread: %s", std::strerror(rc));
    return rc == 0;
}

void RestartAgentsDialog::Restart()
{
    Log::Write(LOG_INFO, "Restarting host agents");
    RaiseEvent(Events::RestartingHostAgents);
    const std::string done = Text(ID_DONE);
    if (_collect->IsChecked() && StartLiveCore())
        Append("{color:dark-grey}" + Text(ID_COLLECTING) + " " + done + "{/color}\n");
    // The script's status is not examined: there is nothing to offer instead.
    // Each step's line is on the screen while the script runs.
    Append(Text(ID_STOPPING) + " ");
    Flush();
    TarnCtl::Util::TarnCtl_Exec(STOP_AGENTS, 0, 1, 0);
    Append(done + "\n" + Text(ID_STARTING) + " ");
    Flush();
    TarnCtl::Util::TarnCtl_Exec(START_AGENTS, 0, 1, 0);
    Append(done + "\n");
}

int RestartAgentsDialog::Execute()
{
    SetTitle(Text(ID_TITLE));
    SetText(Text(ID_WARNING));
    SetFooter(FOOTER_F11_OK_CANCEL);
    _text = Text(ID_QUESTION) + "\n";
    Append("");
    if (_items) _items->Redraw();
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Escape) return 0;
        if (key == ' ') {
            _collect->SetChecked(!_collect->IsChecked());
            if (_items) _items->Redraw();
        } else if (key == Key::F11) {
            break;
        }
    }
    Restart();
    SetFooter(FOOTER_ENTER_OK);
    AwaitKey(Key::Enter);
    return 1;
}

}  // namespace Tolm

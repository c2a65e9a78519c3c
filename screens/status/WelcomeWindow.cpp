#include "screens/status/WelcomeWindow.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "exec/HostCall.h"
#include "frame/Colors.h"
#include "frame/Display.h"
#include "frame/Keys.h"
#include "host/HostPaths.h"
#include "host/Log.h"
#include "host/TarnCtlSystem.h"
#include "screens/access/LoginDialog.h"
#include "screens/access/LoginDisabledDialog.h"
#include "screens/access/Pam.h"
#include "screens/status/WelcomeContent.h"
#include "screens/menu/GeneralWindow.h"
#include "screens/system/ShutdownDialog.h"
#include "ui/TextArea.h"
#include "catalogue/StringFactory.h"

namespace Tolm {

namespace {

// Present while the administrator allows logging in on the console.
constexpr const char* LOGIN_FLAG_FILE = "/var/run/pellor/show-tolm-login";

constexpr TextId ID_FOOTER_LOGIN = TextId::CustomizeSystemViewLogs;
constexpr TextId ID_FOOTER_SHUTDOWN = TextId::ShutDownRestart;
constexpr int MARGIN = 2;

bool LoginEnabled()
{
    return access(HostPath::Resolve(LOGIN_FLAG_FILE).c_str(), F_OK) == 0;
}

// Setting a text draws it at once; an unchanged one is drawn with the window.
void SetIfChanged(TextArea* area, std::string text)
{
    if (area->Text() != text) area->SetText(std::move(text));
}

// The addresses, a free line, then the warnings, each one line cut to
// `width`. The warnings are kept whole on screen: when the addresses would
// push them out of the `height` lines, the addresses that do not fit are
// left out instead.
std::string LowerText(const WelcomeContent& content, int width, int height)
{
    std::vector<std::string> lines;
    // Without an adapter there is nothing to manage the host through; the
    // warning takes the place of the addresses.
    if (!content.noAdapter) lines = content.addresses;
    const size_t warnings = content.warnings.size();
    if (warnings > 0) {
        const size_t lineCount = static_cast<size_t>(std::max(0, height));
        const size_t room = lineCount - std::min(warnings, lineCount);
        // The free line goes before any address does.
        if (lines.size() + 1 > room) lines.resize(room > 1 ? room - 1 : 0);
        if (!lines.empty()) lines.emplace_back();
        lines.insert(lines.end(), content.warnings.begin(), content.warnings.end());
    }
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (i > 0) text += "\n";
        text += FitLine(lines[i], width);
    }
    return text;
}

}  // namespace

WelcomeWindow::WelcomeWindow(Frame* parent)
    : Frame(parent, 0, 0, std::max(1, Display::Columns()), std::max(1, Display::Lines()), Color::Yellow,
            Color::Black)
{
    const int width = Width();
    const int upperHeight = std::max(1, Height() / 2);
    const int lowerHeight = std::max(1, Height() - upperHeight);
    const int textWidth = std::max(1, width - 2 * MARGIN);

    _upper = CreateChild(0, 0, width, upperHeight, Color::DarkGrey, Color::White);
    _lower = CreateChild(0, upperHeight, width, lowerHeight, Color::Yellow, Color::Black);
    // Host description: five lines (with a gap) centred in the upper half.
    const int descriptionTop = std::max(0, (upperHeight - 5) / 2);
    _description = _upper->AddChild<TextArea>(MARGIN, descriptionTop, textWidth,
                                               std::max(1, upperHeight - descriptionTop), Color::LightGrey);
    // Addresses and warnings, with a free line above and the footer below.
    _addresses = _lower->AddChild<TextArea>(MARGIN, std::min(1, lowerHeight - 1), textWidth,
                                            std::max(1, lowerHeight - 3), Color::Black);
    _footer = _lower->AddChild<TextArea>(MARGIN, lowerHeight - 1, textWidth, 1, Color::Black);
}

void WelcomeWindow::Compose()
{
    const WelcomeContent content = ComposeWelcome(_factory);
    const int width = _description->Width();

    std::string description;
    for (size_t i = 0; i < content.description.size(); ++i) {
        const std::string line = FitLine(content.description[i], width);
        // The product line stands out; processor and memory sit apart.
        if (i == 0) description += "{color:white}" + line + "{/color}";
        else description += (i == 2 ? "\n\n" : "\n") + line;
    }
    SetIfChanged(_description, description);

    SetIfChanged(_addresses, LowerText(content, width, _addresses->Height()));

    if (content.noAdapter && !_alertRaised) {
        RaiseNoAdapterAlert();
    } else if (!content.noAdapter) {
        _alertRaised = false;
    }

    const auto text = [this](TextId id) { return std::string(Text(id)); };
    SetIfChanged(_footer, "<F2> {color:dark-grey}" + text(ID_FOOTER_LOGIN) + "{/color}" +
                              "{align:right}<F12> {color:dark-grey}" + text(ID_FOOTER_SHUTDOWN) + "{/color}{/align}");
}

void WelcomeWindow::RaiseNoAdapterAlert()
{
    TarnCtl::System::SystemInfoImpl system;
    // The host keeps its alerts; one raised before (by an earlier run of the
    // console) is not raised again. Alerts that cannot be read do not keep
    // this one from being raised.
    const bool present = HostValue(
        "Getting system alerts failed:",
        [&] {
            const auto alerts = system.GetSystemAlerts();
            return std::find(alerts.begin(), alerts.end(), NO_ADAPTER_ALERT) != alerts.end();
        },
        false);
    HostCall("Setting system alert failed:", [&] {
        if (!present) system.SetSystemAlert(NO_ADAPTER_ALERT);
        _alertRaised = true;
    });
}

void WelcomeWindow::Draw(bool active)
{
    Compose();
    Frame::Draw(active);
}

void WelcomeWindow::Refresh() { Draw(true); }

int WelcomeWindow::Execute()
{
    for (;;) {
        try {
            HandleKey(Frame::GetKey(this, false));
        } catch (const TolmTimeout&) {
            EndTimedOutSession();
        }
        Frame::SetLoggedIn(false);
        // A restart was asked for while someone was logged in.
        if (Frame::_markForRestart) std::exit(0);
    }
}

void WelcomeWindow::HandleKey(int key)
{
    switch (key) {
    case Key::F2:
    case Key::F12:
        OpenLogin(key);
        return;
    case Key::F4:
        if (Display::CanChangeColors()) {
            Display::SetBlackAndWhite(!Display::BlackAndWhite());
            Draw(true);
            return;
        }
        break;
    default:
        break;
    }
    // Any other key repaints the whole terminal, clearing whatever else
    // wrote to it.
    Display::ForceFullRepaint();
    Draw(true);
}

void WelcomeWindow::OpenLogin(int key)
{
    if (!LoginEnabled()) {
        LoginDisabledDialog denied(this);
        Frame::Run(&denied);
        return;
    }

    bool authenticated = false;
    {
        LoginDialog login(this);
        // Accepted, the menu or the shut-down dialog comes over this screen.
        authenticated = Frame::Run(&login, false) == 1;
    }
    if (!authenticated) return;

    if (key == Key::F2) {
        const std::string user = Frame::_loginName;
        Frame::SetLoggedIn(true);
        // An empty password that PAM refuses means the user has set one.
        const bool passwordSet = Authenticate(user, "") != 0;
        {
            GeneralWindow menu(this, passwordSet);
            Frame::Run(&menu);
        }
        Frame::SetLoggedIn(false);
        Log::Write(LOG_INFO, "User %s logged out.", user.c_str());
    } else {
        ShutdownDialog shutdown(this);
        Frame::Run(&shutdown);
    }
    Draw(true);
}

void WelcomeWindow::EndTimedOutSession()
{
    if (Frame::_loggedIn) {
        Frame::SetLoggedIn(false);
        Log::Write(LOG_INFO, "User %s logged out.", Frame::_loginName.c_str());
    }
    // The windows that timed out are gone; this screen is in front again.
    Frame::fgFrame = this;
    Display::ForceFullRepaint();
    Draw(true);
}

}  // namespace Tolm

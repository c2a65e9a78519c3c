#include "screens/access/LoginDialog.h"

#include <security/pam_appl.h>
#include <syslog.h>

#include <string>

#include "exec/Events.h"
#include "frame/Keys.h"
#include "frame/TerminalFlags.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "host/TarnCtlSystem.h"
#include "screens/access/HostAndDomain.h"
#include "screens/access/Pam.h"
#include "screens/system/KeyboardDialog.h"
#include "ui/InputItem.h"
#include "ui/Item.h"
#include "ui/MessageDialog.h"
#include "ui/catalogue/StringFactory.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 13;
// Two lines of prompt under the title.
constexpr int TITLE_HEIGHT = 6;
constexpr int FIELD_WIDTH = 30;

constexpr unsigned ID_TITLE = 144;
constexpr unsigned ID_PASSWORD_PROMPT = 145;
constexpr unsigned ID_PIN_PROMPT = 146;
constexpr unsigned ID_LOGIN_NAME = 149;
constexpr unsigned ID_PASSWORD = 151;
constexpr unsigned ID_FAILED = 153;
constexpr unsigned ID_INVALID = 154;
constexpr unsigned ID_NO_PERMISSION = 155;

constexpr const char* DEFAULT_USER = "root";

// The stray ">" after "black" is part of the footer as the host shows it.
const std::string FOOTER_PIN =
    std::string("{align:left}{color:black>}<F3>{/color} {color:dark-grey}Switch PIN/Password Login{/color}{/align}") +
    FOOTER_OK_CANCEL;

// Priority values of the login results on the auth facility; success is
// logged at the most urgent level on purpose.
constexpr int AUTH_SUCCEEDED = LOG_AUTH | LOG_EMERG;
constexpr int AUTH_FAILED = LOG_AUTH | LOG_ERR;

std::string KeyboardLabel()
{
    std::string layout;
    try {
        layout = TarnCtl::System::SystemInfoImpl().GetKeyboardLayout();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "Getting keyboard layout failed: %s", e.what());
    }
    return "Configured Keyboard (" + layout + ")";
}

}  // namespace

LoginDialog::LoginDialog(Frame* parent)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _fields(*this), _pinMode(!_smartCardLoginId.empty())
{
    std::vector<std::unique_ptr<Item>> items;
    if (!runningOverSerial) {
        auto keyboard = std::make_unique<LabelItem>(KeyboardLabel());
        _keyboard = keyboard.get();
        items.push_back(std::move(keyboard));
    }
    auto name = std::make_unique<InputItem>(Text(ID_LOGIN_NAME), "", FIELD_WIDTH);
    auto password = std::make_unique<InputItem>(Text(ID_PASSWORD), "", FIELD_WIDTH);
    password->SetMasked(true);
    _name = name.get();
    _password = password.get();
    _nameIndex = static_cast<int>(items.size());
    items.push_back(std::move(name));
    items.push_back(std::move(password));
    _fields.SetItems(std::move(items));
}

void LoginDialog::Fill()
{
    SetTitle(Text(ID_TITLE));
    const std::string where = HostAndDomain() + ".";
    if (_pinMode) {
        SetText(Text(ID_PIN_PROMPT) + where);
        _name->SetValue(_smartCardLoginId);
        SetFooter(FOOTER_PIN);
    } else {
        SetText(Text(ID_PASSWORD_PROMPT) + where);
        _name->SetValue(DEFAULT_USER);
        SetFooter(FOOTER_OK_CANCEL);
    }
    FieldList::Clear(*_password);
    _fields.Focus(_nameIndex);
}

void LoginDialog::UpdateKeyboardLine()
{
    if (!_keyboard) return;
    _keyboard->SetLabel(KeyboardLabel());
    _fields.Redraw();
}

bool LoginDialog::TryLogin()
{
    const std::string user = _name->Value();
    const int status = Authenticate(user, _password->Value());
    if (status == PAM_SUCCESS) {
        Log::Write(AUTH_SUCCEEDED, "Authentication of user %s succeeded", user.c_str());
        Log::Write(LOG_INFO, "User %s logged in", user.c_str());
        Frame::SetLoginName(user);
        FieldList::Clear(*_password);
        return true;
    }
    const bool denied = status == PAM_PERM_DENIED;
    if (denied)
        Log::Write(AUTH_FAILED, "Authorization of user %s failed with permission denied error.", user.c_str());
    else
        Log::Write(AUTH_FAILED, "Authentication of user %s failed with authentication failure.", user.c_str());
    RaiseEvent(Events::LoginFailed, user.c_str());
    MessageDialog message(this, ID_FAILED, denied ? ID_NO_PERMISSION : ID_INVALID);
    Frame::Run(&message);
    FieldList::Clear(*_password);
    _fields.Redraw();
    return false;
}

int LoginDialog::Execute()
{
    // Filled once shown: drawing the dialog discards type-ahead, so what the
    // user sees filled in is what takes keys.
    Fill();
    for (;;) {
        const int key = Frame::GetKey(this, true);
        const int focused = _fields.Focused();
        const int last = _fields.Count() - 1;
        const bool onKeyboard = _keyboard && focused == 0;
        if (key == Key::Escape) {
            Window::ShowCursor(false);
            return 0;
        } else if (key == Key::Enter && onKeyboard) {
            KeyboardDialog keyboard(this);
            Frame::Run(&keyboard);
            UpdateKeyboardLine();
        } else if ((key == Key::Tab || key == Key::Enter) && focused < last) {
            _fields.Focus(focused + 1);
        } else if (key == Key::Tab) {
            _fields.Focus(0);
        } else if (key == Key::Enter) {
            if (TryLogin()) {
                Window::ShowCursor(false);
                return 1;
            }
        } else if (key == Key::Up) {
            _fields.Focus(focused - 1);
        } else if (key == Key::Down) {
            _fields.Focus(focused + 1);
        } else if (key == Key::F3) {
            _pinMode = !_pinMode;
            Fill();
        } else {
            _fields.Edit(key);
        }
    }
}

}  // namespace Tolm

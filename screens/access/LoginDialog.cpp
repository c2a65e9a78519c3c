#include "screens/access/LoginDialog.h"

#include <security/pam_appl.h>
#include <syslog.h>

#include <string>

#include "exec/Events.h"
#include "frame/Keys.h"
#include "frame/TerminalFlags.h"
#include "exec/HostCall.h"
#include "host/Log.h"
#include "host/TarnCtlSystem.h"
#include "screens/access/HostAndDomain.h"
#include "screens/access/Pam.h"
#include "screens/system/KeyboardDialog.h"
#include "ui/InputItem.h"
#include "ui/Item.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"
#include "catalogue/StringFactory.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 13;
// Two lines of prompt under the title.
constexpr int TITLE_HEIGHT = 6;
constexpr int FIELD_WIDTH = 30;

constexpr TextId ID_TITLE = TextId::AuthenticationRequired;
constexpr TextId ID_PASSWORD_PROMPT = TextId::EnterLoginAndPasswordFor;
constexpr TextId ID_PIN_PROMPT = TextId::EnterSmartCardPINFor;
constexpr TextId ID_LOGIN_NAME = TextId::LoginName;
constexpr TextId ID_PASSWORD = TextId::Password;
constexpr TextId ID_FAILED = TextId::AuthenticationFailed;
constexpr TextId ID_INVALID = TextId::InvalidLoginOrPassword;
constexpr TextId ID_NO_PERMISSION = TextId::NoPermissionToLogin;

constexpr const char* DEFAULT_USER = "root";

// Priority values of the login results on the auth facility; success is
// logged at the most urgent level on purpose.
constexpr int AUTH_SUCCEEDED = LOG_AUTH | LOG_EMERG;
constexpr int AUTH_FAILED = LOG_AUTH | LOG_ERR;

std::string KeyboardLabel()
{
    const std::string layout = HostValue(
        "Getting keyboard layout failed:", [] { return TarnCtl::System::SystemInfoImpl().GetKeyboardLayout(); },
        std::string());
    return "Configured Keyboard (" + Markup::Literal(layout) + ")";
}

}  // namespace

LoginDialog::LoginDialog(Frame* parent)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _fields(*this), _pinMode(!_smartCardLoginId.empty())
{
    if (!runningOverSerial) _keyboard = &_fields.AddLabel(KeyboardLabel());
    _nameIndex = _fields.Count();
    _name = &_fields.AddInput(Text(ID_LOGIN_NAME), "", FIELD_WIDTH);
    _password = &_fields.AddInput(Text(ID_PASSWORD), "", FIELD_WIDTH);
    _password->SetMasked(true);
}

void LoginDialog::Fill()
{
    SetTitle(Text(ID_TITLE));
    const std::string where = HostAndDomain() + ".";
    if (_pinMode) {
        SetText(Text(ID_PIN_PROMPT) + where);
        _name->SetValue(_smartCardLoginId);
        SetFooter(std::string(FOOTER_SWITCH_PIN_LOGIN) + FOOTER_OK_CANCEL);
    } else {
        SetText(Text(ID_PASSWORD_PROMPT) + where);
        _name->SetValue(DEFAULT_USER);
        SetFooter(FOOTER_OK_CANCEL);
    }
    Form::Clear(*_password);
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
        Form::Clear(*_password);
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
    Form::Clear(*_password);
    _fields.Redraw();
    return false;
}

bool LoginDialog::OwnKey(int key)
{
    if (key == Key::Enter && _keyboard && _fields.Focused() == 0) {
        KeyboardDialog keyboard(this);
        Frame::Run(&keyboard);
        UpdateKeyboardLine();
        return true;
    }
    if (key == Key::F3) {
        _pinMode = !_pinMode;
        Fill();
        return true;
    }
    return false;
}

int LoginDialog::Execute()
{
    // Filled once shown: drawing the dialog discards type-ahead, so what the
    // user sees filled in is what takes keys.
    Fill();
    Form::Handlers handlers;
    handlers.enterAdvances = true;
    handlers.key = [this](int key) { return OwnKey(key); };
    handlers.accept = [this] { return TryLogin(); };
    return _fields.Run(handlers);
}

}  // namespace Tolm

#include "screens/access/ChangePasswordDialog.h"

#include <security/pam_appl.h>
#include <syslog.h>

#include <memory>
#include <vector>

#include "exec/Events.h"
#include "exec/OrlaCmd.h"
#include "exec/RunCommand.h"
#include "frame/Keys.h"
#include "host/Log.h"
#include "screens/access/Pam.h"
#include "screens/access/SamePasswordConfirmDialog.h"
#include "ui/InputItem.h"
#include "ui/MessageDialog.h"
#include "catalogue/StringFactory.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 14;
constexpr int TITLE_HEIGHT = 6;
constexpr int FIELD_WIDTH = 30;

constexpr TextId ID_TITLE = TextId::ConfigurePasswordTitle;
constexpr TextId ID_TEXT = TextId::ConfigurePasswordText;
constexpr TextId ID_OLD = TextId::OldPassword;
constexpr TextId ID_NEW = TextId::NewPassword;
constexpr TextId ID_CONFIRM = TextId::ConfirmPassword;
constexpr TextId ID_ERROR_TITLE = TextId::ConfigurePasswordError;
constexpr TextId ID_WRONG_OLD = TextId::OldPasswordIncorrect;
constexpr TextId ID_MISMATCH = TextId::PasswordsDoNotMatch;
constexpr TextId ID_EMPTY = TextId::EmptyPasswordsNotAllowed;
constexpr TextId ID_CHANGE_FAILED = TextId::PasswordChangeFailed;


constexpr const char* BACKUP_PATH = "/sbin/backup.sh";

}  // namespace

ChangePasswordDialog::ChangePasswordDialog(Frame* parent)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _fields(*this)
{
    _old = &_fields.AddInput(Text(ID_OLD), "", FIELD_WIDTH);
    _new = &_fields.AddInput(Text(ID_NEW), "", FIELD_WIDTH);
    _confirm = &_fields.AddInput(Text(ID_CONFIRM), "", FIELD_WIDTH);
    for (InputItem* field : {_old, _new, _confirm}) field->SetMasked(true);
}

void ChangePasswordDialog::ShowError(TextId messageId)
{
    MessageDialog message(this, ID_ERROR_TITLE, messageId);
    Frame::Run(&message);
}

bool ChangePasswordDialog::CheckOldPassword()
{
    if (Authenticate(_loginName, _old->Value()) == PAM_SUCCESS) return true;
    ShowError(ID_WRONG_OLD);
    Form::Clear(*_old);
    _fields.Focus(OLD);
    return false;
}

bool ChangePasswordDialog::Submit()
{
    TextId failure = ID_CHANGE_FAILED;
    if (_confirm->Value() != _new->Value()) {
        failure = ID_MISMATCH;
    } else if (_new->Value().empty()) {
        failure = ID_EMPTY;
    } else {
        if (_new->Value() == _old->Value()) {
            SamePasswordConfirmDialog confirm(this);
            if (Frame::Run(&confirm) == 0) return false;
        }
        if (ChangePassword(_loginName, _old->Value(), _new->Value())) {
            // A failed backup neither undoes nor reports the change.
            const char* const argv[] = {"backup.sh", nullptr};
            RunCommand(BACKUP_PATH, argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
            RefreshInternalServices();
            Log::Write(LOG_INFO, "Login password for user %s has changed", _loginName.c_str());
            RaiseEvent(Events::PasswordChanged, _loginName.c_str());
            return true;
        }
        failure = ID_CHANGE_FAILED;
    }
    ShowError(failure);
    Form::Clear(*_new);
    Form::Clear(*_confirm);
    _fields.Focus(NEW);
    return false;
}

bool ChangePasswordDialog::OwnKey(int key)
{
    const int focused = _fields.Focused();
    const bool next = key == Key::Tab || key == Key::Enter || key == Key::Down;
    if (focused == OLD && next) {
        if (CheckOldPassword()) _fields.Focus(NEW);
    } else if (focused == NEW && next) {
        _fields.Focus(CONFIRM);
    } else if (focused == CONFIRM && (key == Key::Tab || key == Key::Up)) {
        _fields.Focus(NEW);
    } else if (focused == CONFIRM && key == Key::Enter) {
        if (Submit()) _fields.Finish(1);
    } else if (key != Key::Up && key != Key::Down && key != Key::Tab) {
        return false;
    }
    return true;
}

int ChangePasswordDialog::Execute()
{
    SetTitle(Text(ID_TITLE));
    SetText(Text(ID_TEXT));
    SetFooter(FOOTER_OK_CANCEL);
    _fields.Focus(OLD);
    Form::Handlers handlers;
    handlers.key = [this](int key) { return OwnKey(key); };
    return _fields.Run(handlers);
}

}  // namespace Tolm

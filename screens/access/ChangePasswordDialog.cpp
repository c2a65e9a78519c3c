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
#include "ui/catalogue/StringFactory.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 14;
constexpr int TITLE_HEIGHT = 6;
constexpr int FIELD_WIDTH = 30;

constexpr unsigned ID_TITLE = 156;
constexpr unsigned ID_TEXT = 157;
constexpr unsigned ID_OLD = 158;
constexpr unsigned ID_NEW = 159;
constexpr unsigned ID_CONFIRM = 160;
constexpr unsigned ID_ERROR_TITLE = 161;
constexpr unsigned ID_WRONG_OLD = 163;
constexpr unsigned ID_MISMATCH = 164;
constexpr unsigned ID_EMPTY = 165;
constexpr unsigned ID_CHANGE_FAILED = 167;


constexpr const char* BACKUP_PATH = "/sbin/backup.sh";

}  // namespace

ChangePasswordDialog::ChangePasswordDialog(Frame* parent)
    : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT), _fields(*this)
{
    std::vector<std::unique_ptr<Item>> items;
    for (unsigned id : {ID_OLD, ID_NEW, ID_CONFIRM}) {
        auto field = std::make_unique<InputItem>(Text(id), "", FIELD_WIDTH);
        field->SetMasked(true);
        items.push_back(std::move(field));
    }
    _old = static_cast<InputItem*>(items[OLD].get());
    _new = static_cast<InputItem*>(items[NEW].get());
    _confirm = static_cast<InputItem*>(items[CONFIRM].get());
    _fields.SetItems(std::move(items));
}

void ChangePasswordDialog::ShowError(unsigned messageId)
{
    MessageDialog message(this, ID_ERROR_TITLE, messageId);
    Frame::Run(&message);
}

bool ChangePasswordDialog::CheckOldPassword()
{
    if (Authenticate(_loginName, _old->Value()) == PAM_SUCCESS) return true;
    ShowError(ID_WRONG_OLD);
    FieldList::Clear(*_old);
    _fields.Focus(OLD);
    return false;
}

bool ChangePasswordDialog::Submit()
{
    unsigned failure = 0;
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
    FieldList::Clear(*_new);
    FieldList::Clear(*_confirm);
    _fields.Focus(NEW);
    return false;
}

int ChangePasswordDialog::Execute()
{
    SetTitle(Text(ID_TITLE));
    SetText(Text(ID_TEXT));
    SetFooter(FOOTER_OK_CANCEL);
    _fields.Focus(OLD);
    for (;;) {
        const int key = Frame::GetKey(this, true);
        const int focused = _fields.Focused();
        const bool next = key == Key::Tab || key == Key::Enter || key == Key::Down;
        if (key == Key::Escape) {
            Window::ShowCursor(false);
            return 0;
        } else if (focused == OLD && next) {
            if (CheckOldPassword()) _fields.Focus(NEW);
        } else if (focused == NEW && next) {
            _fields.Focus(CONFIRM);
        } else if (focused == CONFIRM && (key == Key::Tab || key == Key::Up)) {
            _fields.Focus(NEW);
        } else if (focused == CONFIRM && key == Key::Enter) {
            if (Submit()) {
                Window::ShowCursor(false);
                return 1;
            }
        } else {
            _fields.Edit(key);
        }
    }
}

}  // namespace Tolm

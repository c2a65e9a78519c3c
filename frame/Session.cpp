// Session state of the console: who is logged in, smart-card presence, the
// idle timeout, and the terminal size check.
#include <sys/ioctl.h>

#include <cstdlib>

#include "exec/Session.h"
#include "frame/Frame.h"
#include "frame/IdleTimeoutOption.h"
#include "frame/Painter.h"
#include "frame/Terminal.h"
#include "host/HostCtlException.h"
#include "host/Log.h"

namespace Tolm {

TarnCtl::Hardware::SmartCardInfoImpl Frame::_cardInfo;
bool Frame::_isLoggedWithSmartCard = false;
std::string Frame::_smartCardLoginId;
std::string Frame::_loginName;
bool Frame::_loggedIn = false;
bool Frame::_markForRestart = false;
unsigned Frame::_idleTimeout = DEFAULT_TOLM_TIMEOUT;

void Frame::SetLoggedIn(bool loggedIn)
{
    _loggedIn = loggedIn;
    if (loggedIn) LoadIdleTimeout();
}

void Frame::SetLoginName(const std::string& name)
{
    _loginName = name;
    // The host-tool wrappers run management commands as this user.
    Exec::SetLoginName(name);
    _isLoggedWithSmartCard = IsSmartCardPresent(name);
}

void Frame::LoadIdleTimeout()
{
    // A negative count of seconds means nothing sensible; keep the default.
    const int timeout = GetTolmTimeout();
    _idleTimeout = timeout >= 0 ? static_cast<unsigned>(timeout) : DEFAULT_TOLM_TIMEOUT;
}

void Frame::Resize()
{
    winsize size{};
    if (ioctl(0, TIOCGWINSZ, &size) != 0) return;
    if (size.ws_row == 0 || size.ws_col == 0) return;
    if (stdscr) {
        // Curses draws the resized screen itself.
        Painter::Release();
        resizeterm(size.ws_row, size.ws_col);
    }
    Log::Write(LOG_INFO, "Resized window to %dx%d", size.ws_col, size.ws_row);
    if (stdscr) wrefresh(stdscr);
}

std::string Frame::LookupSmartCardUser()
{
    try {
        for (const auto& slot : _cardInfo.GetSlots()) {
            const auto& token = slot.GetToken();
            if (!token) continue;
            for (const std::string& id : token->GetUserIds()) {
                if (!id.empty()) return id;
            }
        }
    } catch (const HostCtl::Lib::HostCtlException&) {
        Log::Write(LOG_ERR, "Error trying to lookup smart card tokens.");
    }
    return std::string();
}

bool Frame::IsSmartCardPresent(const std::string& userId)
{
    try {
        for (const auto& slot : _cardInfo.GetSlots()) {
            const auto& token = slot.GetToken();
            if (!token) continue;
            for (const std::string& id : token->GetUserIds()) {
                if (id == userId) return true;
            }
        }
    } catch (const HostCtl::Lib::HostCtlException&) {
        Log::Write(LOG_ERR, "Error trying to lookup smart card tokens.");
    }
    return false;
}

void Frame::CheckSmartCard()
{
    if (!_loggedIn) {
        _smartCardLoginId = LookupSmartCardUser();
        if (!_smartCardLoginId.empty())
            Log::Write(LOG_INFO, "Found smart card with user id '%s'", _smartCardLoginId.c_str());
    } else if (_isLoggedWithSmartCard) {
        if (!IsSmartCardPresent(_loginName)) {
            Log::Write(LOG_INFO, "Logging out user id '%s'", _loginName.c_str());
            std::exit(0);
        }
    }
}

}  // namespace Tolm

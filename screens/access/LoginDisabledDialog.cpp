#include "screens/access/LoginDisabledDialog.h"

#include <string>

#include "frame/Keys.h"
#include "host/HostCtlException.h"
#include "host/Log.h"
#include "host/TarnCtlNetwork.h"
#include "ui/catalogue/StringFactory.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 60;
constexpr int HEIGHT = 9;
// Room for a two-line text in the title band.
constexpr int TITLE_HEIGHT = 6;

constexpr unsigned ID_TITLE = 147;
constexpr unsigned ID_TEXT = 148;

// A failed query leaves its part of the sentence empty.
template <class F>
std::string Ask(const char* prefix, F&& query)
{
    try {
        return query();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log::Write(LOG_ERR, "%s %s", prefix, e.what());
        return "";
    }
}

}  // namespace

LoginDisabledDialog::LoginDisabledDialog(Frame* parent) : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT) {}

int LoginDisabledDialog::Execute()
{
    TarnCtl::Network::DnsConfigImpl dns(TarnCtl::Network::DEFAULT_TCPIP_STACK);
    const std::string host = Ask("Getting hostname failed:", [&] { return dns.GetHostname(); });
    const std::string domain = Ask("Getting domain failed:", [&] { return dns.GetDomain(); });

    const auto text = [this](unsigned id) { return std::string(_factory ? _factory->GetString(id) : ""); };
    SetTitle(text(ID_TITLE));
    SetText(text(ID_TEXT) + host + "." + domain + ".");
    SetFooter(FOOTER_ENTER_OK);

    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == Key::Enter || key == Key::Escape) return 0;
    }
}

}  // namespace Tolm

#pragma once
// The full-screen two-pane layout of the menu screens: a titled left pane
// with an item list and a footer, a titled right pane with a text and a
// footer, and a bottom line.
#include "frame/Frame.h"
#include "host/TarnCtlNetwork.h"

namespace Tolm {

class ItemList;
class TextArea;

class RootWindow : public Frame {
public:
    explicit RootWindow(Frame* parent);

    Window* MainArea() const { return _mainArea; }
    Window* BottomLine() const { return _bottomLine; }
    Window* LeftPane() const { return _leftPane; }
    Window* RightPane() const { return _rightPane; }
    ItemList* LeftContent() const { return _leftContent; }
    TextArea* RightContent() const { return _rightContent; }
    TextArea* LeftTitle() const { return _leftTitle; }
    TextArea* RightTitle() const { return _rightTitle; }
    TextArea* LeftFooter() const { return _leftFooter; }
    TextArea* RightFooter() const { return _rightFooter; }

protected:
    // Host objects the menu screens query.
    TarnCtl::Network::DnsConfigImpl _dnsConfig;
    TarnCtl::Network::RoutingInfoImpl _routingInfo;
    TarnCtl::Network::NetworkInfoImpl _networkInfo;

    Window* _mainArea;
    Window* _bottomLine;
    Window* _leftPane;
    Window* _rightPane;
    ItemList* _leftContent;
    TextArea* _rightContent;
    TextArea* _leftTitle;
    TextArea* _rightTitle;
    TextArea* _leftFooter;
    TextArea* _rightFooter;
};

}  // namespace Tolm

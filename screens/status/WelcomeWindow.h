#pragma once
// The status screen shown whenever nobody is logged in: who the host is,
// where it can be managed, and the way in (F2) or down (F12). Everything it
// shows is read from the host again on each draw.
#include "frame/Frame.h"

namespace Tolm {

class TextArea;

class WelcomeWindow : public Frame {
public:
    explicit WelcomeWindow(Frame* parent);

    // Recomposes the screen from the host, then draws it.
    void Draw(bool active) override;
    // Runs for the life of the process; the frame ends it by exiting.
    int Execute() override;
    void Refresh() override;

private:
    void Compose();
    void RaiseNoAdapterAlert();
    void HandleKey(int key);
    // F2 and F12: the login, then the menu or the shutdown dialog.
    void OpenLogin(int key);
    // An idle timeout unwound a session back to this screen.
    void EndTimedOutSession();

    Window* _upper;
    Window* _lower;
    TextArea* _description;
    TextArea* _addresses;
    TextArea* _footer;
    // The no-adapter alert is raised once, not on every draw.
    bool _alertRaised = false;
};

}  // namespace Tolm

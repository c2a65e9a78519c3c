// The form kit on a real curses screen, keys fed through the frame's clock
// seam: radio groups and the cursor while something covers the form. Key
// filters and a rejected field keeping its text are met end to end in the
// network dialogs' and troubleshooting tests.
#include "ui/Form.h"

#include <vector>

#include "CursesFixture.h"
#include "FrameFakes.h"
#include "frame/Keys.h"
#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/Item.h"

using namespace Tolm;

namespace {

class FormDialog : public Dialog {
public:
    FormDialog() : Dialog(nullptr, 60, 14, 5), form(*this) {}
    int Execute() override { return form.Run(handlers); }
    Form form;
    Form::Handlers handlers;
};

class FormTest : public CursesTest {
protected:
    void SetUp() override
    {
        Frame::SetClock(&script);
        Frame::_idleTimeout = 0;
        Frame::fgFrame = nullptr;
        Window::ShowCursor(false);
    }
    void TearDown() override { Frame::SetClock(nullptr); }
    Tolm::Test::ScriptedClock script;
};

TEST_F(FormTest, SpaceMarksOneRadioOfItsGroupAndSkipsDisabledRows)
{
    FormDialog dialog;
    RadioItem& dhcp = dialog.form.AddRadio("DHCP", 0, true);
    RadioItem& fixed = dialog.form.AddRadio("Static", 0);
    InputItem& address = dialog.form.AddInput("Address", "", 15, KeyFilters::Chars(KeyFilters::Ipv4));
    CheckItem& check = dialog.form.AddCheck("Check");
    dialog.form.SetEnabled(2, false);
    std::vector<int> toggled;
    dialog.handlers.toggled = [&](int row) {
        toggled.push_back(row);
        dialog.form.SetEnabled(2, fixed.IsSelected());
    };
    // Down from "Static" skips the disabled address row; marking "Static"
    // enables it.
    script.Type({Key::Down, Key::Down, ' ', Key::Up, ' ', Key::Down, '1', '.', 'a', '2', Key::Enter});
    EXPECT_EQ(Frame::Run(&dialog), 1);
    EXPECT_TRUE(check.IsChecked());
    EXPECT_TRUE(fixed.IsSelected());
    EXPECT_FALSE(dhcp.IsSelected());
    EXPECT_EQ(address.Value(), "1.2");
    EXPECT_EQ(toggled, (std::vector<int>{3, 1}));
}

TEST_F(FormTest, CursorHiddenWhileAMessageBoxOrDimmingCoversTheField)
{
    FormDialog dialog;
    dialog.form.AddInput("Address", "", 15);
    dialog.handlers.accept = [&] {
        dialog.form.Reject(0, TextId::InvalidIPAddress, TextId::PleaseReenterValidIPv4Address);
        return false;
    };
    // Enter opens the message box (which waits for its Enter); then a minute
    // passes without a key, dimming the form.
    script.Type({Key::Enter, Key::Enter});
    script.script.push_back({61, Frame::WAIT_TIMEOUT});
    script.Type({Key::Escape});
    EXPECT_EQ(Frame::Run(&dialog), 0);
    // Waits: form, message box, form, form dimmed.
    ASSERT_EQ(script.cursorAtWait.size(), 4u);
    EXPECT_TRUE(script.cursorAtWait[0]);
    EXPECT_FALSE(script.cursorAtWait[1]) << "cursor shown inside the message box";
    EXPECT_TRUE(script.cursorAtWait[2]);
    EXPECT_FALSE(script.cursorAtWait[3]) << "cursor shown on the dimmed form";
}

}  // namespace

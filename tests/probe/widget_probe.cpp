// tolm-probe SCENARIO: runs one widget scenario through the console's real
// start-up pieces (curses, colours, keys, signal pipe, Frame::Run) so the
// end-to-end tests can look at widgets on a pseudo-terminal. The outcome of a
// scenario is logged as "probe result ..." (the host root's syslog).
//
// Scenarios:
//   message  a message box over a plain screen; Enter acknowledges it
//   itemlist a dialog with 20 labels (every fifth disabled, headings not
//            selectable) in a scrolling list; Enter reports the ordinal
//   input    a dialog with a name field and a masked password field;
//            Up/Down/Tab move, Enter reports both values
//   root     the two-pane menu layout with a list and help text
//   markup   a dialog showing aligned, coloured and wrapped markup
#include <clocale>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "frame/Frame.h"
#include "frame/Terminal.h"
#include "host/Log.h"
#include "ui/Dialog.h"
#include "ui/InputItem.h"
#include "ui/Item.h"
#include "ui/ItemList.h"
#include "ui/MessageDialog.h"
#include "ui/RootWindow.h"
#include "ui/TextArea.h"

using namespace Tolm;

namespace {

constexpr const char* LIST_FOOTER =
    "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}"
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}  "
    "{color:black}<Esc>{/color} {color:dark-grey}Cancel{/color}{/align}";

void Result(const std::string& text) { Log::Write(LOG_INFO, "probe result %s", text.c_str()); }

// A dialog whose content area holds one item list.
class ListDialog : public Dialog {
public:
    ListDialog(Frame* parent, int width, int height, int titleHeight)
        : Dialog(parent, width, height, titleHeight)
    {
        Window* content = Content();
        if (content) list = content->AddChild<ItemList>(0, 0, content->Width(), content->Height());
    }

    ItemList* list = nullptr;
    std::vector<std::unique_ptr<Item>> items;
};

class ItemListDialog : public ListDialog {
public:
    explicit ItemListDialog(Frame* parent) : ListDialog(parent, 60, 20, 5)
    {
        for (int i = 0; i < 20; ++i) {
            auto item = std::make_unique<LabelItem>("Entry " + std::to_string(i), i % 7 != 3);
            if (i % 5 == 4) item->SetEnabled(false);
            items.push_back(std::move(item));
        }
        std::vector<Item*> pointers;
        for (auto& item : items) pointers.push_back(item.get());
        if (list) list->SetItems(pointers);
    }

    int Execute() override
    {
        SetTitle("Item List Probe");
        SetText("Every fifth entry is disabled.");
        SetFooter(LIST_FOOTER);
        for (;;) {
            const int key = Frame::GetKey(this, true);
            if (!list) return 0;
            if (key == Key::Up) list->Up();
            else if (key == Key::Down) list->Down();
            else if (key == Key::Enter) {
                Result("ordinal=" + std::to_string(list->SelectedOrdinal()) +
                       " index=" + std::to_string(list->SelectedIndex()));
                return 1;
            } else if (key == Key::Escape) {
                Result("cancelled");
                return 0;
            }
        }
    }
};

class InputDialog : public ListDialog {
public:
    explicit InputDialog(Frame* parent) : ListDialog(parent, 60, 13, 5)
    {
        auto name = std::make_unique<InputItem>("Name:", "localhost", 20);
        auto password = std::make_unique<InputItem>("Password:", "", 20);
        password->SetMasked(true);
        _name = name.get();
        _password = password.get();
        items.push_back(std::move(name));
        items.push_back(std::move(password));
        if (list) list->SetItems({_name, _password});
    }

    int Execute() override
    {
        SetTitle("Input Probe");
        SetText("Type into the fields.");
        SetFooter(LIST_FOOTER);
        for (;;) {
            const int key = Frame::GetKey(this, true);
            if (!list) return 0;
            if (key == Key::Up) list->Up();
            else if (key == Key::Down || key == Key::Tab) list->Down();
            else if (key == Key::Enter) {
                Result("name=" + _name->Value() + " password=" + _password->Value());
                return 1;
            } else if (key == Key::Escape) {
                Result("cancelled");
                return 0;
            } else if (auto* input = dynamic_cast<InputItem*>(list->Selected())) {
                input->HandleKey(key);
                list->Redraw();
            }
        }
    }

private:
    InputItem* _name;
    InputItem* _password;
};

class MarkupDialog : public Dialog {
public:
    explicit MarkupDialog(Frame* parent) : Dialog(parent, 50, 16, 7)
    {
        if (Content()) _area = Content()->AddChild<TextArea>(0, 0, Content()->Width(), Content()->Height(), -1);
    }

    int Execute() override
    {
        SetTitle("{align:center}Markup Probe{/align}");
        SetText("{color:red}Red{/color} and {color:white}white{/color}{align:right}right{/align}");
        SetFooter(FOOTER_ENTER_OK);
        if (_area)
            _area->SetText("{align:padding:10}Padded field text{/align}|\n"
                           "A long sentence that has to wrap onto the following lines of the area.");
        while (Frame::GetKey(this, true) != Key::Enter) {
        }
        Result("markup");
        return 1;
    }

private:
    TextArea* _area = nullptr;
};

class ProbeRoot : public RootWindow {
public:
    explicit ProbeRoot(Frame* parent) : RootWindow(parent)
    {
        for (const char* label : {"First Entry", "Second Entry", "Third Entry"})
            _items.push_back(std::make_unique<LabelItem>(label));
        std::vector<Item*> pointers;
        for (auto& item : _items) pointers.push_back(item.get());
        _leftContent->SetItems(pointers);
    }

    int Execute() override
    {
        _leftTitle->SetText("Probe Menu");
        _rightTitle->SetText("Help");
        _rightContent->SetText("Help for the selected entry.");
        _leftFooter->SetText("{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}");
        _rightFooter->SetText("{align:right}<Esc> Exit{/align}");
        for (;;) {
            const int key = Frame::GetKey(this, true);
            if (key == Key::Up) _leftContent->Up();
            else if (key == Key::Down) _leftContent->Down();
            else if (key == Key::Escape) {
                Result("root ordinal=" + std::to_string(_leftContent->SelectedOrdinal()));
                return 0;
            }
        }
    }

private:
    std::vector<std::unique_ptr<Item>> _items;
};

// The plain screen the dialogs are run over.
class ProbeScreen : public Frame {
public:
    explicit ProbeScreen(std::string scenario)
        : Frame(nullptr, 0, 0, COLS, LINES, Color::Black, Color::LightGrey), _scenario(std::move(scenario))
    {
        _label = AddChild<TextArea>(1, 0, COLS - 2, 1, Color::White);
    }

    int Execute() override
    {
        _label->SetText("Widget probe: " + _scenario);
        std::unique_ptr<Frame> window;
        if (_scenario == "message") {
            window = std::make_unique<MessageDialog>(this, TextId::CustomizeSystemViewLogs, std::string("Hello from the probe.\nSecond line."));
        } else if (_scenario == "itemlist") {
            window = std::make_unique<ItemListDialog>(this);
        } else if (_scenario == "input") {
            window = std::make_unique<InputDialog>(this);
        } else if (_scenario == "markup") {
            window = std::make_unique<MarkupDialog>(this);
        } else if (_scenario == "root") {
            window = std::make_unique<ProbeRoot>(this);
        } else {
            Result("unknown scenario");
            return 2;
        }
        const int result = Frame::Run(window.get());
        window.reset();
        Result("run=" + std::to_string(result));
        return result;
    }

private:
    std::string _scenario;
    TextArea* _label;
};

}  // namespace

int main(int argc, char** argv)
{
    const std::string scenario = argc > 1 ? argv[1] : "message";
    std::setlocale(LC_ALL, "");
    Log::Open("Tolm");
    Frame::InitSignals();
    if (!initscr()) return 1;
    cbreak();
    noecho();
    keypad(stdscr, TRUE);
    curs_set(0);
    start_color();
    InitColors();
    DefineKeys();
    refresh();

    int result = 0;
    try {
        ProbeScreen screen(scenario);
        result = Frame::Run(&screen);
    } catch (const TolmTimeout&) {
        Result("timeout");
    }
    endwin();
    return result == 2 ? 2 : 0;
}

#include "screens/system/KeyboardDialog.h"

#include "exec/HostCall.h"
#include "frame/Keys.h"
#include "host/Log.h"
#include "catalogue/StringFactory.h"
#include "ui/Item.h"
#include "ui/ItemList.h"
#include "ui/Markup.h"
#include "ui/MessageDialog.h"

namespace Tolm {

namespace {

constexpr int WIDTH = 76;
constexpr int HEIGHT = 18;
constexpr int TITLE_HEIGHT = 6;

constexpr TextId ID_TITLE = TextId::ConfigureKeyboard;
constexpr TextId ID_TEXT = TextId::ConfigureKeyboardText;


}  // namespace

KeyboardDialog::KeyboardDialog(Frame* parent) : Dialog(parent, WIDTH, HEIGHT, TITLE_HEIGHT)
{
    // Without the layouts the dialog still opens, with an empty list.
    std::string current;
    HostCall("Getting keyboard layouts failed:", [&] {
        current = _systemInfo.GetKeyboardLayout();
        _layouts = _systemInfo.GetKeyboardLayouts();
    });
    std::vector<Item*> items;
    for (size_t i = 0; i < _layouts.size(); ++i) {
        const bool marked = _marked < 0 && _layouts[i] == current;
        if (marked) _marked = static_cast<int>(i);
        _rows.push_back(std::make_unique<RadioItem>(_layouts[i], marked));
        items.push_back(_rows.back().get());
    }
    if (Window* content = Content()) {
        _items = content->AddChild<ItemList>(0, 0, content->Width(), content->Height());
        _items->SetItems(items);
        // Open on the layout in use.
        if (_marked >= 0) _items->SelectByOrdinal(_marked);
    }
}

KeyboardDialog::~KeyboardDialog() = default;

void KeyboardDialog::MarkSelected()
{
    if (!_items || _items->SelectedIndex() < 0) return;
    if (_marked >= 0) _rows[_marked]->SetSelected(false);
    _marked = _items->SelectedIndex();
    _rows[_marked]->SetSelected(true);
    _items->Redraw();
}

void KeyboardDialog::RestoreLayout(const std::string& previous)
{
    HostCall("Restoring keyboard layout failed:", [&] { _systemInfo.SetKeyboardLayout(previous); });
}

bool KeyboardDialog::Apply()
{
    const std::string& name = _layouts[_marked];
    std::string previous;
    bool configured = false;
    const auto error = HostCall("Setting keyboard layout failed:", [&] {
        previous = _systemInfo.GetKeyboardLayout();
        _systemInfo.SetKeyboardLayout(name);
        configured = true;
        _systemInfo.LoadKeyboardMappings(name);
    });
    if (error) {
        // The old map is still loaded: the configured layout must name it.
        if (configured) RestoreLayout(previous);
        MessageDialog failed(this, ID_TITLE,
                             Markup::Literal("Changing the keyboard layout to " + name + " failed: " + *error));
        Frame::Run(&failed);
        return false;
    }
    Log::Write(LOG_INFO, "Keyboard Layout changed to %s", name.c_str());
    return true;
}

int KeyboardDialog::Execute()
{
    SetTitle(Text(ID_TITLE));
    SetText(Text(ID_TEXT));
    SetFooter(FOOTER_SELECT_TOGGLE_OK_CANCEL);
    if (_items) _items->Redraw();
    for (;;) {
        switch (Frame::GetKey(this, true)) {
        case ' ':
            MarkSelected();
            break;
        case Key::Down:
            if (_items) _items->Down();
            break;
        case Key::Up:
            if (_items) _items->Up();
            break;
        case Key::Escape:
            return 0;
        case Key::Enter:
            // Nothing marked (the current layout is not offered): there is
            // nothing to apply, and Enter waits for a choice.
            if (_marked < 0) break;
            if (Apply()) return 1;
            break;
        default:
            break;
        }
    }
}

}  // namespace Tolm

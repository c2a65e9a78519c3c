#include "ui/Dialog.h"

#include "frame/Keys.h"
#include "frame/Terminal.h"
#include "ui/TextArea.h"

namespace Tolm {

Dialog::Dialog(Frame* parent, int width, int height, int titleHeight)
    : Frame(parent, (COLS - width) / 2, (LINES - height) / 2, width, height, Color::Black, Color::White)
{
    Erase();
    Box();
    const int bodyHeight = height - titleHeight;
    _titleBand = CreateChild(0, 0, width, titleHeight, Color::DarkGrey, Color::White);
    _body = CreateChild(0, titleHeight, width, bodyHeight, Color::Yellow, Color::White);
    _title = _titleBand->AddChild<TextArea>(3, 1, width - 6, 1, Color::White);
    _text = _titleBand->AddChild<TextArea>(3, 3, width - 6, titleHeight - 4, Color::LightGrey);
    _footer = _body->AddChild<TextArea>(2, bodyHeight - 2, width - 4, 1, Color::Black);
    if (bodyHeight - 4 >= 1) _content = _body->CreateChild(2, 1, width - 4, bodyHeight - 4, Color::Yellow, Color::DarkGrey);
}

void Dialog::SetTitle(std::string title) { _title->SetText(std::move(title)); }
void Dialog::SetText(std::string text) { _text->SetText(std::move(text)); }
void Dialog::SetFooter(std::string footer) { _footer->SetText(std::move(footer)); }

void Dialog::AwaitKey(int key)
{
    while (Frame::GetKey(this, true) != key) {
    }
}

bool Dialog::AwaitChoice(int yes)
{
    for (;;) {
        const int key = Frame::GetKey(this, true);
        if (key == yes) return true;
        if (key == Key::Escape) return false;
    }
}

void Dialog::Draw(bool active)
{
    if (active && ParentFrame()) ParentFrame()->Push();
    Window::Draw(active);
}

}  // namespace Tolm

#pragma once
// A centred box with a title band (title line and text) and a body (content
// area for items, footer line). Every dialog derives from it.
#include <string>

#include "catalogue/Footers.h"
#include "frame/Frame.h"

namespace Tolm {

class TextArea;

class Dialog : public Frame {
public:
    Dialog(Frame* parent, int width, int height, int titleHeight);

    // Each replaces the markup of its text area and redraws it.
    void SetTitle(std::string title);
    void SetText(std::string text);
    void SetFooter(std::string footer);

    // Lays the dialog over a fresh copy of its parent when drawn active.
    void Draw(bool active) override;

    // Where the dialog's items go; null when the body has no room for it.
    Window* Content() const { return _content; }
    Window* TitleBand() const { return _titleBand; }
    Window* Body() const { return _body; }
    TextArea* TitleArea() const { return _title; }
    TextArea* TextPart() const { return _text; }
    TextArea* FooterArea() const { return _footer; }

protected:
    // Reads keys until `key`; every other key is ignored.
    void AwaitKey(int key);
    // Reads keys until `yes` (true) or Esc (false); every other key is ignored.
    bool AwaitChoice(int yes);

    Window* _titleBand;
    Window* _body;
    TextArea* _title;
    TextArea* _text;
    TextArea* _footer;
    Window* _content = nullptr;
};

}  // namespace Tolm

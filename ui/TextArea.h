#pragma once
// A window that shows a markup string (colour, alignment and placeholder
// tags) laid out to its width and cut at its height.
#include <functional>
#include <map>
#include <string>

#include "frame/Window.h"
#include "ui/Markup.h"

namespace Tolm {

class TextArea : public Window {
public:
    // A child of `parent` at (x, y); its background is always the parent's,
    // its foreground `foreground` (-1: the parent's too).
    TextArea(Window* parent, int x, int y, int width, int height, int foreground = -1);

    // Replace the markup and redraw at once.
    void SetText(std::string text);
    const std::string& Text() const { return _text; }

    void Draw(bool active) override;

    // The layout pass over the current text.
    std::string LaidOut() const;

    // Replace (or add) the function behind a placeholder name.
    void SetPlaceholder(const std::string& name, std::function<std::string()> function);

private:
    void Render();

    std::string _text;
    Markup::ColorTable _colors;
    std::map<std::string, std::function<std::string()>, std::less<>> _placeholders;
};

}  // namespace Tolm

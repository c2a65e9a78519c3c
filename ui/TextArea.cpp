#include "ui/TextArea.h"

#include "frame/Terminal.h"
#include "ui/HostInfo.h"

namespace Tolm {

TextArea::TextArea(Window* parent, int x, int y, int width, int height, int foreground)
    : Window(parent, x, y, width, height, Color::Inherit, foreground), _colors(Markup::DefaultColorTable())
{
    for (const auto& [name, function] : HostInfo::Placeholders()) _placeholders.emplace(name, function);
}

void TextArea::SetText(std::string text)
{
    _text = std::move(text);
    Render();
}

void TextArea::Draw(bool active)
{
    Window::Draw(active);
    Render();
}

std::string TextArea::LaidOut() const
{
    return Markup::Layout(_text, Width(), [this](std::string_view name) -> std::optional<std::string> {
        auto it = _placeholders.find(name);
        if (it == _placeholders.end() || !it->second) return std::nullopt;
        return it->second();
    });
}

void TextArea::SetPlaceholder(const std::string& name, std::function<std::string()> function)
{
    _placeholders[name] = std::move(function);
}

void TextArea::Render()
{
    WINDOW* win = CursesWindow();
    if (!win) return;
    Erase();
    const bool active = IsActive();
    for (const auto& run : Markup::ColorRuns(LaidOut(), Width(), Height(), Background(), Foreground(), _colors)) {
        // Drawn dimmed, every run keeps the window's own (dimmed) colours.
        SetAttr(win, active ? ColorAttr(run.background, run.foreground) : Attr{});
        mvwaddnstr(win, run.y, run.x, run.text.data(), static_cast<int>(run.text.size()));
    }
    SetAttr(win, Attr{});
    Push();
}

}  // namespace Tolm

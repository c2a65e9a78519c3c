#pragma once
// The menu helper of the two-pane menu screens: a table of entries, each with
// its catalogue text, help pane, enable rule, footer and what Enter opens,
// shown in a RootWindow's panes. A menu screen owns one and is left with its
// table and its pane functions (see GeneralWindow):
//
//     _menu.SetEntries(TextId::SystemCustomization, {
//         {TextId::ConfigurePassword, [this] { return PasswordPane(); }, {},
//          Fixed(FOOTER_MENU_CHANGE), [this] { return ChangePassword(); }},
//         MenuEntry::Spacer(),
//         ...});
//     Execute: _menu.ShowSelection(), then per key: Esc ends, otherwise
//     _menu.HandleKey(key), then the screen's own keys.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/TextId.h"

namespace Tolm {

class LabelItem;
class RootWindow;

using MenuText = std::function<std::string()>;

// A fixed text as a MenuText (footers that do not change).
MenuText Fixed(std::string text);

struct MenuEntry {
    MenuEntry() = default;
    MenuEntry(TextId text, MenuText pane, std::function<bool()> enabled, MenuText footer,
              std::function<int()> open, MenuText title = {})
        : text(text), pane(std::move(pane)), enabled(std::move(enabled)), footer(std::move(footer)),
          open(std::move(open)), title(std::move(title))
    {
    }

    TextId text = TextId::MenuSpacer;  // the row, and the right pane's title
    MenuText pane;                     // right pane's text; none: empty
    std::function<bool()> enabled;     // none: always
    MenuText footer;                   // right pane's footer; none: empty
    std::function<int()> open;         // what Enter opens; none: nothing
    MenuText title;                    // a title other than `text`; none: `text`
    MenuText label;                    // a row (markup) other than `text`, re-read by Show; none: `text`
    bool selectable = true;

    // An empty line between groups of entries: never highlighted.
    static MenuEntry Spacer();
};

class MenuTable {
public:
    explicit MenuTable(RootWindow& screen);
    ~MenuTable();
    MenuTable(const MenuTable&) = delete;
    MenuTable& operator=(const MenuTable&) = delete;

    // Fill the left pane with the entries under the title `title`; the
    // first enabled entry is highlighted.
    void SetEntries(TextId title, std::vector<MenuEntry> entries);
    // Replace one entry's row text (for entries whose label follows state).
    void SetLabel(int index, TextId text);

    // Null on a spacer or when nothing is highlighted.
    const MenuEntry* Selected() const;
    int SelectedIndex() const;

    // Re-evaluate the enable rules (a highlight on an entry that went
    // disabled moves on) and redraw both panes. Host state is the screen's:
    // this asks nothing of the host itself.
    void Show();
    // Right title, pane and footer of the highlighted entry.
    void ShowSelection();
    // The right pane's footer of the highlighted entry.
    void WriteFooter();

    // Up and Down move the highlight; Enter opens the highlighted entry when
    // it is enabled, then redraws. True when the key was one of these.
    bool HandleKey(int key);
    // The result of the last entry Enter opened.
    int LastResult() const { return _lastResult; }

private:
    bool IsEnabled(const MenuEntry& entry) const;
    std::string RowText(const MenuEntry& entry) const;

    RootWindow& _screen;
    TextId _title = TextId::MenuSpacer;
    std::vector<MenuEntry> _entries;
    std::vector<std::unique_ptr<LabelItem>> _rows;
    int _lastResult = 0;
};

}  // namespace Tolm

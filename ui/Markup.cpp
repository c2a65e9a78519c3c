#include "ui/Markup.h"

#include <algorithm>
#include <cstdlib>

namespace Tolm::Markup {

namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Newline is handled on its own: it ends a line rather than offering a break.
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

enum class Align { Left, Right, Center, Padding };

class Layouter {
public:
    Layouter(int width, const PlaceholderLookup& placeholders)
        : width_(std::max(width, 0)), remaining_(width_), placeholders_(placeholders) {}

    std::string Run(std::string_view text) {
        bool inTag = false;
        std::string tag;
        for (char c : text) {
            if (inTag) {
                if (c == '}') {
                    inTag = false;
                    Tag(tag);
                } else {
                    tag += c;
                }
            } else if (c == '{') {
                inTag = true;
                tag.clear();
            } else {
                Text(c);
            }
        }
        // An unterminated tag at the end is dropped.
        return std::move(out_);
    }

private:
    void NewLine() {
        remaining_ = width_;
        lastBlank_ = npos;
        sinceBlank_ = 0;
        lineStart_ = out_.size();
    }

    bool Dropping() const { return mode_ == Align::Padding && budget_ <= 0; }

    // Appends one visible character and accounts for its column.
    void Put(char c) {
        out_ += c;
        ++sinceBlank_;
        --remaining_;
        --budget_;
    }

    // A padded field that has used up its columns swallows the rest of its
    // text; dropped characters take no room on the line.
    bool Drop() {
        dropped_ = Dropping();
        if (dropped_) --budget_;
        return dropped_;
    }

    // Returns false for bytes that take no column (handled here).
    bool Special(char c) {
        if (c == '\n') {
            out_ += '\n';
            NewLine();
            return true;
        }
        if (IsContinuation(c)) {
            // The rest of a multi-byte character follows its lead byte.
            if (!dropped_) out_ += c;
            return true;
        }
        return false;
    }

    void NoteBlank(char c) {
        if (IsBlank(c)) {
            lastBlank_ = out_.size();
            sinceBlank_ = 0;
        }
    }

    void Text(char c) {
        if (Special(c) || Drop()) return;
        const bool blank = IsBlank(c);
        if (remaining_ > 0) {
            NoteBlank(c);
            Put(c);
            return;
        }
        if (blank || lastBlank_ == npos || lastBlank_ >= out_.size()) {
            // Hard break at the edge; a blank that falls on it becomes the break.
            out_ += '\n';
            NewLine();
        } else {
            // Move the word in progress to the next line, keeping the finished
            // line aligned by padding in front of its aligned text.
            std::size_t at = lastBlank_;
            const int moved = sinceBlank_;
            out_[at] = '\n';
            const int pad = mode_ == Align::Right ? moved : mode_ == Align::Center ? moved / 2 : 0;
            if (pad > 0 && lineStart_ <= at) {
                out_.insert(lineStart_, static_cast<std::size_t>(pad), ' ');
                at += static_cast<std::size_t>(pad);
            }
            lastBlank_ = npos;
            lineStart_ = at + 1;
            remaining_ = std::min(width_, width_ + 1 - moved);
        }
        if (!blank && remaining_ > 0) Put(c);
    }

    // Placeholder text never breaks inside a word: a full line just ends.
    void PlaceholderText(char c) {
        if (Special(c) || Drop()) return;
        if (remaining_ <= 0) {
            out_ += '\n';
            NewLine();
        }
        if (remaining_ > 0) Put(c);
    }

    void Tag(const std::string& tag) {
        if (tag.empty()) return;
        const auto colon = tag.find(':');
        const std::string_view name = std::string_view(tag).substr(0, colon);
        const std::string_view value =
            colon == std::string::npos ? std::string_view() : std::string_view(tag).substr(colon + 1);

        if (name == "align") {
            OpenAlign(value);
            return;
        }
        if (name == "/align") {
            CloseAlign();
            return;
        }
        if (placeholders_) {
            if (auto text = placeholders_(tag)) {
                for (char c : *text) PlaceholderText(c);
                return;
            }
        }
        out_ += '{';
        out_ += tag;
        out_ += '}';
    }

    void OpenAlign(std::string_view value) {
        if (mode_ != Align::Left) return;
        constexpr std::string_view padding = "padding:";
        if (value == "right") {
            mode_ = Align::Right;
        } else if (value == "center") {
            mode_ = Align::Center;
        } else if (value.substr(0, padding.size()) == padding) {
            mode_ = Align::Padding;
            budget_ = std::atoi(std::string(value.substr(padding.size())).c_str());
        } else {
            return;
        }
        lineStart_ = out_.size();
    }

    void CloseAlign() {
        switch (mode_) {
            case Align::Right:
            case Align::Center: {
                const int pad = mode_ == Align::Right ? remaining_ : remaining_ / 2;
                if (pad > 0) out_.insert(lineStart_, static_cast<std::size_t>(pad), ' ');
                // The line counts as full: whatever follows starts a new one.
                remaining_ = 0;
                lastBlank_ = npos;
                break;
            }
            case Align::Padding: {
                const int fill = std::min(budget_, remaining_);
                if (fill > 0) out_.append(static_cast<std::size_t>(fill), ' ');
                const int unused = std::max(budget_, 0);
                remaining_ = remaining_ > unused ? remaining_ - unused : 0;
                break;
            }
            case Align::Left:
                break;
        }
        mode_ = Align::Left;
        budget_ = 0;
        dropped_ = false;
    }

    static constexpr std::size_t npos = std::string::npos;

    int width_;
    int remaining_;
    const PlaceholderLookup& placeholders_;
    std::string out_;
    std::size_t lastBlank_ = npos;
    int sinceBlank_ = 0;
    std::size_t lineStart_ = 0;
    Align mode_ = Align::Left;
    int budget_ = 0;
    bool dropped_ = false;
};

}  // namespace

std::string Layout(std::string_view text, int width, const PlaceholderLookup& placeholders) {
    return Layouter(width, placeholders).Run(text);
}

ColorTable DefaultColorTable() {
    return {{"white", 7}, {"black", 0}, {"dark-grey", 6}, {"light-grey", 2}, {"yellow", 3}, {"red", 1}};
}

int LookupColor(ColorTable& table, std::string_view name) {
    auto it = table.find(name);
    if (it == table.end()) it = table.emplace(std::string(name), 0).first;
    return it->second;
}

namespace {
// Stands for a literal "{" until the colour pass puts the brace back: the
// layout takes it for one ordinary column, and no tag can start with it.
constexpr char LITERAL_BRACE = '\x01';
}  // namespace

std::string Literal(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c == '{') c = LITERAL_BRACE;
        else if (c == LITERAL_BRACE) c = ' ';
    }
    return out;
}

int Columns(std::string_view text) {
    return static_cast<int>(std::count_if(text.begin(), text.end(), [](char c) { return !IsContinuation(c); }));
}

std::string_view CutToColumns(std::string_view text, int columns) {
    if (columns <= 0) return {};
    int used = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsContinuation(text[i])) continue;
        if (used == columns) return text.substr(0, i);
        ++used;
    }
    return text;
}

std::vector<Run> ColorRuns(std::string_view laidOut, int width, int height, int background,
                           int foreground, ColorTable& colors) {
    std::vector<Run> runs;
    std::string run;
    int x = 0;
    int y = 0;
    int bg = background;
    int fg = foreground;
    bool colorOpen = false;
    bool bgOpen = false;

    auto emit = [&] {
        if (y < height && x < width && !run.empty()) {
            std::string_view shown = CutToColumns(run, width - x);
            if (!shown.empty()) runs.push_back(Run{x, y, std::string(shown), bg, fg});
        }
    };

    bool inTag = false;
    std::string tag;
    for (char c : laidOut) {
        if (y >= height) break;
        if (inTag) {
            if (c != '}') {
                tag += c;
                continue;
            }
            inTag = false;
            const auto colon = tag.find(':');
            const std::string_view name = std::string_view(tag).substr(0, colon);
            const std::string_view value =
                colon == std::string::npos ? std::string_view() : std::string_view(tag).substr(colon + 1);
            if (name != "color" && name != "/color" && name != "bgcolor" && name != "/bgcolor") continue;
            emit();
            x += Columns(run);
            run.clear();
            if (name == "color") {
                fg = LookupColor(colors, value);
                colorOpen = true;
            } else if (name == "bgcolor") {
                bg = LookupColor(colors, value);
                bgOpen = true;
            } else if (name == "/color") {
                if (colorOpen) fg = foreground;
                colorOpen = false;
            } else {
                if (bgOpen) bg = background;
                bgOpen = false;
            }
        } else if (c == '{') {
            inTag = true;
            tag.clear();
        } else if (c == '\n') {
            emit();
            run.clear();
            x = 0;
            ++y;
        } else {
            run += c == LITERAL_BRACE ? '{' : c;
        }
    }
    emit();
    return runs;
}

}  // namespace Tolm::Markup

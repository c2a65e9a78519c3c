#include "ui/RootWindow.h"

#include "frame/Terminal.h"
#include "host/Log.h"
#include "ui/ItemList.h"
#include "ui/TextArea.h"

namespace Tolm {

RootWindow::RootWindow(Frame* parent)
    : Frame(parent, 0, 0, COLS, LINES, Color::Black, Color::White)
{
    Log::Write(LOG_INFO, "COLS=%d, LINES=%d", COLS, LINES);
    const int half = COLS / 2;
    _mainArea = CreateChild(0, 0, COLS, LINES - 1, Color::LightGrey, Color::White);
    _mainArea->Box();
    _mainArea->HorizontalLine(1, 2, COLS - 2);
    _bottomLine = CreateChild(0, LINES - 1, COLS, 1, Color::Black, Color::LightGrey);
    _leftPane = _mainArea->CreateChild(0, 0, half, LINES - 1, Color::Yellow, Color::White);
    _rightPane = _mainArea->CreateChild(half, 0, half, LINES - 1, Color::DarkGrey, Color::White);
    _leftContent = _leftPane->AddChild<ItemList>(2, 4, half - 2, LINES - 6);
    _rightContent = _rightPane->AddChild<TextArea>(2, 4, half - 4, LINES - 6, Color::LightGrey);
    _leftTitle = _leftPane->AddChild<TextArea>(3, 1, half - 6, 1, Color::Black);
    _rightTitle = _rightPane->AddChild<TextArea>(2, 1, half - 6, 1, Color::White);
    _leftFooter = _leftPane->AddChild<TextArea>(2, LINES - 3, half - 3, 1, Color::Black);
    _rightFooter = _rightPane->AddChild<TextArea>(1, LINES - 3, half - 3, 1, Color::White);
}

}  // namespace Tolm

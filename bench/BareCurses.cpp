// The smallest curses program that paints a coloured full screen and waits
// for a key: the yardstick for tolm's start-up time and memory.
#include <curses.h>

#include <clocale>

int main()
{
    std::setlocale(LC_ALL, "");
    initscr();
    start_color();
    cbreak();
    noecho();
    keypad(stdscr, TRUE);
    init_pair(1, COLOR_WHITE, COLOR_BLUE);
    bkgd(COLOR_PAIR(1));
    mvaddstr(LINES / 2, (COLS - 11) / 2, "bare curses");
    refresh();
    getch();
    endwin();
    return 0;
}

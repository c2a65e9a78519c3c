#pragma once
// The six colour numbers every window and text run is drawn with. They are the
// standard curses colour numbers; InitColors redefines most of them.

namespace Tolm::Color {

inline constexpr int Black = 0;
inline constexpr int Red = 1;
inline constexpr int LightGrey = 2;
inline constexpr int Yellow = 3;
inline constexpr int DarkGrey = 6;
inline constexpr int White = 7;

// A child window given this colour takes its parent's.
inline constexpr int Inherit = -1;

// In the order pairs are defined: backgrounds, and for each the foregrounds.
inline constexpr int All[6] = {White, Black, Yellow, LightGrey, DarkGrey, Red};

}  // namespace Tolm::Color

#pragma once
// Key codes as Frame::GetKey returns them: curses key codes for special keys,
// the character code for everything else.

namespace Tolm::Key {

inline constexpr int Tab = 9;
inline constexpr int Enter = 10;
inline constexpr int Escape = 27;
inline constexpr int Down = 258;
inline constexpr int Up = 259;
inline constexpr int Left = 260;
inline constexpr int Right = 261;
inline constexpr int Home = 262;
inline constexpr int Backspace = 263;
inline constexpr int F1 = 265;
inline constexpr int F2 = 266;
inline constexpr int F3 = 267;
inline constexpr int F4 = 268;
inline constexpr int F5 = 269;
inline constexpr int F6 = 270;
inline constexpr int F7 = 271;
inline constexpr int F8 = 272;
inline constexpr int F9 = 273;
inline constexpr int F10 = 274;
inline constexpr int F11 = 275;
inline constexpr int F12 = 276;
inline constexpr int Delete = 330;
inline constexpr int Insert = 331;
inline constexpr int PageDown = 338;
inline constexpr int PageUp = 339;
inline constexpr int End = 360;
inline constexpr int Resize = 410;

// Function key n (1 to 12).
constexpr int F(int n) { return F1 + n - 1; }

}  // namespace Tolm::Key

// The window, the keyboard and the mouse in the manner that the game is written for, on top of GLFW 3: one window,
// events polled inside SwapBuffers, press and release only, a wheel with an absolute position, a hidden cursor that
// can be put back, and key codes of one flat table. All calls on the main thread, but KeyIsDown, MouseIsDown and
// ClockNow, which any thread may call.
#pragma once

#include "core/types.h"

// Key codes: letters and digits are their upper-case ASCII codes.
enum Key : int {
  KeySpecial = 256, KeyEsc = 257, KeyF1 = 258, KeyF2 = 259, KeyF3 = 260, KeyF4 = 261, KeyF5 = 262, KeyF6 = 263,
  KeyF7 = 264, KeyF8 = 265, KeyF9 = 266, KeyF10 = 267, KeyF11 = 268, KeyF12 = 269, KeyF25 = 282,
  KeyUp = 283, KeyDown = 284, KeyLeft = 285, KeyRight = 286,
  KeyLeftShift = 287, KeyRightShift = 288, KeyLeftControl = 289, KeyRightControl = 290, KeyLeftAlt = 291,
  KeyRightAlt = 292, KeyTab = 293, KeyEnter = 294, KeyBackspace = 295, KeyInsert = 296, KeyDelete = 297,
  KeyPageUp = 298, KeyPageDown = 299, KeyHome = 300, KeyEnd = 301,
  KeyKeypad0 = 302,  // to keypad 9 = 311, then divide, multiply, subtract, add, decimal, equal, enter (318)
  KeyNumLock = 319, KeyCapsLock = 320, KeyScrollLock = 321, KeyPause = 322, KeyLeftSuper = 323, KeyRightSuper = 324,
  KeyMenu = 325, KeyLast = 325
};

// What a window is asked for. -1 in a hint: not set.
struct WindowRequest {
  int width = 1024, height = 768;
  int redBits = 8, greenBits = 8, blueBits = 8, alphaBits = 8, depthBits = 24;
  bool fullScreen = false;
  int samples = 0;
  int versionMajor = 3, versionMinor = 1;
  enum class Profile { NotSet, Any, Core, Compatibility } profile = Profile::NotSet;
  int forwardCompatible = -1;
};

// What became of it, as read back from the window and its context.
struct WindowParameters {
  bool opened = false, active = false, iconified = false;
  int samples = 0;
  int versionMajor = 0, versionMinor = 0;
  bool forwardCompatible = false, coreProfile = false;
};

bool InitPlatform();                                 // Once. False when the window system can't be reached.
void DesktopSize(int *width, int *height);           // Size of the primary monitor's mode; unchanged without one.
bool OpenWindow(const WindowRequest &request);       // The one window, its context current; sizes are held in 1 to 8192.
void CloseWindow();                                  // Closes it when one is open.
WindowParameters GetWindowParameters();              // Any thread for active and iconified; the rest is constant.
void SetWindowTitle(const char *title);
void SetSwapInterval(int interval);
void SwapBuffers();                                  // Swaps, then polls the events: callbacks run inside.
double ClockNow();                                   // Seconds since InitPlatform, monotonic; 0 before.
bool KeyIsDown(int key);                             // By the events so far. Any thread.
bool MouseIsDown(int button);                        // Any thread.
void SetKeyState(int key, bool down);                // What the two above answer, without an event: for tests. Any thread.
void SetMouseState(int button, bool down);
void SetMousePosition(int x, int y);                 // Window coordinates; no event is reported for it. Needs the focus.
// Hidden: one position a round of events, the last one. Shown: every motion is reported as it comes.
void ShowMouseCursor(bool shown);
void SetMouseWheel(int position);                    // Parts of a notch that were not counted yet are kept.
int GetMouseWheel();

// Callbacks. action: 1 press, 0 release; held keys don't repeat.
void SetCloseCallback(int (*callback)());            // Result 0: the window stays open.
void SetSizeCallback(void (*callback)(int width, int height));  // Called at once with the present size.
void SetKeyCallback(void (*callback)(int key, int action));
void SetCharCallback(void (*callback)(int character, int action));  // Printable; 0 when the key that typed it goes up.
void SetMouseButtonCallback(void (*callback)(int button, int action));
void SetMousePositionCallback(void (*callback)(int x, int y));
void SetMouseWheelCallback(void (*callback)(int position));

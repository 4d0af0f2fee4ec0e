// The window, the keyboard and the mouse on top of GLFW 3.
//
// The pointer while it is hidden: the game puts it back to the middle of the window after each frame and reads movement
// as the distance from there. So the place is asked for once, when the events have been polled, and compared with the
// place where the pointer was put. Motion events are not looked at then: several may wait, each with its way from the
// middle, and GLFW drops one that leads to where the pointer was put. While the pointer is shown every motion event is
// passed on as well, so that a click finds the pointer where it was clicked; asking finds the one that was dropped.
#include "platform/window.h"

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>

#include "core/log.h"
#include "platform/keys.h"

constexpr int Scancodes = 512;
constexpr int MaxWindowEdge = 8192;  // drivers crash on windows that are far larger than any screen
constexpr int MouseButtons = GLFW_MOUSE_BUTTON_LAST + 1;

namespace {

struct HeldScancode {
  bool down = false;
  int character = 0;  // what its press typed; 0 is nothing
};

struct WindowCallbacks {
  int (*close)() = nullptr;
  void (*size)(int, int) = nullptr;
  void (*key)(int, int) = nullptr;
  void (*character)(int, int) = nullptr;
  void (*button)(int, int) = nullptr;
  void (*position)(int, int) = nullptr;
  void (*wheel)(int) = nullptr;
};

}  // namespace

// Written by the main thread, read by any.
static std::atomic<bool> PlatformUp, WindowActive, WindowIconified;
static std::atomic<bool> KeysDown[KeyLast + 1], ButtonsDown[MouseButtons];

// Main thread only. Opened is constant while the window is open.
static GLFWwindow *Window = nullptr;
static WindowParameters Opened;
static WindowCallbacks Callbacks;
static HeldScancode Held[Scancodes];
static HeldScancode *Typing = nullptr;  // the press that characters belong to now
static bool KeyRepeats = false;         // the last key event was a repeat: its characters are dropped
static bool CursorShown = true;
static int PointerX = 0, PointerY = 0;  // where the pointer was last told to be, or put
static int WheelPosition = 0;
static double WheelRest = 0;            // the part of a notch that hasn't been counted yet

static void OnGlfwError(int, const char *description) { LogText("GLFW:", description); }

static void OnGlfwKey(GLFWwindow *, int glfwKey, int scancode, int action, int) {
  HeldScancode *held = scancode >= 0 && scancode < Scancodes ? &Held[scancode] : nullptr;
  const bool down = action != GLFW_RELEASE;
  KeyRepeats = down && (action == GLFW_REPEAT || (held != nullptr && held->down));
  if (KeyRepeats) return;
  Typing = down ? held : nullptr;
  const int typed = held != nullptr ? held->character : 0;
  if (held != nullptr) *held = {down, 0};
  const int key = KeyFromGlfw3(glfwKey);
  if (key >= 0 && KeysDown[key].exchange(down) != down && Callbacks.key != nullptr) Callbacks.key(key, down ? 1 : 0);
  if (!down && typed != 0 && Callbacks.character != nullptr) Callbacks.character(typed, 0);
}

static void OnGlfwChar(GLFWwindow *, unsigned character) {
  if (KeyRepeats) return;
  const int code = static_cast<int>(character);
  if (Typing != nullptr) Typing->character = code;
  if (Callbacks.character != nullptr) Callbacks.character(code, 1);
}

static void ReportPointer(double x, double y) {
  const int newX = static_cast<int>(std::floor(x)), newY = static_cast<int>(std::floor(y));
  if (newX == PointerX && newY == PointerY) return;
  PointerX = newX;
  PointerY = newY;
  if (Callbacks.position != nullptr) Callbacks.position(newX, newY);
}

static void OnGlfwPointer(GLFWwindow *, double x, double y) {
  if (CursorShown) ReportPointer(x, y);
}

static void OnGlfwButton(GLFWwindow *, int button, int action, int) {
  if (button < 0 || button >= MouseButtons) return;
  const bool down = action != GLFW_RELEASE;
  // A press acts before it counts as held, or another thread would repeat it before it has said when to.
  if (!down) ButtonsDown[button] = false;
  if (Callbacks.button != nullptr) Callbacks.button(button, down ? 1 : 0);
  if (down) ButtonsDown[button] = true;
}

static void OnGlfwScroll(GLFWwindow *, double, double notches) {
  WheelRest += notches;
  const double whole = std::trunc(WheelRest);
  if (whole == 0) return;
  WheelRest -= whole;
  WheelPosition += static_cast<int>(whole);
  if (Callbacks.wheel != nullptr) Callbacks.wheel(WheelPosition);
}

static void OnGlfwSize(GLFWwindow *, int width, int height) {
  if (Callbacks.size != nullptr) Callbacks.size(width, height);
}

static void OnGlfwClose(GLFWwindow *window) {
  if (Callbacks.close != nullptr && Callbacks.close() == 0) glfwSetWindowShouldClose(window, GLFW_FALSE);
}

// GLFW releases the keys that it knows after this; the others would never be released.
static void OnGlfwFocus(GLFWwindow *, int focused) {
  WindowActive = focused != 0;
  if (focused != 0) return;
  for (HeldScancode &held : Held) held.down = false;
}

static void OnGlfwIconify(GLFWwindow *, int iconified) { WindowIconified = iconified != 0; }

static void ApplyCursorMode() {
  if (Window != nullptr) glfwSetInputMode(Window, GLFW_CURSOR, CursorShown ? GLFW_CURSOR_NORMAL : GLFW_CURSOR_HIDDEN);
}

static void SetHints(const WindowRequest &r) {
  glfwDefaultWindowHints();
  glfwWindowHint(GLFW_RED_BITS, r.redBits);
  glfwWindowHint(GLFW_GREEN_BITS, r.greenBits);
  glfwWindowHint(GLFW_BLUE_BITS, r.blueBits);
  glfwWindowHint(GLFW_ALPHA_BITS, r.alphaBits);
  glfwWindowHint(GLFW_DEPTH_BITS, r.depthBits);
  glfwWindowHint(GLFW_STENCIL_BITS, 0);
  glfwWindowHint(GLFW_SAMPLES, r.samples);
  glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, r.versionMajor);
  glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, r.versionMinor);
  if (r.profile == WindowRequest::Profile::Core) glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
  if (r.profile == WindowRequest::Profile::Compatibility) glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_COMPAT_PROFILE);
  if (r.forwardCompatible >= 0) glfwWindowHint(GLFW_OPENGL_FORWARD_COMPAT, r.forwardCompatible);
}

static void ReadParameters(const WindowRequest &r) {
  Opened = {};
  Opened.opened = true;
  Opened.samples = r.samples;  // GLFW can't be asked what the window got
  Opened.versionMajor = glfwGetWindowAttrib(Window, GLFW_CONTEXT_VERSION_MAJOR);
  Opened.versionMinor = glfwGetWindowAttrib(Window, GLFW_CONTEXT_VERSION_MINOR);
  Opened.forwardCompatible = glfwGetWindowAttrib(Window, GLFW_OPENGL_FORWARD_COMPAT) == GLFW_TRUE;
  Opened.coreProfile = glfwGetWindowAttrib(Window, GLFW_OPENGL_PROFILE) == GLFW_OPENGL_CORE_PROFILE;
}

static void ConnectEvents() {
  glfwSetKeyCallback(Window, OnGlfwKey);
  glfwSetCharCallback(Window, OnGlfwChar);
  glfwSetCursorPosCallback(Window, OnGlfwPointer);
  glfwSetMouseButtonCallback(Window, OnGlfwButton);
  glfwSetScrollCallback(Window, OnGlfwScroll);
  glfwSetWindowSizeCallback(Window, OnGlfwSize);
  glfwSetWindowCloseCallback(Window, OnGlfwClose);
  glfwSetWindowFocusCallback(Window, OnGlfwFocus);
  glfwSetWindowIconifyCallback(Window, OnGlfwIconify);
}

bool InitPlatform() {
  if (PlatformUp) return true;
  glfwSetErrorCallback(OnGlfwError);
  PlatformUp = glfwInit() == GLFW_TRUE;
  if (PlatformUp) std::atexit(glfwTerminate);  // gives a full screen, and its screen saver, back on every way out
  return PlatformUp;
}

void DesktopSize(int *width, int *height) {
  GLFWmonitor *monitor = glfwGetPrimaryMonitor();
  const GLFWvidmode *mode = monitor != nullptr ? glfwGetVideoMode(monitor) : nullptr;
  if (mode == nullptr) return;
  *width = mode->width;
  *height = mode->height;
}

bool OpenWindow(const WindowRequest &request) {
  CloseWindow();
  SetHints(request);
  GLFWmonitor *monitor = request.fullScreen ? glfwGetPrimaryMonitor() : nullptr;
  const int width = std::clamp(request.width, 1, MaxWindowEdge), height = std::clamp(request.height, 1, MaxWindowEdge);
  Window = glfwCreateWindow(width, height, "", monitor, nullptr);
  if (Window == nullptr) return false;
  glfwMakeContextCurrent(Window);
  ReadParameters(request);
  // Without a window manager nothing tells that the window has the focus, so it counts as active until it loses it.
  WindowActive = true;
  WindowIconified = false;
  ConnectEvents();
  ApplyCursorMode();
  glfwFocusWindow(Window);
  return true;
}

void CloseWindow() {
  if (Window == nullptr) return;
  glfwDestroyWindow(Window);
  Window = nullptr;
  Opened = {};
  WindowActive = false;
  Typing = nullptr;
  for (HeldScancode &held : Held) held = {};
  for (std::atomic<bool> &down : KeysDown) down = false;
  for (std::atomic<bool> &down : ButtonsDown) down = false;
}

WindowParameters GetWindowParameters() {
  WindowParameters p = Opened;
  p.active = WindowActive;
  p.iconified = WindowIconified;
  return p;
}

void SetWindowTitle(const char *title) {
  if (Window != nullptr) glfwSetWindowTitle(Window, title);
}

void SetSwapInterval(int interval) {
  if (Window != nullptr) glfwSwapInterval(interval);
}

static void AskPointer() {
  double x = 0, y = 0;
  glfwGetCursorPos(Window, &x, &y);
  ReportPointer(x, y);
}

void SwapBuffers() {
  if (Window == nullptr) return;
  glfwSwapBuffers(Window);
  glfwPollEvents();
  if (glfwWindowShouldClose(Window) == GLFW_TRUE) return CloseWindow();
  if (glfwGetWindowAttrib(Window, GLFW_FOCUSED) == GLFW_TRUE) AskPointer();
}

double ClockNow() { return PlatformUp ? glfwGetTime() : 0; }

bool KeyIsDown(int key) { return key >= 0 && key <= KeyLast && KeysDown[key].load(std::memory_order_relaxed); }

bool MouseIsDown(int button) {
  return button >= 0 && button < MouseButtons && ButtonsDown[button].load(std::memory_order_relaxed);
}

void SetKeyState(int key, bool down) {
  if (key >= 0 && key <= KeyLast) KeysDown[key] = down;
}

void SetMouseState(int button, bool down) {
  if (button >= 0 && button < MouseButtons) ButtonsDown[button] = down;
}

void SetMousePosition(int x, int y) {
  if (Window == nullptr || glfwGetWindowAttrib(Window, GLFW_FOCUSED) != GLFW_TRUE) return;
  glfwSetCursorPos(Window, x, y);
  PointerX = x;
  PointerY = y;
}

void ShowMouseCursor(bool shown) {
  CursorShown = shown;
  ApplyCursorMode();
  if (shown || Window == nullptr) return;
  // Movement counts from here on: what happened before belongs to the menu.
  double x = 0, y = 0;
  glfwGetCursorPos(Window, &x, &y);
  PointerX = static_cast<int>(std::floor(x));
  PointerY = static_cast<int>(std::floor(y));
}

void SetMouseWheel(int position) { WheelPosition = position; }

int GetMouseWheel() { return WheelPosition; }

void SetCloseCallback(int (*callback)()) { Callbacks.close = callback; }

void SetSizeCallback(void (*callback)(int width, int height)) {
  Callbacks.size = callback;
  if (Window == nullptr || callback == nullptr) return;
  int width = 0, height = 0;
  glfwGetWindowSize(Window, &width, &height);
  callback(width, height);
}

void SetKeyCallback(void (*callback)(int key, int action)) { Callbacks.key = callback; }
void SetCharCallback(void (*callback)(int character, int action)) { Callbacks.character = callback; }
void SetMouseButtonCallback(void (*callback)(int button, int action)) { Callbacks.button = callback; }
void SetMousePositionCallback(void (*callback)(int x, int y)) { Callbacks.position = callback; }
void SetMouseWheelCallback(void (*callback)(int position)) { Callbacks.wheel = callback; }

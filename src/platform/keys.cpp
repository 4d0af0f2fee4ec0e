// From the key codes of GLFW 3 to the game's own, by runs of keys that lie side by side in both tables.
#include "platform/keys.h"

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>

#include "platform/window.h"

namespace {

struct KeyRun {
  int first, last;  // GLFW 3
  int code;         // the game's code of the first
};

}  // namespace

static constexpr KeyRun Runs[] = {
    {GLFW_KEY_SPACE, GLFW_KEY_SPACE, ' '},
    {GLFW_KEY_APOSTROPHE, GLFW_KEY_APOSTROPHE, '\''},
    {GLFW_KEY_COMMA, GLFW_KEY_9, ','},
    {GLFW_KEY_SEMICOLON, GLFW_KEY_SEMICOLON, ';'},
    {GLFW_KEY_EQUAL, GLFW_KEY_EQUAL, '='},
    {GLFW_KEY_A, GLFW_KEY_RIGHT_BRACKET, 'A'},
    {GLFW_KEY_GRAVE_ACCENT, GLFW_KEY_GRAVE_ACCENT, '`'},
    {GLFW_KEY_ESCAPE, GLFW_KEY_ESCAPE, KeyEsc},
    {GLFW_KEY_ENTER, GLFW_KEY_ENTER, KeyEnter},
    {GLFW_KEY_TAB, GLFW_KEY_TAB, KeyTab},
    {GLFW_KEY_BACKSPACE, GLFW_KEY_DELETE, KeyBackspace},
    {GLFW_KEY_RIGHT, GLFW_KEY_RIGHT, KeyRight},
    {GLFW_KEY_LEFT, GLFW_KEY_LEFT, KeyLeft},
    {GLFW_KEY_DOWN, GLFW_KEY_DOWN, KeyDown},
    {GLFW_KEY_UP, GLFW_KEY_UP, KeyUp},
    {GLFW_KEY_PAGE_UP, GLFW_KEY_END, KeyPageUp},
    {GLFW_KEY_CAPS_LOCK, GLFW_KEY_SCROLL_LOCK, KeyCapsLock},
    {GLFW_KEY_NUM_LOCK, GLFW_KEY_NUM_LOCK, KeyNumLock},
    {GLFW_KEY_PAUSE, GLFW_KEY_PAUSE, KeyPause},
    {GLFW_KEY_F1, GLFW_KEY_F25, KeyF1},
    {GLFW_KEY_KP_0, GLFW_KEY_KP_9, KeyKeypad0},
    {GLFW_KEY_KP_DECIMAL, GLFW_KEY_KP_DECIMAL, KeyKeypad0 + 14},
    {GLFW_KEY_KP_DIVIDE, GLFW_KEY_KP_ADD, KeyKeypad0 + 10},
    {GLFW_KEY_KP_ENTER, GLFW_KEY_KP_ENTER, KeyKeypad0 + 16},
    {GLFW_KEY_KP_EQUAL, GLFW_KEY_KP_EQUAL, KeyKeypad0 + 15},
    {GLFW_KEY_LEFT_SHIFT, GLFW_KEY_LEFT_SHIFT, KeyLeftShift},
    {GLFW_KEY_LEFT_CONTROL, GLFW_KEY_LEFT_CONTROL, KeyLeftControl},
    {GLFW_KEY_LEFT_ALT, GLFW_KEY_LEFT_ALT, KeyLeftAlt},
    {GLFW_KEY_LEFT_SUPER, GLFW_KEY_LEFT_SUPER, KeyLeftSuper},
    {GLFW_KEY_RIGHT_SHIFT, GLFW_KEY_RIGHT_SHIFT, KeyRightShift},
    {GLFW_KEY_RIGHT_CONTROL, GLFW_KEY_RIGHT_CONTROL, KeyRightControl},
    {GLFW_KEY_RIGHT_ALT, GLFW_KEY_RIGHT_ALT, KeyRightAlt},
    {GLFW_KEY_RIGHT_SUPER, GLFW_KEY_RIGHT_SUPER, KeyRightSuper},
    {GLFW_KEY_MENU, GLFW_KEY_MENU, KeyMenu},
};

int KeyFromGlfw3(int glfwKey) {
  for (const KeyRun &run : Runs)
    if (glfwKey >= run.first && glfwKey <= run.last) return run.code + (glfwKey - run.first);
  return -1;
}

// From the key codes of GLFW 3 to the game's own.
#pragma once

int KeyFromGlfw3(int glfwKey);  // -1 for a key that the game doesn't know.

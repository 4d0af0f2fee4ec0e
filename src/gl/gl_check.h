// The labelled OpenGL error check. Drawing thread.
#pragma once

int GlCheck(const char *label);  // 1 when no error was pending; logs one and gives 0 otherwise.

// The labelled OpenGL error check.
#include "gl/gl_check.h"

#include <GL/glew.h>

#include <string>

#include "core/log.h"

int GlCheck(const char *label) {
  const GLenum code = glGetError();
  if (code == GL_NO_ERROR) return 1;
  const GLubyte *known = gluErrorString(code);
  const std::string text = std::string(label) + ": " + (known != nullptr ? reinterpret_cast<const char *>(known) : "unknown");
  LogRaw((text + "\n").c_str(), ("WARN: " + text + " \n").c_str());
  return 0;
}

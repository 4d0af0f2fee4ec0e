// Colours on the screen, compared as a driver's rounding allows, and the log of the bring-up.
#pragma once

#include <GL/glew.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "content/options.h"
#include "core/log.h"
#include "gl/frame.h"
#include "gl/init.h"
#include "platform/window.h"
#include "render/image.h"
#include "support/installation.h"

namespace fs = std::filesystem;

struct Rgb {
  int red = 0, green = 0, blue = 0;
};

inline std::string Log() { return ReadText("errors.txt"); }
inline bool Logged(const std::string &line) { return Count(Log(), line + " \n") > 0; }

inline void ExpectColour(Rgb got, Rgb wanted, const std::string &where) {
  EXPECT_NEAR(got.red, wanted.red, 2) << where;
  EXPECT_NEAR(got.green, wanted.green, 2) << where;
  EXPECT_NEAR(got.blue, wanted.blue, 2) << where;
}

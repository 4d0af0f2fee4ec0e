// What a frame of menus or overlay costs the game itself. OpenGL is replaced by functions that only count, so that no
// driver's time is in a figure, and no window is needed. Target: at most 2 ms a frame, and no glyph sent on a still one.
// Run from the checkout's root.
#include <GL/glew.h>
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "gl/init.h"
#include "gui/paint.h"
#include "gui/screens.h"
#include "gui/tutorial.h"
#include "net/chat_log.h"
#include "render/matrix.h"
#include "render/view.h"

static long Calls;  // of OpenGL

extern "C" {
void GLAPIENTRY glBindTexture(GLenum, GLuint) { ++Calls; }
void GLAPIENTRY glDrawArrays(GLenum, GLint, GLsizei) { ++Calls; }
void GLAPIENTRY glGenTextures(GLsizei, GLuint *textures) { *textures = 1; }
void GLAPIENTRY glPixelStorei(GLenum, GLint) { ++Calls; }
void GLAPIENTRY glTexParameteri(GLenum, GLenum, GLint) { ++Calls; }
void GLAPIENTRY glTexImage2D(GLenum, GLint, GLint, GLsizei, GLsizei, GLint, GLenum, GLenum, const void *) { ++Calls; }
void GLAPIENTRY glTexSubImage2D(GLenum, GLint, GLint, GLint, GLsizei, GLsizei, GLenum, GLenum, const void *) { ++Calls; }
GLenum GLAPIENTRY glGetError(void) { return GL_NO_ERROR; }
}

static void StandInForTheDriver() {
  __glewActiveTexture = [](GLenum) { ++Calls; };
  __glewBufferData = [](GLenum, GLsizeiptr, const void *, GLenum) { ++Calls; };
  __glewGenerateMipmap = [](GLenum) { ++Calls; };
  __glewGetUniformLocation = [](GLuint, const GLchar *) { return 0; };
  __glewUniformMatrix4fv = [](GLint, GLsizei, GLboolean, const GLfloat *) { ++Calls; };
}

static void StartGui(int width, int height) {
  static const bool loaded = LoadMaterials() != 0 && LoadComponents() != 0;
  if (!loaded) std::exit(1);
  StandInForTheDriver();
  Options.ScreenWidth = static_cast<u16>(width);
  Options.ScreenHeight = static_cast<u16>(height);
  GuiScale = static_cast<float>(width) / 1920.0f;
  Ortho2D(Projection2D, width, height);
  InitGui();
}

// The first frame sends its glyphs, the second those of what lies under the pointer; all others find them.
static void CountFrames(benchmark::State &state, const Player &player) {
  for (int frame = 0; frame < 2; ++frame) DrawOverlay(player);
  const u32 uploads = GuiUploads;
  Calls = 0;
  for (auto _ : state) DrawOverlay(player);
  const double frames = static_cast<double>(state.iterations());
  state.counters["gl_calls"] = static_cast<double>(Calls) / frames;
  state.counters["glyphs_sent"] = GuiUploads - uploads;
}

// The overlay with everything on: chat being typed over ten lines, the tutorial, the panels, the frame rate.
static void BM_HudFrame(benchmark::State &state) {
  StartGui(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  uiMode = 2;
  LogSlowPieces = true;
  for (int i = 0; i < 16; ++i) AddChatLine("Somebody: a line of chat of an ordinary length, as people write it");
  StartTutorial();
  TutorialNext();
  Player player;
  player.heldBlock.component = 2;
  player.heldBlock.material = 5;
  CountFrames(state, player);
  EndTutorial();
}

// A block selector without a free line: three names to each of 18 lines, expanders, tabs, the scroll bar.
static void BM_SelectorFrame(benchmark::State &state) {
  StartGui(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  uiMode = 1;
  ClearElements();
  for (const int frame : {65, 66, 67, 58, 57, 59, 59, 21, 15, 17, 19}) AddElement(frame, 0, 0, 0, "Materials", nullptr, 0);
  for (int line = 0; line < 18; ++line) {
    AddElement(TypeExpandPlus, -690, 284 - 42 * line, 0, "Category", nullptr, 0);
    for (int item = 0; item < 3; ++item)
      AddElement(item == 1 ? TypeChosenRow : TypeRow, -570 + 290 * item, 284 - 42 * line, 0, "Alloy plating, edge", nullptr, 0);
  }
  CountFrames(state, {});
}

BENCHMARK(BM_HudFrame)->Args({1024, 576})->Args({2560, 1440})->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SelectorFrame)->Args({1024, 576})->Args({2560, 1440})->Unit(benchmark::kMicrosecond);

// Brings up the window and OpenGL.
#include "gl/init.h"

#include <GL/glew.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "content/options.h"
#include "core/log.h"
#include "gl/gl_check.h"
#include "gl/shaders.h"
#include "gl/star_box.h"
#include "gl/window_ladder.h"
#include "platform/window.h"
#include "render/debris.h"
#include "render/matrix.h"
#include "render/parse.h"
#include "render/view.h"

constexpr int MinWidth = 640, MinHeight = 480;
constexpr double NearPlane = 0.1, FarPlane = 10000.0;

namespace {

struct LabelledHint {
  GLenum hint;
  const char *label;
};

}  // namespace
static constexpr LabelledHint FastHints[] = {
    {GL_PERSPECTIVE_CORRECTION_HINT, "glhint1"}, {GL_FRAGMENT_SHADER_DERIVATIVE_HINT, "glhint2"},
    {GL_CLIP_VOLUME_CLIPPING_HINT_EXT, "glhint3"}, {GL_GENERATE_MIPMAP_HINT, "glhint4"},
    {GL_LINE_SMOOTH_HINT, "glhint5"}, {GL_POINT_SMOOTH_HINT, "glhint6"},
    {GL_POLYGON_SMOOTH_HINT, "glhint7"}, {GL_TEXTURE_COMPRESSION_HINT, "glhint8"},
};

bool LegacyGlAllowed;
float GuiScale;
u16 ViewWidth, ViewHeight;

static bool OpenGameWindow() {
  LegacyGlAllowed = !Options.MesaGPU;
  WindowRequest request;
  request.samples = Options.AntiAliasing;
  request.fullScreen = Options.FullScreen;
  if (request.fullScreen) UseDesktopSize();
  request.width = Options.ScreenWidth;
  request.height = Options.ScreenHeight;
  i8 method = 0, modifier = 0;
  if (!OpenWindow(request)) return WindowLadder(&method, &modifier);
  DressWindow();
  return true;
}

static void JudgeContextKind(const WindowParameters &window) {
  if (LegacyGlAllowed && !window.forwardCompatible && !window.coreProfile) {
    LogInfo("Got compatibility mode");
    return;
  }
  LogWarn("We're in strict mode. Disabling old-style opengl calls");
  LegacyGlAllowed = false;
}

static void StartGlew() {
  glewExperimental = GL_TRUE;
  const GLenum result = glewInit();
  if (result != GLEW_OK) LogText("Glew Error:", reinterpret_cast<const char *>(glewGetErrorString(result)));
}

static void ReportSurface(const WindowParameters &window) {
  if (glDrawElementsInstanced == nullptr)
    LogError("We weren't able to grab full opengl access to glDrawElementsInstanced. We're probably going to crash and burn now.");
  GLint samples = 0;
  glGetIntegerv(GL_SAMPLES, &samples);
  LogVector("FSAA", Options.AntiAliasing, window.samples, samples);
  GlCheck("Early init");
}

// What stays as it is for the whole run. Front faces are the culled ones: the cube is wound for that.
static void SetFixedState() {
  glClearColor(0, 0, 0, 0);
  glClearDepth(1.0);
  GlCheck("Clear init");
  glEnable(GL_DEPTH_TEST);
  glDepthMask(GL_TRUE);
  glDepthFunc(GL_LEQUAL);
  glDepthRange(0, 1);
  glShadeModel(GL_FLAT);
  GlCheck("Opengl misc settings");
  if (Options.AntiAliasing != 0) glEnable(GL_MULTISAMPLE);
  GlCheck("Antialias init");
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  GlCheck("Blend init");
  glEnable(GL_CULL_FACE);
  glCullFace(GL_FRONT);
  glFrontFace(GL_CW);
  glPolygonMode(GL_BACK, GL_FILL);
  GlCheck("Cull init");
  for (const LabelledHint &h : FastHints) {
    glHint(h.hint, GL_FASTEST);
    GlCheck(h.label);
  }
  glDisable(GL_DITHER);
  GlCheck("DisableDither");
  glDisable(GL_SAMPLE_SHADING);
  GlCheck("DisableSampleShading");
}

static int CreatePrograms() {
  if (InitShaders() == 0) return LogError("Unable to initialize 3D shaders");
  GlCheck("PostInit3dShaders");
  if (Init2DShaders() == 0) return LogError("Unable to initialize 2D shaders");
  GlCheck("PostInit2dShaders");
  return 1;
}

int InitGraphics() {
  if (!InitPlatform()) return LogError("Failed to Initialize glfw");
  ViewWidth = Options.ScreenWidth;
  ViewHeight = Options.ScreenHeight;
  if (!OpenGameWindow()) return 0;
  const WindowParameters window = GetWindowParameters();
  JudgeContextKind(window);
  StartGlew();
  LogInt("glfw GL Major Version:", window.versionMajor);
  LogInt("glfw GL Minor Version:", window.versionMinor);
  if (CheckOpenGlVersion() == 0) return LogError("Absolutely unable to get an appropriate window. Sorry.");
  ReportSurface(window);
  SetFixedState();
  if (CreatePrograms() == 0 || LoadStarBox() == 0) return 0;
  InitDebris();
  InitPreview();
  GlCheck("Init");
  return 1;
}

int CheckOpenGlVersion() {
  return JudgeOpenGlVersion(reinterpret_cast<const char *>(glGetString(GL_VERSION)),
                            reinterpret_cast<const char *>(glGetString(GL_RENDERER)));
}

int JudgeOpenGlVersion(const char *version, const char *renderer) {
  if (version == nullptr) version = "0.0.0";
  if (renderer == nullptr) renderer = "Unknown Renderer - This may be a bad sign.";
  const char *dot = strchr(version, '.');
  const long major = strtol(version, nullptr, 10), minor = dot != nullptr ? strtol(dot + 1, nullptr, 10) : 0;
  LogText("OpenGL Version:", version);
  LogText("Graphics Card :", renderer);
  if (major == 0) {
    LogError("I have no idea what version of Opengl we're on. This is probably bad new. I'm going to try to run anyway, though. Good luck!");
    return 1;
  }
  if (major == 1 || major == 2 || (major == 3 && minor == 0))
    return LogError("Tarnvale requires at least opengl 3.1 to run. If this is NOT an integrated card, you may be able to update your opengl version by updating your drivers from ATI/AMD or Nvidia.");
  return 1;
}

void ResizeViewport(int width, int height) {
  // The size is kept in 16 bits.
  const int w = std::clamp(width, MinWidth, 65535), h = std::clamp(height, MinHeight, 65535);
  Options.GuiScaleX = width < MinWidth ? 0.33333334f : static_cast<float>(w) * 0.00052083336f;
  Options.GuiScaleY = height < MinHeight ? 0.44444445f : static_cast<float>(h) * 0.0009259259f;
  GuiScale = std::min(Options.GuiScaleX.load(), Options.GuiScaleY.load());
  Options.ScreenWidth = ViewWidth = static_cast<u16>(w);
  Options.ScreenHeight = ViewHeight = static_cast<u16>(h);
  const float aspect = static_cast<float>(w) / static_cast<float>(h), fov = Options.FOV;
  glViewport(0, 0, w, h);
  if (LegacyGlAllowed) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(fov, aspect, NearPlane, FarPlane);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
  }
  Perspective(ProjectionMatrix, fov, aspect, static_cast<float>(NearPlane), static_cast<float>(FarPlane));
  Ortho2D(Projection2D, w, h);
}

int CloseGraphics() { return 1; }

void UseDesktopSize() {
  int width = Options.ScreenWidth, height = Options.ScreenHeight;
  DesktopSize(&width, &height);
  Options.ScreenWidth = static_cast<u16>(width);
  Options.ScreenHeight = static_cast<u16>(height);
}

void DressWindow() {
  SetWindowTitle("Tarnvale");
  // A context that refuses the old-style stacks must not be asked for them.
  const WindowParameters window = GetWindowParameters();
  if (window.coreProfile || window.forwardCompatible) LegacyGlAllowed = false;
  SetSizeCallback(ResizeViewport);
  SetSwapInterval(0);
  ResizeViewport(ViewWidth, ViewHeight);
}

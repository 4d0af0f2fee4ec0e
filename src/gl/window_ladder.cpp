// The retry when the window does not open.
#include "gl/window_ladder.h"

#include "content/options.h"
#include "core/log.h"
#include "gl/init.h"
#include "platform/window.h"

using Profile = WindowRequest::Profile;

namespace {

struct LadderMethod {
  int minor;
  Profile profile;
  int forwardCompatible;  // -1: not set
  bool legacy;            // LegacyGlAllowed afterwards
};

struct LadderModifier {
  int red, green, blue, alpha, depth;
};

}  // namespace

constexpr int FirstMethod = -2;
static constexpr LadderMethod Methods[] = {
    {1, Profile::NotSet, -1, false},        // -2, as -1
    {1, Profile::NotSet, -1, false},        // -1
    {3, Profile::Compatibility, -1, true},  // 0
    {3, Profile::Any, -1, false},           {3, Profile::NotSet, 1, false},
    {3, Profile::Core, -1, false},          {3, Profile::Core, 1, false},
    {3, Profile::Compatibility, 0, true},   // 5
    {2, Profile::Compatibility, -1, true},  {2, Profile::Any, -1, false},
    {2, Profile::Core, -1, false},          {2, Profile::NotSet, 1, false},
    {2, Profile::Compatibility, 0, true},   // 10
    {2, Profile::Core, 1, false},           {1, Profile::Compatibility, 0, true},
    {1, Profile::Any, -1, false},           {1, Profile::Core, -1, false},
    {1, Profile::NotSet, 1, false},         // 15
    {1, Profile::Compatibility, 0, false},  {1, Profile::Core, 1, false},
};
constexpr int LastMethod = FirstMethod + static_cast<int>(sizeof Methods / sizeof Methods[0]) - 1;

static constexpr LadderModifier Modifiers[] = {
    {8, 8, 8, 8, 24}, {8, 8, 8, 8, 16}, {0, 0, 0, 0, 0}, {5, 6, 5, 8, 8}, {5, 6, 5, 5, 8}, {5, 6, 5, 5, 5},
};
constexpr int LastModifier = sizeof Modifiers / sizeof Modifiers[0] - 1;

static bool TryOne(int method, int modifier) {
  if (method == -2) LogInfo("Trying MacOSX window method");
  if (method <= -1) LogInfo("Trying Intel GPU window method");
  const LadderMethod &m = Methods[method - FirstMethod];
  WindowRequest request;
  request.samples = modifier == 0 ? Options.AntiAliasing.load() : 0;
  request.versionMinor = m.minor;
  request.profile = m.profile;
  request.forwardCompatible = m.forwardCompatible;
  if (Options.FullScreen) {
    UseDesktopSize();
    request.fullScreen = true;
  } else {
    const LadderModifier &bits = Modifiers[modifier];
    request.redBits = bits.red;
    request.greenBits = bits.green;
    request.blueBits = bits.blue;
    request.alphaBits = bits.alpha;
    request.depthBits = bits.depth;
  }
  request.width = Options.ScreenWidth;
  request.height = Options.ScreenHeight;
  if (!OpenWindow(request)) return false;
  LegacyGlAllowed = m.legacy && !Options.MesaGPU;
  return true;
}

static void StartOver(i8 *method, i8 *modifier) {
  LogWarn("Encountered some problems making an opengl window. Trying some crazy stuff in a last ditch attempt.");
  *method = 0;
  ++*modifier;
  Options.FullScreen = false;
  Options.ScreenWidth = 640;
  Options.ScreenHeight = 480;
}

bool WindowLadder(i8 *method, i8 *modifier) {
  if (*method < FirstMethod) *method = FirstMethod;
  if (*modifier < 0) *modifier = 0;
  for (;; ++*method) {
    if (*method > LastMethod) StartOver(method, modifier);
    if (*modifier > LastModifier) break;
    if (!TryOne(*method, *modifier)) continue;
    LogInt("I got a window using method", *method);
    LogInt("The window uses modifier", *modifier);
    ++*method;
    DressWindow();
    return true;
  }
  LogError("I tried dozens of ways to get an opengl 3.1+ window, and was unsuccessful. Is your graphics card old?");
  return false;
}

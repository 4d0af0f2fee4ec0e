// What the overlay in play is made of, before anything is drawn.
#include "gui/hud.h"

#include <algorithm>
#include <cmath>

#include "content/components.h"
#include "content/materials.h"
#include "gui/elements.h"

constexpr double BlinkPeriod = 0.8, RateSpan = 0.5;  // seconds
constexpr u8 CrosshairOrange = 29, CrosshairRed = 30, CrosshairGreen = 31, CrosshairBlue = 32, CrosshairYellow = 33,
             CrosshairRainbow = 34;

namespace {

// How a panel slides: units a frame, and the place beyond which it is out of sight and may show something else.
struct Slide {
  int step, limit;
};

}  // namespace
constexpr Slide ComponentSlide{24, -250}, MaterialSlide{25, -250}, RotationSlide{10, -100};

// One frame of a panel: out while it shows something else than it should, then in. True when it is out of sight.
static bool SlidePanel(int *at, bool current, const Slide &slide) {
  if (current)
    *at = std::min(*at + slide.step, 0);
  else if (*at >= slide.limit)
    *at -= slide.step;
  return *at < slide.limit;
}

static void StepName(std::string *shown, int *at, const std::string &name, const Slide &slide) {
  const bool current = *shown == name;
  if (SlidePanel(at, current, slide) && !current) *shown = name;
}

void StepPanels(HudPanels *panels, const Block &shown) {
  const u16 component = std::min(static_cast<u16>(shown.component), ComponentCount);
  const u16 material = std::min<u16>(static_cast<u16>(shown.material), MaterialCount);
  const int rotation = shown.rotation <= 6 ? static_cast<int>(shown.rotation) : 0;
  StepName(&panels->component, &panels->componentAt, Components[component].name, ComponentSlide);
  StepName(&panels->material, &panels->materialAt, Materials[material].name, MaterialSlide);
  if (SlidePanel(&panels->rotationAt, panels->rotation == rotation, RotationSlide)) panels->rotation = rotation;
}

const ToolLook &LookOfTool(int tool) {
  static constexpr ToolLook looks[] = {
      {{TypeLampYellow, TypeLampGreen, TypeLampOff, TypeLampOff}, CrosshairOrange},
      {{TypeLampYellow, TypeLampOff, TypeLampOff, TypeLampOff}, CrosshairYellow},
      {{TypeLampOff, TypeLampGreen, TypeLampOff, TypeLampOff}, CrosshairGreen},
      {{TypeLampOff, TypeLampOff, TypeLampBlue, TypeLampOff}, CrosshairBlue},
      {{TypeLampOff, TypeLampOff, TypeLampOff, TypeLampRed}, CrosshairRed},
      {{TypeLampOff, TypeLampOff, TypeLampOff, TypeLampOff}, CrosshairRainbow},
  };
  return looks[tool >= 0 && tool < 5 ? tool : 5];
}

Block ShownBlock(int tool, const Block &held, const Block &aimedAt) {
  if (tool == 0 || tool == 2) return held;
  return tool == 3 ? aimedAt : Block{};
}

int ChatRows(const ChatLines &log, int most, std::string_view *rows) {
  int count = 0;
  for (const std::string_view line : log) {
    if (line.empty()) continue;
    for (size_t begin = (line.size() - 1) / HudLineWidth * HudLineWidth;; begin -= HudLineWidth) {
      if (count == most) return count;
      rows[count++] = line.substr(begin, HudLineWidth);
      if (begin == 0) break;
    }
  }
  return count;
}

char ChatCursor(double now, double blink) {
  if (now < blink) return '|';
  return std::fmod(now - blink, 2 * BlinkPeriod) < BlinkPeriod ? ' ' : '|';
}

void CountFrame(FrameRate *rate, double now) {
  ++rate->frames;
  const double span = now - rate->since;
  if (span < RateSpan) return;
  rate->perSecond = static_cast<int>(std::lround(rate->frames / span));
  rate->since = now;
  rate->frames = 0;
}

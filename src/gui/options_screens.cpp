// The option screens: five tabs of switches and sliders. Each control is one line of a table here; a click finds its line by
// the screen and by where the control stands.
#include <algorithm>
#include <cmath>

#include "audio/sound.h"
#include "content/options.h"
#include "gui/language.h"
#include "gui/mode.h"
#include "gui/screen_parts.h"
#include "gui/screens.h"

constexpr int ArrowReach = 305;              // design units from the middle of a slider to its arrows
constexpr int KnobStart = 186;               // from the middle of the track to the left end of the knob's way
constexpr double KnobWay = 370;
constexpr double Drift = 1e-5;               // what adding up steps may be off
constexpr int RestartNoteRow = 72;           // language row

namespace {

struct Switch {
  u8 screen;
  i16 x, y;
  u8 name;                                   // language row
  std::atomic<bool> *flag;
  bool greenWhenOff = false, afterRestart = false;
  void (*changed)() = nullptr;
};

enum class ValueLabel : u8 { Plain, Hundredths, Percent, AfterRestart };

struct Slider {
  u8 screen;
  i16 middle, y;                             // of the track
  u8 name;                                   // language row
  double (*get)();
  void (*set)(double);
  double lower, raise;                       // steps
  double lowest, highest;                    // it moves only from above and from below these
  double zeroBelow, most;                    // where a step down and a step up end
  ValueLabel label;
  double knobFrom, knobScale;                // the knob stands (value - knobFrom) x knobScale along its way
  void (*changed)() = nullptr;
};

}  // namespace

template <auto Value>
static double Get() {
  return static_cast<double>((Options.*Value).load());
}

template <auto Value>
static void Set(double value) {
  using Kept = typename std::remove_reference_t<decltype(Options.*Value)>::value_type;
  Options.*Value = static_cast<Kept>(value);
}

static void CachesFollowDetail() { Options.EightCache = Options.QuadCache = Options.LevelOfDetail.load(); }
static void RenewProjection() { ResizePending = true; }
static void RenewMusicGain() { SetMusicGain(); }
static void RenewSoundGain() {
  SetMusicGain();
  SetSlotGain(SlotBreathing, BreathingGain);  // the only other sound that never starts anew
}

using O = OptionValues;

static const Switch Switches[] = {
    {ScreenGraphics, 305, 350, 71, &Options.FullScreen, false, true},
    {ScreenGraphics, -305, 350, 74, &Options.HighQualityTransparency},
    {ScreenGraphics, -305, 250, 86, &Options.HighQualityFlashlight},
    {ScreenGraphics, 305, 250, 89, &Options.LevelOfDetail, false, false, CachesFollowDetail},
    {ScreenGame, -305, 350, 48, &Options.Crosshair},
    {ScreenGame, 305, 350, 27, &Options.ShowReticle},
    {ScreenMouse, -500, 350, 26, &Options.InvertMouse},
    {ScreenSound, 150, 300, 81, &Options.DisableSound, false, true},
    {ScreenOther, 0, 0, 83, &CollisionsOn, true},
    {ScreenOther, 0, 250, 84, &Options.ThreadedInput},
};

constexpr double Endless = 1e10;

// The samples' steps aren't even: see NextSamples.
static const Slider Sliders[] = {
    {ScreenGraphics, 0, 150, 54, Get<&O::AntiAliasing>, Set<&O::AntiAliasing>, 0, 0, 0, 4, 0, 16,
     ValueLabel::AfterRestart, 0, 92.5},
    {ScreenGraphics, 0, 50, 73, Get<&O::MaxVoxels>, Set<&O::MaxVoxels>, 50000, 50000, 100000, 2000000, 0, Endless,
     ValueLabel::Plain, 0, 0.000185},
    {ScreenGraphics, 0, -50, 76, Get<&O::CachePerFrame>, Set<&O::CachePerFrame>, 25, 25, 25, 200, 0, Endless,
     ValueLabel::Plain, 25, 2.1142857},
    {ScreenGraphics, 0, -150, 77, Get<&O::FOV>, Set<&O::FOV>, 5, 5, 64, 90, 0, Endless,
     ValueLabel::Plain, 60, 12.333334, RenewProjection},
    {ScreenGame, 0, 250, 28, Get<&O::InertialDampening>, Set<&O::InertialDampening>, 0.0999, 0.1, 0, 1, 0.11, 1,
     ValueLabel::Percent, 0, 370},
    {ScreenMouse, 300, 350, 80, Get<&O::MouseSensitivity>, Set<&O::MouseSensitivity>, 0.01, 0.01, 0.011, 0.49, 0, Endless,
     ValueLabel::Hundredths, 0, 740},
    {ScreenSound, 0, 100, 47, Get<&O::SoundVolume>, Set<&O::SoundVolume>, 0.01, 0.01, 0, 1, 0.005, 1,
     ValueLabel::Hundredths, 0, 370, RenewSoundGain},
    {ScreenSound, 0, -100, 46, Get<&O::MusicVolume>, Set<&O::MusicVolume>, 0.01, 0.01, 0, 1, 0.005, 1,
     ValueLabel::Hundredths, 0, 370, RenewMusicGain},
};

static const Switch *SwitchAt(const GuiElement &e) {
  const auto found = std::find_if(std::begin(Switches), std::end(Switches),
                                  [&e](const Switch &s) { return s.screen == GuiScreen && s.x == e.x && s.y == e.y; });
  return found == std::end(Switches) ? nullptr : found;
}

static const Slider *SliderAt(const GuiElement &e) {
  const auto found = std::find_if(std::begin(Sliders), std::end(Sliders),
                                  [&e](const Slider &s) { return s.screen == GuiScreen && s.y == e.y; });
  return found == std::end(Sliders) ? nullptr : found;
}

static u8 TypeOf(const Switch &s) { return *s.flag != s.greenWhenOff ? TypeOn : TypeOff; }

static void FlipSwitch(int row) {
  GuiElement &e = GuiElements[row];
  const Switch *s = SwitchAt(e);
  if (s == nullptr) return;
  *s->flag = !*s->flag;
  if (s->changed != nullptr) s->changed();
  e.type = TypeOf(*s);
  if (s->afterRestart) e.text = GuiStrings[s->name] + " - " + GuiStrings[RestartNoteRow];
}

static std::string LabelOf(const Slider &s, double value) {
  const bool hundredths = s.label == ValueLabel::Hundredths || s.label == ValueLabel::Percent;
  const std::string number = std::to_string(std::llround(hundredths ? value * 100 : value));
  if (s.label == ValueLabel::Percent) return number + "%";
  return s.label == ValueLabel::AfterRestart ? number + " - " + GuiStrings[RestartNoteRow] : number;
}

// first: the row of the left arrow; track, knob and right arrow follow it.
static void ShowValue(const Slider &s, int first) {
  const double value = s.get();
  const double along = std::clamp((value - s.knobFrom) * s.knobScale, 0.0, KnobWay);  // the file may hold any value
  GuiElements[first + 2].x = static_cast<i16>(s.middle - KnobStart + std::lround(along));
  GuiElements[first + 3].text = LabelOf(s, value);
}

// The window knows 0, 2, 4, 8 and 16 samples; 8 and 16 are only for a strong machine's file.
static double NextSamples(double now, bool up) {
  if (up) return now < 2 ? 2 : 4;
  double next = 0;
  for (const double samples : {2.0, 4.0, 8.0, 16.0})
    if (samples < now) next = samples;
  return next;
}

static void Step(int first, bool up) {
  const Slider *s = SliderAt(GuiElements[first]);
  if (s == nullptr) return;
  double value = s->get();
  if (up ? value > s->highest - Drift : value < s->lowest + Drift) return;
  if (s->raise == 0) value = NextSamples(value, up);
  else value = up ? std::min(value + s->raise, s->most) : std::max(value - s->lower, 0.0);
  if (!up && value < s->zeroBelow) value = 0;
  s->set(value);
  if (s->changed != nullptr) s->changed();
  ShowValue(*s, first);
}

static void Lower(int row) { Step(row, false); }
static void Raise(int row) { Step(row - 3, true); }

static void AddSlider(const Slider &s) {
  const int first = GuiElementCount;
  AddElement(TypeArrowLeft, s.middle - ArrowReach, s.y, s.name, "", Lower, -1);
  AddElement(TypeTrack, s.middle, s.y, 0, "", TrackClicked, -1);
  AddElement(TypeKnob, s.middle, s.y, 0, "", nullptr, 0);
  AddElement(TypeArrowRight, s.middle + ArrowReach, s.y, 0, "", Raise, -1);
  ShowValue(s, first);
}

static void BuildScreen(int screen) {
  BuildOptionsTabs(screen);
  for (const Switch &s : Switches)
    if (s.screen == screen) AddElement(TypeOf(s), s.x, s.y, s.name, "", FlipSwitch, -1);
  for (const Slider &s : Sliders)
    if (s.screen == screen) AddSlider(s);
}

static void RestoreGraphics(int) {
  static const OptionValues defaults;
  Options.FOV = defaults.FOV.load();
  Options.AntiAliasing = defaults.AntiAliasing.load();
  Options.MaxVoxels = defaults.MaxVoxels.load();
  Options.CachePerFrame = defaults.CachePerFrame.load();
  Options.HighQualityTransparency = defaults.HighQualityTransparency.load();
  Options.HighQualityFlashlight = defaults.HighQualityFlashlight.load();
  Options.LevelOfDetail = defaults.LevelOfDetail.load();
  CachesFollowDetail();
  RenewProjection();
  BuildGraphicsOptions(0);
}

void BuildOptionsTabs(int screen) {
  static constexpr struct {
    u8 screen;
    i16 x;
    u8 name;
    GuiCallback build;
  } tabs[] = {{ScreenGraphics, -700, 40, BuildGraphicsOptions}, {ScreenGame, -350, 70, BuildGameOptions},
              {ScreenMouse, 0, 69, BuildMouseOptions},          {ScreenSound, 350, 47, BuildSoundOptions},
              {ScreenOther, 700, 82, BuildOtherOptions}};
  ClearElements();
  GuiScreen = static_cast<u8>(screen);
  MenuClosable = false;
  for (const auto &tab : tabs)
    AddElement(tab.screen == screen ? TypeChosenRow : TypeRow, tab.x, 450, tab.name, "", tab.build, 0);
  AddButton(0, -450, 78, ApplyOptions);
}

void BuildGraphicsOptions(int) {
  BuildScreen(ScreenGraphics);
  AddButton(650, -320, 79, RestoreGraphics);
}

void BuildGameOptions(int) { BuildScreen(ScreenGame); }
void BuildMouseOptions(int) { BuildScreen(ScreenMouse); }
void BuildSoundOptions(int) { BuildScreen(ScreenSound); }
void BuildOtherOptions(int) { BuildScreen(ScreenOther); }

void ApplyOptions(int) {
  MenuClosable = true;
  GuiPendingClose = true;
  SaveOptions();
}

// The pointer's x grows to the left, and so do the sides of a hit box.
void TrackClicked(int track) {
  const GuiElement &knob = GuiElements[track + 1];
  const bool leftOfKnob = GuiPointerX > knob.hitRight, rightOfKnob = GuiPointerX < knob.hitLeft;
  for (int step = 0; step < 2 && leftOfKnob; ++step) Lower(track - 1);
  for (int step = 0; step < 2 && rightOfKnob; ++step) Raise(track + 2);
}

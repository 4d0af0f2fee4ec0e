// The settings: one table a section, in the order of the file, gives each key its value, its width and its default.
//
// The file: a key and a value a line. It begins in the integer section; the words SwitchToInt, SwitchToFloat, SwitchToChar
// and SwitchToControls lead to another section and End ends the file, each with a 1 behind it as its value.
#include "content/options.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "content/text_scan.h"
#include "core/log.h"
#include "platform/files.h"

static constexpr const char *OptionsPath = "config/text/options";
static constexpr size_t OptionsFileLimit = 64 << 10;  // bytes; no more is read

OptionValues Options;
std::atomic<bool> LogSlowPieces{false};
std::atomic<bool> CollisionsOn{true};
std::atomic<bool> CinematicCamera{false};
std::atomic<bool> HudVisible{true};
std::atomic<bool> ResizePending{false};

static const OptionValues defaults;

namespace {

struct IntOption {
  const char *key;
  u32 (*get)(const OptionValues &);
  void (*set)(u32);  // cuts to the option's width, then holds in its range
};
struct FloatOption {
  const char *key;
  std::atomic<float> OptionValues::*value;
  float least, most;  // a value of the file is held between them
};
struct TextOption {
  const char *key;
  std::string OptionValues::*value;
};
struct ControlOption {
  const char *key;
  std::atomic<int> Controls::*value;
};

}  // namespace

template <typename T>
static constexpr u32 WidthMask(std::atomic<T> OptionValues::*) {
  return static_cast<u32>(std::numeric_limits<T>::max());
}

template <auto Value>
static u32 GetOption(const OptionValues &from) {
  return static_cast<u32>((from.*Value).load());
}

template <auto Value, u32 Mask, u32 Least, u32 Most>
static void SetOption(u32 value) {
  using Kept = typename std::remove_reference_t<decltype(Options.*Value)>::value_type;
  (Options.*Value).store(static_cast<Kept>(std::clamp(value & Mask, Least, Most)));
}

template <auto Value, u32 Mask = WidthMask(Value), u32 Least = 0, u32 Most = Mask>
static constexpr IntOption Int(const char *key) {
  return {key, GetOption<Value>, SetOption<Value, Mask, Least, Most>};
}

using O = OptionValues;

static constexpr IntOption intOptions[] = {
    Int<&O::AntiAliasing, 31>("AntiAliasing"),
    Int<&O::FullScreen>("FullScreen"),
    Int<&O::ScreenWidth>("ScreenWidth"),
    Int<&O::ScreenHeight>("ScreenHeight"),
    Int<&O::InvertMouse>("InvertMouse"),
    Int<&O::FOV, 255, 1, 179>("FOV"),
    Int<&O::FrustumCull>("FrustumCull"),
    Int<&O::Tutorial>("Tutorial"),
    Int<&O::ShowReticle>("ShowReticle"),
    Int<&O::ThreadedInput>("ThreadedInput"),
    Int<&O::ExplosionBounce>("ExplosionBounce"),
    Int<&O::ExplosionFade>("ExplosionFade"),
    Int<&O::HighResDiameter>("HighResDiameter"),
    Int<&O::MidResDiameter>("MidResDiameter"),
    Int<&O::LowResDiameter>("LowResDiameter"),
    Int<&O::HighResBlocks>("HighResBlocks"),
    Int<&O::MidResBlocks>("MidResBlocks"),
    Int<&O::LowResBlocks>("LowResBlocks"),
    Int<&O::ExperimentalLight>("ExperimentalLight"),
    Int<&O::Flashlight>("Flashlight"),
    Int<&O::Crosshair>("Crosshair"),
    Int<&O::HighQualityTransparency>("HighQualityTransparency"),
    Int<&O::HighQualityFlashlight>("HighQualityFlashlight"),
    Int<&O::TargetFPS>("TargetFPS"),
    Int<&O::MesaGPU>("MesaGPU"),
    Int<&O::DisableSound>("DisableSound"),
    Int<&O::DistanceScale, 15>("DistanceScale"),
    Int<&O::MaxSpeed>("MaxSpeed"),
    Int<&O::SinglePlayer>("SinglePlayer"),
    Int<&O::EightCache>("EightCache"),
    Int<&O::QuadCache>("QuadCache"),
    Int<&O::MaxVoxels>("MaxVoxels"),
    Int<&O::LevelOfDetail>("LevelOfDetail"),
    Int<&O::CachePerFrame>("CachePerFrame"),
    Int<&O::StealCpu>("StealCpu"),
};

static constexpr FloatOption floatOptions[] = {
    {"MouseSensitivity", &O::MouseSensitivity, 0, 10},
    {"GuiScaleX", &O::GuiScaleX, 0, 10},
    {"GuiScaleY", &O::GuiScaleY, 0, 10},
    {"SoundVolume", &O::SoundVolume, 0, 1},
    {"MusicVolume", &O::MusicVolume, 0, 1},
    {"InertialDampening", &O::InertialDampening, 0, 4},
    {"ExplosionScale", &O::ExplosionScale, 0, 1000},
};

static constexpr TextOption textOptions[] = {
    {"Language", &O::Language},
    {"PlayerName", &O::PlayerName},
    {"ServerURL", &O::ServerURL},
};

static constexpr ControlOption controlOptions[] = {
    {"Use", &Controls::use},
    {"BlockSelect", &Controls::blockSelect},
    {"MoveForward", &Controls::moveForward},
    {"MoveBackward", &Controls::moveBackward},
    {"MoveLeft", &Controls::moveLeft},
    {"MoveRight", &Controls::moveRight},
    {"MoveUp", &Controls::moveUp},
    {"MoveDown", &Controls::moveDown},
    {"Stop", &Controls::stop},
    {"MainMouse", &Controls::mainMouse},
    {"SecondaryMouse", &Controls::secondaryMouse},
    {"ThirdMouse", &Controls::thirdMouse},
};

namespace {

enum Section { IntSection, FloatSection, TextSection, ControlSection, SectionCount, NoSection };

}  // namespace

static constexpr struct {
  const char *enteredBy, *fault;
} sections[SectionCount] = {
    {"SwitchToInt", "Error in int section of config/text/options on line"},
    {"SwitchToFloat", "Error in float section of config/text/options on line"},
    {"SwitchToChar", "Error in String section of config/text/options on line"},
    {"SwitchToControls", "Error in controls section of config/text/options on line"},
};

namespace {

// One entry of the file, with the value in the form of its section.
struct Entry {
  std::string_view key;
  bool hasValue = false;
  i64 number = 0;
  float real = 0;
  std::string_view word;
};

}  // namespace

static void ScanValue(TextCursor *cursor, Section section, Entry *entry) {
  if (section == FloatSection) entry->hasValue = ScanFloat(cursor, &entry->real);
  else if (section == TextSection) entry->hasValue = ScanWord(cursor, &entry->word);
  else entry->hasValue = ScanInt(cursor, &entry->number);
}

// The section that a key leads to, NoSection for other keys. A section's own word means nothing in it.
static Section SectionEnteredBy(std::string_view key, Section current) {
  for (int s = 0; s < SectionCount; ++s)
    if (s != current && key == sections[s].enteredBy) return static_cast<Section>(s);
  return NoSection;
}

// Gives the option with this key to store; false if the section has none.
template <typename Option, size_t N, typename Store>
static bool FindOption(const Option (&options)[N], std::string_view key, Store store) {
  for (const Option &o : options)
    if (key == o.key) {
      store(o);
      return true;
    }
  return false;
}

// Stores an entry's value. A known key without a value keeps the one that it has. False for an unknown key.
static bool StoreEntry(Section section, const Entry &e) {
  switch (section) {
    case FloatSection:
      return FindOption(floatOptions, e.key, [&e](const FloatOption &o) {
        if (e.hasValue) Options.*o.value = std::clamp(e.real, o.least, o.most);
      });
    case TextSection:
      return FindOption(textOptions, e.key, [&e](const TextOption &o) { if (e.hasValue) Options.*o.value = e.word; });
    case ControlSection:
      FindOption(controlOptions, e.key, [&e](const ControlOption &o) {
        if (e.hasValue) Options.controls.*o.value = static_cast<int>(e.number);
      });
      return true;  // unknown controls are passed over
    default:
      return FindOption(intOptions, e.key, [&e](const IntOption &o) { if (e.hasValue) o.set(static_cast<u32>(e.number)); });
  }
}

bool LoadOptions() {
  ResetOptions();
  return ReadOptionsFile() && SaveOptions();
}

bool ReadOptionsFile() {
  std::vector<u8> bytes;
  if (!ReadFileFront(OptionsPath, OptionsFileLimit + 1, &bytes)) return false;
  if (bytes.size() > OptionsFileLimit) {
    LogWarn("config/text/options is over 64 KiB. Only its beginning is read.");
    bytes.pop_back();
  }
  TextCursor cursor{{reinterpret_cast<const char *>(bytes.data()), bytes.size()}, 0};
  Section section = IntSection;
  Entry entry;
  for (int count = 1; ScanWord(&cursor, &entry.key); ++count) {
    ScanValue(&cursor, section, &entry);
    if (!entry.hasValue) LogInt(sections[section].fault, count);
    if (entry.key == "End") break;
    const Section next = SectionEnteredBy(entry.key, section);
    if (next != NoSection) section = next;
    else if (!StoreEntry(section, entry)) LogInt("Unknown option on line", count);
  }
  return true;
}

// One line "key value"; a text that is no single word is written up to its first blank, an empty one as its default.
static void AddTextLine(std::string *file, const TextOption &option) {
  const std::string &text = Options.*option.value;
  TextCursor cursor{text, 0};
  std::string_view word = defaults.*option.value;
  ScanWord(&cursor, &word);
  file->append(option.key).append(" ").append(word).append("\n");
}

static void AddIntLine(std::string *file, const char *key, int value) {
  char line[96];
  std::snprintf(line, sizeof line, "%s %d\n", key, value);
  *file += line;
}

static void AddFloatLine(std::string *file, const char *key, float value) {
  char line[96];
  std::snprintf(line, sizeof line, "%s %f\n", key, static_cast<double>(value));
  *file += line;
}

bool SaveOptions() {
  if (!SavingOn) return false;
  std::string file;
  for (const IntOption &o : intOptions) AddIntLine(&file, o.key, static_cast<int>(o.get(Options)));
  AddIntLine(&file, sections[FloatSection].enteredBy, 1);
  for (const FloatOption &o : floatOptions) AddFloatLine(&file, o.key, Options.*o.value);
  AddIntLine(&file, sections[TextSection].enteredBy, 1);
  for (const TextOption &o : textOptions) AddTextLine(&file, o);
  AddIntLine(&file, sections[ControlSection].enteredBy, 1);
  for (const ControlOption &o : controlOptions) AddIntLine(&file, o.key, Options.controls.*o.value);
  AddIntLine(&file, "End", 1);
  return ReplaceFile(FileBehind(OptionsPath).c_str(), file.data(), file.size());
}

void ResetOptions() {
  for (const IntOption &o : intOptions) o.set(o.get(defaults));
  for (const FloatOption &o : floatOptions) Options.*o.value = (defaults.*o.value).load();
  for (const TextOption &o : textOptions) Options.*o.value = defaults.*o.value;
  for (const ControlOption &o : controlOptions) Options.controls.*o.value = (defaults.controls.*o.value).load();
  Options.flashlightLit = false;
  LogSlowPieces = false;
  CollisionsOn = true;
  CinematicCamera = false;
  HudVisible = true;
  ResizePending = false;
}

// Reading and writing of "serveroptions".
#include "net/server_options.h"

#include <charconv>
#include <cstring>
#include <string_view>
#include <variant>
#include <vector>

#include "core/log.h"
#include "platform/files.h"

static constexpr const char *Path = "serveroptions";
static constexpr size_t FileLimit = 1 << 16, LongestLine = 249;
static constexpr std::string_view ByteOrderMark = "\xef\xbb\xbf";  // some editors begin a file with it

namespace {

// A key and where its value goes. The order is that of the file.
struct OptionKey {
  std::string_view name;
  std::variant<std::string ServerOptions::*, u16 ServerOptions::*, int ServerOptions::*> field;
};

}  // namespace

static const OptionKey Keys[] = {
    {"Address", &ServerOptions::Address},       {"Port", &ServerOptions::Port},
    {"RunDataServer", &ServerOptions::RunDataServer}, {"DataAddress", &ServerOptions::DataAddress},
    {"DataPort", &ServerOptions::DataPort},     {"MaxAsteroidSize", &ServerOptions::MaxAsteroidSize},
    {"Players", &ServerOptions::Players},       {"IRC", &ServerOptions::IRC},
    {"IRCServer", &ServerOptions::IRCServer},   {"IRCPort", &ServerOptions::IRCPort},
    {"IRCNick", &ServerOptions::IRCNick},       {"IRCChannel", &ServerOptions::IRCChannel},
    {"IRCMumble", &ServerOptions::IRCMumble}};

void InitServerOptions(ServerOptions *options) { *options = ServerOptions{}; }

// A line names a key by its first characters; of two keys that fit, the longer one is meant.
static const OptionKey *KeyOf(std::string_view line) {
  const OptionKey *found = nullptr;
  for (const OptionKey &key : Keys)
    if (line.substr(0, key.name.size()) == key.name && (found == nullptr || key.name.size() > found->name.size())) found = &key;
  return found;
}

static std::string_view WordAt(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  text.remove_prefix(first);
  return text.substr(0, text.find_first_of(" \t\r"));
}

template <typename Number>
static bool ReadNumber(std::string_view word, Number *out) {
  Number value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc() || end != word.data() + word.size()) return false;
  *out = value;
  return true;
}

// No address is an address too, and one to which nobody can listen: it must not become all of them.
static bool Take(const OptionKey &key, std::string_view word, ServerOptions *options) {
  if (word.empty() && key.name != "Address") return false;
  if (const auto *text = std::get_if<0>(&key.field)) {
    options->**text = word == "any" ? "0.0.0.0" : word;
    return true;
  }
  if (const auto *size = std::get_if<1>(&key.field)) {
    u16 value = 0;
    if (!ReadNumber(word, &value) || value == 0) return false;  // no port, no players, no asteroid
    options->**size = value;
    return true;
  }
  return ReadNumber(word, &(options->*std::get<2>(key.field)));
}

// Each line that has a key, with its number. False: there is no file.
template <typename Visit>
static bool ForEachOption(Visit visit) {
  std::vector<u8> bytes;
  if (!ReadWholeFile(Path, FileLimit, &bytes)) return false;
  std::string_view rest(reinterpret_cast<const char *>(bytes.data()), bytes.size());
  if (rest.starts_with(ByteOrderMark)) rest.remove_prefix(ByteOrderMark.size());
  for (int number = 1; !rest.empty(); ++number) {
    const size_t end = std::min(rest.find('\n'), rest.size()), length = std::min(end, LongestLine);
    const std::string_view line = rest.substr(0, length);
    rest.remove_prefix(std::min(length + (length == end ? 1 : 0), rest.size()));  // what is longer goes on as the next line
    const OptionKey *key = KeyOf(line);
    if (key != nullptr) visit(*key, WordAt(line.substr(key->name.size())), number);
  }
  return true;
}

static std::string PlaceOf(int number) { return std::string(Path) + ":" + std::to_string(number); }

bool ReadServerOptions(ServerOptions *options) {
  return ForEachOption([options](const OptionKey &key, std::string_view word, int number) {
    if (Take(key, word, options)) return;
    LogWarn((PlaceOf(number) + ": not a value of " + std::string(key.name) + ": " + std::string(word)).c_str());
  });
}

std::string OptionPlace(const char *name) {
  std::string place = Path;
  ForEachOption([&](const OptionKey &key, std::string_view word, int number) {
    ServerOptions taken;
    if (key.name == name && Take(key, word, &taken)) place = PlaceOf(number);
  });
  return place;
}

static std::string ValueOf(const OptionKey &key, const ServerOptions &options) {
  if (const auto *text = std::get_if<0>(&key.field)) return options.**text;
  if (const auto *port = std::get_if<1>(&key.field)) return std::to_string(options.**port);
  return std::to_string(options.*std::get<2>(key.field));
}

bool WriteServerOptions(const ServerOptions &options) {
  std::string text;
  for (const OptionKey &key : Keys) text += std::string(key.name) + " " + ValueOf(key, options) + "\n";
  return ReplaceFile(FileBehind(Path).c_str(), text.data(), text.size()) || LogError("Could not write serveroptions") != 0;
}

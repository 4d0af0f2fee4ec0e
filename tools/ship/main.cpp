// Looks into ships, checks them and converts them from form to form.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "core/log.h"
#include "forms.h"
#include "gui/language.h"
#include "persistence/directory_store.h"
#include "platform/files.h"
#include "messages.h"
#include "show.h"

constexpr int Done = 0, Fault = 1, WrongUse = 2;  // exit codes

static constexpr const char *help =
    "usage: tarnvale-ship [--root DIR] info SHIP...\n"
    "       tarnvale-ship [--root DIR] list SHIP...\n"
    "       tarnvale-ship [--root DIR] verify SHIP...\n"
    "       tarnvale-ship [--root DIR] convert [--force] FROM TO\n"
    "       tarnvale-ship --help\n"
    "\n"
    "Looks into the ships of a Tarnvale installation and converts them.\n"
    "\n"
    "  info      name, blocks, size, middle and mass; of a folder its place and speed too\n"
    "  list      the materials and components that it is made of\n"
    "  verify    reads all of it and tells what is wrong\n"
    "  convert   writes the ship FROM as TO, in the form that the name TO asks for\n"
    "\n"
    "  --root DIR  the installation, a folder with config/ and saves/; at first the current folder\n"
    "  --force     convert: replaces TO when it is there already\n"
    "  --help      prints this\n"
    "\n"
    "SHIP, FROM and TO are names in saves/, with or without \"saves/\" in front:\n"
    "  NAME.sts    stream, as the game saves\n"
    "  NAME.ssf    text, as early games saved\n"
    "  NAME.sls    stream, not compressed\n"
    "  NAME or NAME/ folder, as servers keep ships\n"
    "FROM and SHIP may also be backups (.bak) and what was kept of files (with .damaged or .replaced behind).\n"
    "\n"
    "Ends with 0 when all is well; 1 when a ship is damaged or missing or can't be written; 2 when it was called wrongly.\n"
    "A damaged ship is converted as far as it can be read, and the end is 1.\n";

namespace {

struct Call {
  std::string root = ".", command;
  bool force = false, help = false;
  std::vector<std::string> words;
};

}  // namespace

static int Complain(const std::string &text) {
  std::fprintf(stderr, "tarnvale-ship: %s\n", Shown(text).c_str());
  return Fault;
}

static int CalledWrongly(const std::string &text) {
  Complain(text);
  std::fputs("Try: tarnvale-ship --help\n", stderr);
  return WrongUse;
}

// False when an option is none of ours.
static bool ParseCall(int argc, char **argv, Call *call) {
  bool options = true;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (!options || word.empty() || word[0] != '-') {
      if (call->command.empty()) call->command = word;
      else call->words.push_back(word);
    } else if (word == "--") options = false;
    else if (word == "--help" || word == "-h") call->help = true;
    else if (word == "--force") call->force = true;
    else if (word == "--root" && i + 1 < argc) call->root = argv[++i];
    else if (word.starts_with("--root=")) call->root = word.substr(7);
    else return CalledWrongly("unknown option " + word) == Done;
  }
  return true;
}

// The tables and names of the installation, which becomes the current folder.
static bool EnterInstallation(const std::string &root) {
  if (chdir(root.c_str()) != 0 || access("config/text/materials", R_OK) != 0)
    return Complain(root + " is no installation: it has no config/text/materials. --root tells where it is.") == Done;
  ReadOptionsFile();
  bool good = LoadMaterials() != 0 && LoadComponents() != 0;
  if (good) LoadLanguage();
  for (const Message &m : TakeMessages())
    if (!good) Complain(m.text);
  return good;
}

// Tells what the loader had to say. Whether the ship was sound.
static bool TellMessages(const ShipName &name, bool all) {
  bool sound = true;
  for (const Message &m : TakeMessages()) {
    if (m.fault || all) Complain(PathOf(name) + ": " + m.text);
    sound = sound && !m.fault;
  }
  return sound;
}

static std::unique_ptr<Ship> NewShip() {
  auto ship = std::make_unique<Ship>();
  InitShip(ship.get(), 0);
  if (!AllocShipTable(ship.get())) return nullptr;
  return ship;
}

static bool IsThere(const ShipName &name) {
  if (name.form == ShipForm::Folder) return ShipFolderIsThere(name.stem.c_str());
  struct stat info;
  return lstat(("saves/" + name.file).c_str(), &info) == 0;
}

// Reads a ship and hands it to use(ship). Done, or Fault when anything was wrong with it.
template <typename Use>
static int WithShip(const ShipName &name, bool tellAll, Use use) {
  if (!IsThere(name)) return Complain(PathOf(name) + " is not there");
  std::unique_ptr<Ship> ship = NewShip();
  const bool read = ship != nullptr && ReadShip(name, ship.get());
  const bool sound = TellMessages(name, tellAll);
  int result = sound && read ? Done : Fault;
  if (!read) Complain(PathOf(name) + " can't be read");
  else if (use(ship.get(), sound) == Fault) result = Fault;
  if (ship != nullptr) FreeShip(ship.get());
  return result;
}

static int ShowShip(const std::string &command, const ShipName &name) {
  return WithShip(name, command == "verify", [&](Ship *ship, bool sound) {
    if (command == "info") ShowInfo(name, ship);
    else if (command == "list") ShowRows(name, *ship);
    else if (sound) PrintResult("%s: whole, %llu blocks\n", Shown(PathOf(name)).c_str(), static_cast<unsigned long long>(CountBlocks(*ship)));
    return Done;
  });
}

// Servers hold saves/ for themselves. While the tool writes, it holds it, so that none starts.
static bool ServerRuns() {
  const int saves = open("saves", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  return saves >= 0 && flock(saves, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

// What is there must not be lost to a ship that could not be read whole. False, and told, when it can't be kept.
static bool KeepTarget(const ShipName &to, Ship *ship) {
  const bool folder = to.form == ShipForm::Folder;
  ship->keepFolderAs = folder ? ".replaced" : nullptr;  // the save sees to it
  if (folder || !IsThere(to)) return true;
  const std::string kept = KeepBeside(PathOf(to).c_str(), ".replaced");
  if (kept.empty()) return Complain(PathOf(to) + " can't be kept beside the new one") == Done;
  return Complain(PathOf(to) + " is kept as " + kept) != Done;
}

static int Convert(const ShipName &from, const ShipName &to, bool force) {
  if (from.file == to.file) return CalledWrongly("FROM and TO are the same");
  if (!to.ours) return CalledWrongly("the game would not find a ship under the name " + to.file);
  if (ServerRuns()) return Complain("a server runs in this folder, and would not know of the ship. Stop it first.");
  const auto taken = [&] { return !force && IsThere(to) && Complain(PathOf(to) + " is there already. --force replaces it.") != Done; };
  if (taken()) return Fault;
  return WithShip(from, false, [&](Ship *ship, bool sound) {
    if (taken()) return Fault;  // meanwhile
    if (from.form != ShipForm::Folder && to.form == ShipForm::Folder && IsThere(to)) LoadShipPlace(ship, to.stem.c_str());
    const bool written = (sound || KeepTarget(to, ship)) && WriteShip(to, ship);
    TellMessages(to, true);
    if (!written) return Complain(PathOf(to) + " was not written");
    PrintResult("%s: %s%s\n", PathOf(to).c_str(), sound ? "all of " : "what could be read of ", Shown(PathOf(from)).c_str());
    return Done;
  });
}

static int RunCommand(const Call &call) {
  std::vector<ShipName> names;
  for (const std::string &word : call.words) {
    names.push_back(ParseShipName(word));
    if (names.back().form == ShipForm::Unknown) return CalledWrongly(word + " is not the name of a ship in saves/");
  }
  if (!EnterInstallation(call.root)) return Fault;
  if (call.command == "convert") return Convert(names[0], names[1], call.force);
  int result = Done;
  for (const ShipName &name : names)
    if (ShowShip(call.command, name) != Done) result = Fault;
  return result;
}

int main(int argc, char **argv) {
  Call call;
  if (!ParseCall(argc, argv, &call)) return WrongUse;
  if (call.help) return std::fputs(help, stdout) < 0 ? Fault : Done;
  const bool convert = call.command == "convert";
  if (!convert && call.command != "info" && call.command != "list" && call.command != "verify")
    return CalledWrongly(call.command.empty() ? "no command" : "unknown command " + call.command);
  if (convert ? call.words.size() != 2 : call.words.empty())
    return CalledWrongly(call.command + (convert ? " wants FROM and TO" : " wants the names of ships"));
  if (call.force && !convert) return CalledWrongly("--force is for convert");
  if (convert) GuardStreams();  // who reads what is looked at may stop it; a ship is written to its end
  if (!SetUpMessages()) return Complain("no temporary file can be made");
  return RunCommand(call);
}

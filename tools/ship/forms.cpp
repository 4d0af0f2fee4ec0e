// Reading and writing ships of all forms with the game's own loaders and savers.
#include "forms.h"

#include "core/log.h"
#include "core/utils.h"
#include "persistence/directory_store.h"
#include "persistence/stream.h"
#include "persistence/text_form.h"
#include "platform/files.h"
#include "world/access.h"

constexpr size_t RawLimit = size_t{2} << 30;  // bytes of a file without compression

static bool EndsWith(const std::string &text, const char *ending) { return text.ends_with(ending) && text != ending; }

// The name that a kept copy had, as "ship.sts" of "ship.sts.damaged" and "ship.sts.replaced2"; of other files their own.
static std::string NameBeforeKept(const std::string &file) {
  for (const std::string ending : {".damaged", ".replaced"}) {
    const size_t at = file.rfind(ending);
    if (at != std::string::npos && at > 0 && file.size() - at <= ending.size() + 1) return file.substr(0, at);
  }
  return file;
}

static void SplitFile(ShipName *n, ShipForm form, const std::string &name, bool ours) {
  n->form = form;
  n->stem = form == ShipForm::Folder ? name : name.substr(0, name.size() - 4);
  n->ours = ours && name == n->file;
}

ShipName ParseShipName(const std::string &word) {
  ShipName n;
  n.file = word.starts_with("saves/") ? word.substr(6) : word;
  const bool folder = EndsWith(n.file, "/");
  while (EndsWith(n.file, "/")) n.file.pop_back();
  if (!IsShipStem(n.file) || n.file == "NULL") return n;
  const std::string name = NameBeforeKept(n.file);
  if (folder || n.file.find('.') == std::string::npos) SplitFile(&n, ShipForm::Folder, n.file, true);
  else if (EndsWith(name, ".sts")) SplitFile(&n, ShipForm::Stream, name, true);
  else if (EndsWith(name, ".ssf")) SplitFile(&n, ShipForm::Text, name, true);
  else if (EndsWith(name, ".sls")) SplitFile(&n, ShipForm::Raw, name, true);
  else if (EndsWith(name, ".bak")) SplitFile(&n, ShipForm::Stream, name, false);
  return n;
}

std::string PathOf(const ShipName &name) { return "saves/" + name.file + (name.form == ShipForm::Folder ? "/" : ""); }

const char *FormWord(ShipForm form) {
  switch (form) {
    case ShipForm::Stream: return "stream";
    case ShipForm::Text: return "text";
    case ShipForm::Raw: return "stream, not compressed";
    case ShipForm::Folder: return "folder";
    case ShipForm::Unknown: break;
  }
  return "unknown";
}

static bool ReadRaw(const std::string &path, Ship *ship) {
  std::vector<u8> bytes;
  if (!ReadWholeFile(path.c_str(), RawLimit, &bytes)) return false;
  UnpackShip(ship, bytes.data(), bytes.size(), path.c_str());
  return true;
}

// A text ship comes with a place and with light; no other form of file has either.
static bool ReadText(const std::string &file, Ship *ship) {
  const i64 place[3] = {ship->position[0], ship->position[1], ship->position[2]};
  const bool read = LoadShipText(ship, file.c_str(), 0, 0, 0) != 0;
  for (int axis = 0; axis < 3; ++axis) ship->position[axis] = place[axis];
  return read || ship->summary != nullptr;  // what came before the fault is there
}

// A folder doesn't hold the ship's name, but has one.
static bool ReadFolder(const std::string &stem, Ship *ship) {
  ship->displayName = FrontOf(stem, MaxShipName);
  return LoadShipDirectory(ship, stem.c_str(), true, true) != 0;
}

static bool ReadForm(const ShipName &name, Ship *ship) {
  bool whole;
  switch (name.form) {
    case ShipForm::Stream: return ReadShipStream(ship, PathOf(name).c_str(), &whole) != 0;
    case ShipForm::Text: return ReadText(name.file, ship);
    case ShipForm::Raw: return ReadRaw(PathOf(name), ship);
    case ShipForm::Folder: return ReadFolder(name.stem, ship);
    case ShipForm::Unknown: break;
  }
  return false;
}

// What no ship may have is gone before anything is counted.
bool ReadShip(const ShipName &name, Ship *ship) {
  const bool read = ReadForm(name, ship);
  if (read) BuildShipSummary(ship);
  return read;
}

bool WriteShip(const ShipName &name, Ship *ship) {
  ship->fileStem = name.stem;
  switch (name.form) {
    case ShipForm::Stream: return SaveShipByName(ship) != 0;
    case ShipForm::Text: return SaveShipText(*ship, name.file.c_str(), true, false, false) != 0;
    case ShipForm::Raw: return SaveShipRawStream(ship, name.stem.c_str()) != 0;
    case ShipForm::Folder: return SaveShipDirectory(ship) != 0;
    case ShipForm::Unknown: break;
  }
  return false;
}

// The ship that the player flew last. What can't be taken up stays untouched: another ship flies in its place, under a name
// of its own, so that no save goes over it.
#include "gameplay/last_ship.h"

#include "content/options.h"
#include "content/settings.h"
#include "gui/language.h"
#include "net/chat_log.h"
#include "net/connection.h"
#include "persistence/stream.h"
#include "persistence/text_form.h"
#include "platform/files.h"
#include "platform/threads.h"

namespace {

bool IsThere(const std::string &path) { return NameIsTaken(path.c_str()); }  // a link to nowhere is a ship that can't be read

std::string StreamOf(const std::string &stem) { return "saves/" + stem + ".sts"; }
std::string TextOf(const std::string &stem) { return "saves/" + stem + ".ssf"; }

// A ship that only flew as a text has no stream file before its first save. From that on it is one. What is no text of a ship
// reads as one without blocks.
bool LoadStem(Ship *ship, const std::string &stem, const i64 (&at)[3]) {
  if (IsThere(StreamOf(stem))) {
    std::string news;
    const bool read = LoadShipTelling(ship, stem.c_str(), &news) != 0;
    if (read && !news.empty()) AddChatLine(news.c_str());
    return read;
  }
  if (LoadShipText(ship, (stem + ".ssf").c_str(), at[0], at[1], at[2]) == 0 || ship->summary->blockCount == 0) return false;
  ship->keepStreamAs = ".replaced";
  return true;
}

void EmptyShip(Ship *ship) {
  FreeShip(ship);
  InitShip(ship, ship->id);
  AllocShipTable(ship);
}

// The stem of the ship that flies in the place of the remembered one, or empty. The player didn't choose it, and the other one's
// file may come back: saving it is no reason to forget that one. Written at start-up, then under the world mutex.
std::string StandIn;

// Whether the stem is another ship's than the stand-in's: then the player has chosen it.
bool ChosenByPlayer(const std::string &stem) {
  const ScopedLock world(&WorldMutex);
  if (stem == StandIn) return false;
  StandIn.clear();
  return true;
}

}  // namespace

void RememberShip(const Ship &ship) {
  std::string stem;
  {
    const ScopedLock world(&WorldMutex);
    stem = ship.fileStem;
  }
  if (!Options.SinglePlayer || Online || !(IsThere(StreamOf(stem)) || IsThere(TextOf(stem)))) return;
  if (!ChosenByPlayer(stem)) return;
  StoreSetting(Setting::Ship, stem);
}

bool LoadLastShip(Ship *ship, const i64 (&at)[3]) {
  const std::string stem = SettingText(Setting::Ship);
  StandIn.clear();
  if (stem.empty() || stem == ship->fileStem) return false;
  const bool there = IsThere(StreamOf(stem)) || IsThere(TextOf(stem));
  if (there && LoadStem(ship, stem, at)) return true;
  if (there) EmptyShip(ship);
  StandIn = ship->fileStem;
  AddChatLine((GuiStrings[there ? TextLastShipUnread : TextLastShipGone] + " " + stem).c_str());
  return false;
}

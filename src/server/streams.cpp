// A player gets the last whole stream files, and behind them the edits since: Fresh. The files are written by a thread of its
// own, which has the world only while it copies a ship's blocks. What is edited meanwhile may be in the new file or not, so it
// stays in Fresh: edits that are done again in their order end in the same blocks. Only those from before the writing began
// leave Fresh, and the old file the memory, when the writing has ended.
#include "server/streams.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "core/log.h"
#include "platform/threads.h"
#include "server/clients.h"
#include "server/own_files.h"

constexpr size_t MostFreshEdits = 100000;
constexpr double RefreshDelay = 2;  // seconds from the end of a writing to the next one

namespace {

struct StreamFile {
  bool isOld = true;    // the ship was edited since the writing began
  bool isBase = false;  // with Fresh it is the ship
  bool failed = false;  // it could not be written the last time
};

}  // namespace

static std::vector<StreamFile> Files;  // by row
static std::vector<BlockEdit> Fresh;
static bool Wanted = false;
static std::vector<Asker> TellWanted;

namespace {

// The writing in the making.
struct WrittenShip {
  u16 row = 0;
  bool good = false;
};

}  // namespace
static std::vector<WrittenShip> Job;          // the writer's, from its start to its end
static std::thread Writer;
static std::atomic<bool> WriterDone{false};   // set by the writer
static bool Writing = false;                  // the loop's: begun and not yet ended
static std::vector<Asker> Telling;            // they wait for its end
static size_t FreshBefore = 0;                // edits of Fresh from before it began
static bool FreshLost = false;                // Fresh ran over since it began

std::string StreamPath(const std::string &stem) { return "saves/" + stem + ".sts"; }

static const std::string &StemOf(u16 row) { return ShipAt(TheShipTable, row)->fileStem; }

static void BeginWriting() {
  Job.clear();
  for (u16 row = 0; row < Files.size(); ++row)
    if (std::exchange(Files[row].isOld, false)) Job.push_back({row, false});
  FreshBefore = Fresh.size();
  Writing = true;
  FreshLost = Wanted = WriterDone = false;
  Telling = std::exchange(TellWanted, {});
}

static void WriteJob() {
  for (WrittenShip &ship : Job) ship.good = WriteStreamFile(ShipAt(TheShipTable, ship.row));
  WriterDone = true;
}

static bool EndWriting() {
  JoinThread(&Writer);
  Writing = false;
  bool all = true;
  for (const WrittenShip &ship : Job) {
    StreamFile &file = Files[ship.row];
    if (ship.good) file.isBase = !FreshLost || !file.isOld;
    else all = LogError(("Could not write " + StreamPath(StemOf(ship.row))).c_str()) != 0;
    file.failed = !ship.good;
    file.isOld = file.isOld || file.failed;
    ForgetShipFile(StemOf(ship.row));
  }
  const auto before = Fresh.begin() + static_cast<std::ptrdiff_t>(FreshBefore);
  const auto written = [](const BlockEdit &e) { return !Files[static_cast<size_t>(e.shipRow)].failed; };
  Fresh.erase(std::remove_if(Fresh.begin(), before, written), before);
  for (const Asker asker : std::exchange(Telling, {})) {
    Answer(asker, all ? "saved" : "not all could be saved");
    EndAnswer(asker, all);
  }
  return all;
}

void NewStreamFiles() {
  Files.assign(TheShipTable.count.load(), {});
  Fresh.clear();
  TellWanted.clear();
  Wanted = false;
}

bool RefreshStreamFiles() {
  if (Writing) EndWriting();
  BeginWriting();
  WriteJob();
  return EndWriting();
}

void WantStreamFiles() { Wanted = Wanted || !Fresh.empty(); }

void TellWhenSaved(Asker asker) {
  Wanted = true;
  TellWanted.push_back(asker);
}

void PollStreamFiles(double now) {
  static double ended = -RefreshDelay;
  if (Writing && WriterDone) {
    EndWriting();
    ended = now;
  }
  if (Writing || (now - ended < RefreshDelay && TellWanted.empty())) return;
  if (!Wanted && Fresh.size() < MostFreshEdits / 2 && !StreamFilesComing()) return;
  BeginWriting();
  Writer = StartThread(WriteJob, "ship files");
  if (!Writer.joinable()) WriteJob();
}

// Too many: what the files lack is no longer known, and the files are none to begin with until they are written again.
static void LoseFresh() {
  for (StreamFile &file : Files) file.isBase = file.isBase && !file.isOld;
  if (Writing)
    for (const WrittenShip &ship : Job) Files[ship.row].isBase = false;
  Fresh.clear();
  FreshBefore = 0;
  FreshLost = true;
}

void NoteFreshEdit(const BlockEdit &edit) {
  if (Fresh.size() >= MostFreshEdits) LoseFresh();
  StreamFile &file = Files[static_cast<size_t>(edit.shipRow)];
  file.isOld = true;
  Fresh.push_back(edit);
}

const std::vector<BlockEdit> &FreshEdits() { return Fresh; }

bool HasStreamFile(u16 row) { return Files[row].isBase; }

bool StreamFilesComing() {
  return std::any_of(Files.begin(), Files.end(), [](const StreamFile &file) { return !file.isBase && !file.failed; });
}

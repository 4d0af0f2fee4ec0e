// The daily backups: what a day's first save leaves, and that nothing of another ship ever goes.
#include "persistence/backup.h"

#include <chrono>
#include <cstdlib>
#include <set>
#include <sstream>

#include "persistence/ships.h"
#include "persistence/stream.h"

static std::set<std::string> Names() {
  std::set<std::string> names;
  for (const auto &entry : fs::directory_iterator("saves")) names.insert(entry.path().filename());
  return names;
}

static void Keep(const std::string &path, const std::string &date) {
  const std::string made = KeepBackup(path, date);
  if (!made.empty()) EndBackup(made);
}

// A file that may be a backup, under its name as if a save had replaced it.
static void Write(const std::string &path, const std::string &content) {
  WriteText(path + ".new", GzipMember(content, 1));
  fs::rename(path + ".new", path);
}

static std::string Content(const std::string &path) { return fs::exists(path) ? Gunzip(path) : "none"; }

static void Age(const std::string &name, int hours) {  // below 0: from the future
  fs::last_write_time("saves/" + name, fs::file_time_type::clock::now() - std::chrono::hours(hours));
}

namespace {

struct Backup : ShipTest {};

}  // namespace

TEST_F(Backup, TheFirstSaveOfADayKeepsWhatWasThere) {
  static ShipTable table;
  ship->fileStem = "Tarn";
  std::string versions[3];
  for (unsigned i = 0; i < 3; ++i) {
    Fill(ship, MixedCells(10 * (i + 1), i));
    ASSERT_EQ(SaveShipByName(ship), 1);
    versions[i] = ReadText("saves/Tarn.sts");
  }
  const std::string backup = "Tarn" + LocalDate() + ".bak";
  EXPECT_EQ(Names(), (std::set<std::string>{"Tarn.sts", backup}));
  EXPECT_EQ(ReadText("saves/" + backup), versions[0]);
  EXPECT_EQ(ReadText("saves/Tarn.sts"), versions[2]);
  ScopedLock world(&WorldMutex);
  ASSERT_EQ(AddShipFromStream(&table, backup.c_str(), 0, 0, 0), 1);
  EXPECT_EQ(CellsOf(*ShipAt(table, 0)).size(), 10u);
  EXPECT_EQ(ShipAt(table, 0)->fileStem, "Tarn" + LocalDate()) << "the next save spares Tarn.sts";
}

TEST_F(Backup, TheNewestTenOfAShipStayAndAllOfOthers) {
  const std::set<std::string> others = {"Ship22020-01-01.bak", "Ship2.sts", "Shi2020-01-01.bak", "Ship2020-01-012020-01-02.bak",
                                        "Ship2020-1-01.bak", "Ship2020-01-01.bax", "Ship2020-01-01.bak.damaged", "Ship20x0-01-01.bak",
                                        "xShip2020-01-01.bak", "Ship2020-01-01_bak"};
  for (const std::string &name : others) WriteText("saves/" + name, name);
  Keep("saves/Ship.sts", "2026-01-01");
  EXPECT_EQ(Names(), others) << "there is nothing to keep";
  std::set<std::string> expected = others;
  expected.insert("Ship.sts");
  for (int day = 10; day < 31; ++day) {
    const std::string date = "2026-01-" + std::to_string(day);
    Write("saves/Ship.sts", date);
    Keep("saves/Ship.sts", date);
    expected.insert("Ship" + date + ".bak");
    if (day >= 20) expected.erase("Ship2026-01-" + std::to_string(day - 10) + ".bak");
    ASSERT_EQ(Names(), expected) << day;
    EXPECT_EQ(Content("saves/Ship" + date + ".bak"), date);
  }
  Write("saves/Ship.sts", "of another day");
  Keep("saves/Ship.sts", "2019-12-31");  // a clock that went back
  EXPECT_EQ(Content("saves/Ship2019-12-31.bak"), "of another day");
  Write("saves/Ship.sts", "of later that day");
  Keep("saves/Ship.sts", "2026-01-30");
  EXPECT_EQ(Content("saves/Ship2026-01-30.bak"), "2026-01-30");
  for (const char *path : {"saves/Ship.sss", "saves/none.sts", "nowhere/Ship.sts"}) Keep(path, "2026-02-01");
  for (const std::string &name : Names()) EXPECT_EQ(name.find("2026-02-01"), std::string::npos) << name;
  expected = Names();
  Fill(ship, MixedCells(500, 1));
  EXPECT_EQ(OnFullDisk(100, [this] { return SaveShipStream(ship, "saves/Ship.sts"); }), 0);
  EXPECT_EQ(Names(), expected) << "a save that fails costs no backup";
}

TEST_F(Backup, AClockThatIsWrongCostsNoBackupThatIsNewer) {
  std::set<std::string> ahead;
  for (int day = 10; day < 20; ++day) {  // ten of a clock that ran ahead
    const std::string name = "Ship2031-05-" + std::to_string(day) + ".bak";
    Write("saves/" + name, name);
    Age(name, -1000 - day);
    ahead.insert(name);
  }
  for (int day = 1; day <= 6; ++day) {
    const std::string date = "2026-01-0" + std::to_string(day);
    Write("saves/Ship.sts", date);
    Keep("saves/Ship.sts", date);
    for (int before = 1; before <= day; ++before)
      EXPECT_TRUE(fs::exists("saves/Ship2026-01-0" + std::to_string(before) + ".bak")) << "day " << before << " on day " << day;
    EXPECT_EQ(Names().size(), 11u);
  }
  // A clock that begins on one date, each time: what has the name then is a day old, or from later than now.
  const std::string date = "1970-01-01", first = "Ship1970-01-01.bak", second = "Ship1970-01-01 2.bak", third = "Ship1970-01-01 3.bak";
  const struct { int age; std::string last, made; } starts[] = {{0, "", first}, {25, first, second}, {-1, second, third}};
  for (const auto &start : starts) {
    if (!start.last.empty()) Age(start.last, start.age);
    for (const char *save : {"1", "2"}) {
      Write("saves/Ship.sts", start.made + save);
      Keep("saves/Ship.sts", date);
    }
    EXPECT_EQ(Content("saves/" + start.made), start.made + "1") << "the first save's";
  }
  EXPECT_FALSE(fs::exists("saves/Ship1970-01-01 4.bak"));
  EXPECT_TRUE(Names().size() == 11 && fs::exists("saves/" + second)) << "those with a number count like others";
}

TEST_F(Backup, ADamagedFileIsNoneAndLeavesTheDayToAGoodOne) {
  Fill(ship, MixedCells(300, 1));
  ship->fileStem = "Ship";
  ASSERT_EQ(SaveShipByName(ship), 1);
  const std::string good = ReadText("saves/Ship.sts"), backup = "saves/Ship" + LocalDate() + ".bak";
  std::string hurt = good;
  hurt[hurt.size() / 2] = static_cast<char>(hurt[hurt.size() / 2] ^ 16);
  for (const std::string &file : {std::string(), good.substr(0, good.size() / 2), good.substr(0, good.size() - 1), hurt, std::string("no ship")}) {
    WriteText("saves/Ship.sts", file);
    Ship *loaded = NewShip({}, "Ship");
    const bool read = LoadShipByName(loaded, "Ship") != 0;
    loaded->fileStem = "Ship";  // as if the player had called it so
    EXPECT_EQ(SaveShipByName(loaded), 1);
    EXPECT_FALSE(fs::exists(backup)) << file.size();
    EXPECT_TRUE(!read || (SaveShipByName(loaded) == 1 && !fs::exists(backup))) << "nor is the half that was read";
    Drop(loaded);
  }
  for (const std::string &name : Names())
    if (name.find(".damaged") != std::string::npos) fs::remove("saves/" + name);
  WriteText("saves/Ship.sts", hurt);  // hurt behind the game's back
  EXPECT_TRUE(SaveShipByName(ship) == 1 && !fs::exists(backup));
  EXPECT_TRUE(SaveShipByName(ship) == 1 && fs::exists(backup)) << "the next save's is the day's";
}

// What a run of its own does: another ship takes the name.
static void SaveInAnotherRun(unsigned number) {
  Ship *other = NewShip({}, "Other");
  Fill(other, MixedCells(10 + number, number));
  EXPECT_EQ(SaveShipStream(other, "saves/Other.sts"), 1);
  Drop(other);
  fs::remove("saves/Other" + LocalDate() + ".bak");
  EXPECT_EQ(std::system(TARNVALE_BINARIES "/tools/ship/tarnvale-ship convert --force Other.sts Ship.sts >>said 2>&1"), 0) << ReadText("said");
}

TEST_F(Backup, EachRunKeepsWhatItFindsAndManyRunsOfADaySpareTheDaysBefore) {
  const std::string today = "Ship" + LocalDate();
  std::set<std::string> expected = {"Other.sts", "Ship.sts"};
  for (int day = 1; day <= 4; ++day)
    for (const char *number : {"", " 2"}) {
      const std::string name = "Ship2020-01-0" + std::to_string(day) + number + ".bak";
      Write("saves/" + name, name);
      Age(name, 1000 - 10 * day - static_cast<int>(std::string(number).size()));
      if (*number != '\0') expected.insert(name);
    }
  SaveInAnotherRun(0);
  for (unsigned run = 1; run <= 12; ++run) {
    const std::string before = ReadText("saves/Ship.sts");
    SaveInAnotherRun(run);
    const std::set<std::string> names = Names();
    EXPECT_EQ(std::count_if(names.begin(), names.end(), [&](const auto &n) { return ReadText("saves/" + n) == before; }), 1) << run;
    EXPECT_TRUE(std::includes(names.begin(), names.end(), expected.begin(), expected.end())) << run << ": one of each day before";
    EXPECT_TRUE(names.contains(today + ".bak") && names.size() <= 12) << run << ": today's first";
  }
  EXPECT_EQ(Names().size(), 12u);
  fs::copy_file("saves/Ship.sts", "saves/Other.sts", fs::copy_options::overwrite_existing);
  for (int run = 0; run < 2; ++run) EXPECT_EQ(std::system(TARNVALE_BINARIES "/tools/ship/tarnvale-ship convert --force Other.sts Ship.sts >>said 2>&1"), 0);
  const std::set<std::string> same = Names();
  EXPECT_EQ(std::count_if(same.begin(), same.end(), [](const auto &n) { return ReadText("saves/" + n) == ReadText("saves/Ship.sts"); }), 3)
      << "Ship, Other, and one backup of both runs";
}

// The commands of a paragraph of a page: its lines that are set in by four, with the tool where it was built.
static std::vector<std::string> Commands(const std::string &page, const std::string &from, const std::string &to) {
  const std::string text = ReadText(TARNVALE_ROOT "/docs/" + page);
  const size_t begin = text.find(from), end = text.find(to, begin);
  std::vector<std::string> commands;
  std::istringstream lines(begin == std::string::npos || end == std::string::npos ? "" : text.substr(begin, end - begin));
  for (std::string line; std::getline(lines, line);)
    if (line.starts_with("    ")) commands.push_back(line.substr(4));
  for (std::string &c : commands)
    if (c.starts_with("tarnvale-ship ")) c.insert(0, TARNVALE_BINARIES "/tools/ship/");
  return commands;
}

TEST_F(Backup, ThePageLeadsFromADamagedShipToTheGoodOne) {
  ship->fileStem = ship->displayName = "Default";
  const Cells good = MixedCells(400, 1);
  Fill(ship, good);
  ASSERT_EQ(SaveShipByName(ship), 1);
  Fill(ship, MixedCells(500, 2));
  ASSERT_EQ(SaveShipByName(ship), 1);
  fs::rename("saves/Default" + LocalDate() + ".bak", "saves/Default2026-11-23.bak");  // the day on the page
  const std::string whole = ReadText("saves/Default.sts");
  WriteText("saves/Default.sts", whole.substr(0, whole.size() / 2));
  Ship *played = NewShip({}, "Default");
  std::string news;
  LoadShipTelling(played, "Default", &news);
  EXPECT_NE(news, "");
  for (int esc = 0; esc < 3; ++esc) EXPECT_EQ(SaveShipTelling(played, &news), 1);
  Drop(played);
  EXPECT_EQ(Names(), (std::set<std::string>{"Default.sts", "Default.sts.damaged", "Default2026-11-23.bak"}));
  Age("Default2026-11-23.bak", 30);
  Ship *again = NewShip({}, "Default");  // the next day's start takes the rest for a whole ship
  LoadShipTelling(again, "Default", &news);
  EXPECT_EQ(news, "");
  EXPECT_EQ(SaveShipTelling(again, &news), 1);
  Drop(again);
  const std::string rest = "Default (rest)" + LocalDate() + ".bak";
  EXPECT_EQ(Names(), (std::set<std::string>{"Default.sts", "Default.sts.damaged", "Default2026-11-23.bak", rest})) << "the page's is the newest of its name";
  const std::vector<std::string> commands = Commands("ships.md", "**A damaged ship.**", "Without a backup");
  ASSERT_EQ(commands.size(), 4u) << "two that look and two that lead back";
  int failed = 0;
  for (const std::string &command : commands) failed += std::system((command + " >>said 2>&1").c_str()) != 0 ? 1 : 0;
  EXPECT_EQ(failed, 2) << "the looks tell of the damage: " << ReadText("said");
  EXPECT_EQ(Count(ReadText("said"), "saves/Default2026-11-23.bak: whole, 400 blocks"), 1) << ReadText("said");
  EXPECT_EQ(StreamCells("saves/Default.sts"), good);
  EXPECT_TRUE(fs::exists("saves/Lost.sts") && !fs::exists("saves/Default.sts.damaged2"));
  for (const std::string &command : Commands("ships.md", "Without a backup", "`Rescued.sts`")) EXPECT_NE(std::system((command + " >>said 2>&1").c_str()), -1);
  EXPECT_FALSE(StreamCells("saves/Rescued.sts").empty());
}

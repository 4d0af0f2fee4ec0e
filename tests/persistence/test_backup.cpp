// The daily backups: what a day's first save leaves, and that nothing of another ship ever goes.
#include "persistence/backup.h"

#include <set>

#include "persistence/ships.h"
#include "persistence/stream.h"

static std::set<std::string> Names() {
  std::set<std::string> names;
  for (const auto &entry : fs::directory_iterator("saves")) names.insert(entry.path().filename());
  return names;
}

static void Keep(const std::string &path, const std::string &date) {
  const std::string made = KeepBackup(path, date);
  if (!made.empty()) RemoveOldBackups(made);
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
    WriteText("saves/Ship.sts.new", date);
    fs::rename("saves/Ship.sts.new", "saves/Ship.sts");
    Keep("saves/Ship.sts", date);
    expected.insert("Ship" + date + ".bak");
    if (day >= 20) expected.erase("Ship2026-01-" + std::to_string(day - 10) + ".bak");
    ASSERT_EQ(Names(), expected) << day;
    EXPECT_EQ(ReadText("saves/Ship" + date + ".bak"), date);
  }
  Keep("saves/Ship.sts", "2019-12-31");  // a clock that went back
  EXPECT_EQ(ReadText("saves/Ship2019-12-31.bak"), "2026-01-30");
  Keep("saves/Ship.sts", "2026-01-30");
  EXPECT_EQ(ReadText("saves/Ship2026-01-30.bak"), "2026-01-30");
  for (const char *path : {"saves/Ship.sss", "saves/none.sts", "nowhere/Ship.sts"}) Keep(path, "2026-02-01");
  for (const std::string &name : Names()) EXPECT_EQ(name.find("2026-02-01"), std::string::npos) << name;
  expected = Names();
  Fill(ship, MixedCells(500, 1));
  EXPECT_EQ(OnFullDisk(100, [this] { return SaveShipStream(ship, "saves/Ship.sts"); }), 0);
  EXPECT_EQ(Names(), expected) << "a save that fails costs no backup";
}

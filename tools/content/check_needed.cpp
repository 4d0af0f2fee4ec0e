// Looks for the components that the rules of the game name: markers, phases, and the pieces that join up.
#include "check_parts.h"

namespace {

constexpr int HighestKeptRow = 1023;  // the game keeps some row numbers in ten bits
constexpr int PlatingForms = 8;

constexpr int singles[] = {2,   6,   10,  44,  160, 250, 800, 850, 900, 70,  80,  83,  94,
                           240, 270, 360, 362, 450, 550, 551, 600, 601};

// Rules count rows from the first: `count` rows, whose ids follow one another.
struct Family {
  int id;
  int count;
};

constexpr Family families[] = {{20, 5},  {310, 4},  {340, 5}, {30, 2},  {120, 2}, {122, 2},  {124, 2},
                               {350, 8}, {200, 12}, {320, 3}, {370, 3}, {420, 4}, {3520, 5}, {215, 5}};

constexpr int plated[] = {251, 261, 510, 520, 530, 560, 570, 580, 610, 620, 630};

// The forms of a duct by rows from its first: 4 is a piece for itself.
constexpr int DuctId = 40;
constexpr int ductForms[] = {0, 1, 2, 3, 5, 6};

}  // namespace

static std::string Named(int id) {
  return "id " + std::to_string(id);
}

// The row of an id, from 1; 0, with a fault, for none.
static int NeededRow(const TextFile &file, const TableIds &ids, int id) {
  const int row = RowOfId(ids, id);
  if (row == 0) Fault(file.path, 0, "has no " + Named(id));
  return row;
}

// The row `step` rows below a first one, if it belongs to the family; null, with a fault, if not.
static const Row *Member(const TextFile &file, int first, int step) {
  const size_t at = static_cast<size_t>(first - 1 + step);
  if (at < file.rows.size() && Number(file.rows[at], 10) == -step) return &file.rows[at];
  const Row &base = file.rows[static_cast<size_t>(first - 1)];
  Fault(file.path, base.line,
        "row " + std::to_string(step) + " of the family of " + base.fields[0] + " isn't behind it");
  return nullptr;
}

static void CheckNeededFamily(const TextFile &file, const TableIds &ids, const Family &family) {
  const int first = NeededRow(file, ids, family.id);
  if (first == 0) return;
  for (int i = 0; i < family.count; i++) {
    const Row *row = Member(file, first, i);
    if (row == nullptr) return;
    const int id = Number(*row, 1);
    if (id != family.id + i) Fault(file.path, row->line, "isn't " + Named(family.id + i));
  }
}

static void CheckDuct(const TextFile &file, const TableIds &ids) {
  const int first = NeededRow(file, ids, DuctId);
  if (first == 0) return;
  for (const int step : ductForms) {
    const Row *row = Member(file, first, step);
    if (row == nullptr) return;
    const int id = Number(*row, 1);
    if (id != DuctId + step) Fault(file.path, row->line, "isn't " + Named(DuctId + step));
  }
}

// An edge, a corner, and the others flat.
static void CheckPlating(const TextFile &file, const TableIds &ids, int id) {
  const int first = NeededRow(file, ids, id);
  if (first == 0) return;
  for (int i = 0; i < PlatingForms; i++) {
    const Row *row = Member(file, first, i);
    if (row == nullptr) return;
    const std::string kind = i == 0 ? "platingedg" : i == 1 ? "platingcor" : "plating";
    if (row->fields[8] != kind) Fault(file.path, row->line, "isn't of the class " + kind);
  }
}

void CheckNeededComponents(const TextFile &file, const TableIds &ids) {
  for (const int id : singles) NeededRow(file, ids, id);
  for (const Family &family : families) CheckNeededFamily(file, ids, family);
  CheckDuct(file, ids);
  for (const int id : plated) CheckPlating(file, ids, id);
  const int plate = RowOfId(ids, 250);
  if (plate != 0 && file.rows[static_cast<size_t>(plate - 1)].fields[8] != "plating") {
    Fault(file.path, file.rows[static_cast<size_t>(plate - 1)].line, "isn't of the class plating");
  }
  for (const int id : {160, 215}) {
    if (RowOfId(ids, id) > HighestKeptRow) Fault(file.path, 0, Named(id) + " must lie in a row under 1024");
  }
  for (const size_t row : {1U, 3U, 4U}) {
    if (file.rows.size() < row || file.rows[row - 1].fields[8] != "debug") {
      Fault(file.path, 0, "row " + std::to_string(row) + " isn't a marker of class debug");
    }
  }
}

// The families that join up with their neighbours, and the other things that are placed by rules of their own: their
// ids are those that the rules name.
#include "components.h"
#include "shapes_families.h"

#include <list>
#include <string>

namespace {

constexpr int LitPlating = 570;  // its edges and corners give light

struct Thing {
  int id;
  const char *name, *stem;
};

}  // namespace

// A stem for each form: the name and its number from 1 on. They live as long as the program.
static std::vector<const char *> Stems(const char *name, int count) {
  static std::list<std::string> stems;
  std::vector<const char *> out;
  for (int i = 1; i <= count; i++) out.push_back(stems.emplace_back(std::string(name) + std::to_string(i)).c_str());
  return out;
}

static void AddFamily(std::vector<ComponentRow> *rows, int id, const char *name, const char *stem,
                      void (*draw)(Grid &, int), const char *tags, int count) {
  AddForms(rows, Plain(id, name, nullptr, draw, tags), Stems(stem, count).data(), count);
}

// The fan stands within the ducts' rows, but is a thing of its own: ducts join up with it, and it stays as it is.
static void AddDucts(std::vector<ComponentRow> *rows) {
  AddFamily(rows, 40, "Duct", "duct", DrawDuct, "Ducts|Common", 7);
  ComponentRow &fan = (*rows)[rows->size() - 3];
  fan.name = "DuctFan";
  fan.stem = "ductfan";
  fan.familyOffset = 0;
}

static void AddJoining(std::vector<ComponentRow> *rows) {
  AddFamily(rows, 20, "Crawlway", "crawlway", DrawCrawlway, "Corridors|Common", 5);
  AddDucts(rows);
  AddFamily(rows, 310, "CableRun", "cablerun", DrawCableRun, "Cables|Common", 4);
  AddFamily(rows, 340, "PipeRun", "piperun", DrawPipeRun, "Pipes|Common", 5);
}

static void AddSeveralCells(std::vector<ComponentRow> *rows) {
  AddFamily(rows, 30, "Berth", "berth", DrawBerth, "Living", 2);
  AddFamily(rows, 120, "Wardrobe", "wardrobe", DrawWardrobe, "Living", 2);
  AddFamily(rows, 122, "Coolant", "coolant", DrawCoolant, "Machines", 2);
  AddFamily(rows, 124, "SuitLocker", "suitlocker", DrawSuitLocker, "Living", 2);
  AddFamily(rows, 350, "FusionCore", "fusioncore", DrawFusionCore, "Machines|Common", 8);
  ComponentRow &core = (*rows)[rows->size() - 8];
  core = Lamp(core, 96, 170, 160);
}

static void AddPlatingStyle(std::vector<ComponentRow> *rows, int style, int id, const char *name, const char *stem) {
  const size_t first = rows->size();
  AddFamily(rows, id, name, stem, DrawPlating, "Plating|Hull", PlatingLooks);
  for (size_t i = 0; i < PlatingLooks; i++) {
    ComponentRow &row = (*rows)[first + i];
    row.form = style * PlatingLooks + static_cast<int>(i);
    if (id == LitPlating && i < 2) row = Lamp(row, 70, 96, 108);
    row.kind = i == 0 ? "platingedg" : i == 1 ? "platingcor" : "plating";
  }
}

static void AddPlating(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(250, "HullPlating", "hullplating", DrawFlatPlating, "Plating|Common"));
  rows->back().kind = "plating";
  static constexpr Thing styles[] = {
      {251, "BevelledHull", "bevelled"}, {261, "RoundedHull", "rounded"},   {510, "SteppedHull", "stepped"},
      {520, "RibbedHull", "ribbed"},     {530, "Canopy", "canopy"},         {560, "ArmouredHull", "armoured"},
      {570, "LitHull", "lithull"},       {580, "HeatTiles", "heattiles"},   {610, "Brickwork", "brickwork"},
      {620, "HazardHull", "hazardhull"}, {630, "PaddedWall", "paddedwall"}};
  int style = 0;
  for (const Thing &thing : styles) AddPlatingStyle(rows, style++, thing.id, thing.name, thing.stem);
}

static void AddRandomLooks(std::vector<ComponentRow> *rows) {
  AddFamily(rows, 200, "Machinery", "machinery", DrawMachinery, "Machines|Common", 12);
  AddFamily(rows, 320, "Conglomerate", "conglomerate", DrawConglomerate, "Rock", 3);
  AddFamily(rows, 370, "Boulder", "boulder", DrawBoulder, "Rock", 3);
  AddFamily(rows, 420, "Circuitry", "circuitry", DrawCircuitry, "Machines", 4);
  AddFamily(rows, 3520, "Crystal", "crystal", DrawCrystal, "Rock", 5);
}

static void AddLines(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(70, "Ramp", "ramp", DrawRamp, "Walkways|Common"));
  rows->push_back(Plain(80, "Stairs", "stairs", DrawStairs, "Walkways"));
  rows->push_back(Plain(83, "CableTray", "cabletray", DrawTray, "Cables"));
  rows->push_back(Plain(94, "Handrail", "handrail", DrawHandrail, "Walkways"));
  rows->push_back(Plain(240, "Track", "track", DrawTrack, "Transport"));
  rows->push_back(Plain(270, "Wainscot", "wainscot", DrawWainscot, "Corridors"));
  rows->push_back(Plain(330, "Mesh", "mesh", DrawMesh, "Structure"));
  rows->push_back(Plain(360, "IBeam", "ibeam", DrawBeamLine, "Structure"));
  rows->push_back(Plain(362, "Channel", "channel", DrawBeamLine, "Structure", 1));
  rows->push_back(Plain(450, "Planking", "planking", DrawPlanking, "Blocks"));
  rows->push_back(Plain(550, "Fence", "fence", DrawFence, "Walkways"));
  rows->push_back(Plain(551, "FencePost", "fencepost", DrawFence, "Walkways", 1));
  rows->push_back(Plain(600, "Conveyor", "conveyor", DrawConveyor, "Transport"));
  rows->push_back(Plain(601, "Rollers", "rollers", DrawConveyor, "Transport", 1));
}

// Cubes that hide what lies behind them: only some ids are known to do so.
static void AddCubes(std::vector<ComponentRow> *rows) {
  static constexpr Thing cubes[] = {
      {11, "Deck", "deck"}, {12, "Tiles", "tiles"}, {13, "Bricks", "bricks"}, {14, "Slats", "slats"},
      {60, "Panelling", "panelling"}, {61, "Grille", "grille"}, {62, "Checker", "checker"}, {63, "Banded", "banded"},
      {90, "Bulkhead", "bulkhead"}, {91, "BracedWall", "bracedwall"}, {400, "Marble", "marble"},
      {401, "Mosaic", "mosaic"}, {402, "Parquet", "parquet"}, {403, "Cobble", "cobble"},
      {760, "Sandstone", "sandstone"}, {761, "Basalt", "basalt"}, {762, "Ice", "ice"}, {763, "Soil", "soil"}};
  int form = 0;
  for (const Thing &cube : cubes) {
    rows->push_back(Plain(cube.id, cube.name, cube.stem, DrawFacedCube, form < 14 ? "Blocks" : "Rock", form));
    form++;
  }
}

void AppendFamilies(std::vector<ComponentRow> *rows) {
  AddJoining(rows);
  AddSeveralCells(rows);
  AddPlating(rows);
  AddRandomLooks(rows);
  AddLines(rows);
  AddCubes(rows);
}

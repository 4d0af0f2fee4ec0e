// The components of the game, and the table file that holds them.
#include "components.h"

#include "output.h"
#include "shapes.h"

#include <cstdio>
#include <cstring>
#include <string>

ComponentRow Plain(int id, const char *name, const char *stem, void (*draw)(Grid &, int), const char *tags, int form) {
  ComponentRow row{};
  row.id = id;
  row.name = name;
  row.stem = stem;
  row.draw = draw;
  row.form = form;
  row.tags = tags;
  return row;
}

static ComponentRow Marker(int id, const char *name, const char *stem, void (*draw)(Grid &, int)) {
  ComponentRow row = Plain(id, name, stem, draw, "debug");
  row.kind = "debug";
  return row;
}

ComponentRow Lamp(ComponentRow row, int red, int green, int blue) {
  row.kind = "light";
  row.lightRed = red;
  row.lightGreen = green;
  row.lightBlue = blue;
  return row;
}

void AddForms(std::vector<ComponentRow> *rows, ComponentRow base, const char *const *stems, int count) {
  const int firstId = base.id;
  for (int i = 0; i < count; i++) {
    ComponentRow row = base;
    row.id = firstId + i;
    row.stem = stems[i];
    row.form = i;
    row.familyOffset = -i;
    if (i > 0) row.name = nullptr;
    rows->push_back(row);
  }
}

void AddAnimation(std::vector<ComponentRow> *rows, ComponentRow base, const char *const *stems, int count) {
  const size_t first = rows->size();
  if (std::strcmp(base.kind, "singleanim") != 0) base.kind = "animation";
  AddForms(rows, base, stems, count);
  for (int i = 0; i < count; i++) {
    (*rows)[first + static_cast<size_t>(i)].frameStep = i + 1 < count ? 1 : 1 - count;
  }
}

static void AddStaples(std::vector<ComponentRow> *rows) {
  rows->push_back(Marker(1, "NoTarget", "marker_none", DrawAimMarker));
  rows->push_back(Plain(2, "Block", "block", DrawCube, "Common|Hull"));
  rows->push_back(Marker(3, "FaceMarker", "marker_face", DrawFaceMarker));
  rows->push_back(Marker(4, "CellMarker", "marker_cell", DrawCellMarker));
  rows->push_back(Marker(6, "Missing", "missing", DrawPlaceholder));
  rows->push_back(Lamp(Plain(10, "Heartstone", "heartstone", DrawHeart, "Rock|Lights"), 255, 208, 156));
  rows->push_back(Marker(160, "Figure", "figure", DrawFigure));
  static const char *const rock[] = {"rock1", "rock2", "rock3", "rock4", "rock5"};
  AddForms(rows, Plain(215, "Rock", nullptr, DrawRock, "Rock|Common"), rock, 5);
  rows->push_back(Plain(800, "Liquid", "liquid", DrawLiquid, "Matter"));
  rows->push_back(Plain(850, "Gas", "gas", DrawGas, "Matter"));
  rows->push_back(Plain(900, "Slag", "slag", DrawSolid, "Matter"));
}

static void AddLights(std::vector<ComponentRow> *rows) {
  rows->push_back(Lamp(Plain(1000, "Lamp", "lamp", DrawCeilingLamp, "Lights|Common"), 255, 214, 160));
  rows->push_back(Lamp(Plain(1001, "Striplight", "striplight", DrawStripLamp, "Lights|Common"), 196, 226, 255));
  rows->push_back(Lamp(Plain(1002, "Lantern", "lantern", DrawLantern, "Lights"), 255, 172, 84));
  static const char *const beacon[] = {"beacon1", "beacon2", "beacon3", "beacon4"};
  AddAnimation(rows, Lamp(Plain(1004, "Beacon", nullptr, DrawBeacon, "Lights"), 150, 48, 36), beacon, 4);
}

static void AddHull(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(1010, "Window", "window", DrawWindow, "Glass|Common"));
  rows->push_back(Plain(1011, "Porthole", "porthole", DrawPorthole, "Glass"));
  rows->push_back(Plain(1012, "Pane", "pane", DrawPane, "Glass"));
  rows->push_back(Plain(1030, "Plating", "plating", DrawHullPlate, "Hull|Common"));
  rows->push_back(Plain(1031, "Ribbing", "ribbing", DrawRibs, "Hull"));
  rows->push_back(Plain(1032, "Armour", "armour", DrawArmour, "Hull"));
  rows->push_back(Plain(1033, "Wedge", "wedge", DrawWedge, "Hull|Common"));
  rows->push_back(Plain(1034, "Corner", "corner", DrawCornerWedge, "Hull"));
  rows->push_back(Plain(1035, "Slab", "slab", DrawSlab, "Hull|Common", 7));
  rows->push_back(Plain(1036, "Sheet", "sheet", DrawSlab, "Hull", 1));
  rows->push_back(Plain(1037, "Steps", "steps", DrawStep, "Hull"));
  rows->push_back(Plain(1038, "Hazard", "hazard", DrawHazard, "Hull"));
  rows->push_back(Plain(1039, "Hatch", "hatch", DrawHatch, "Hull"));
}

static void AddStructure(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(1050, "Strut", "strut", DrawStrut, "Structure|Common"));
  rows->push_back(Plain(1051, "Girder", "girder", DrawGirder, "Structure"));
  rows->push_back(Plain(1052, "Truss", "truss", DrawTruss, "Structure"));
  rows->push_back(Plain(1053, "Pillar", "pillar", DrawPillar, "Structure"));
  rows->push_back(Plain(1054, "Grate", "grate", DrawGrate, "Structure|Common"));
  rows->push_back(Plain(1055, "Railing", "railing", DrawRailing, "Structure"));
  rows->push_back(Plain(1056, "Ladder", "ladder", DrawLadder, "Structure"));
  rows->push_back(Plain(1070, "Pipe", "pipe", DrawPipe, "Pipes|Common"));
  rows->push_back(Plain(1071, "Elbow", "elbow", DrawPipeBend, "Pipes"));
  rows->push_back(Plain(1072, "Junction", "junction", DrawPipeCross, "Pipes"));
  rows->push_back(Plain(1073, "Valve", "valve", DrawValve, "Pipes"));
  rows->push_back(Plain(1074, "Cables", "cables", DrawCables, "Pipes"));
}

static void AddMachines(std::vector<ComponentRow> *rows) {
  static const char *const fan[] = {"fan1", "fan2", "fan3"};
  AddAnimation(rows, Plain(1080, "Fan", nullptr, DrawFan, "Machines|Common"), fan, 3);
  rows->push_back(Plain(1090, "Vent", "vent", DrawVent, "Machines|Common"));
  rows->push_back(Plain(1091, "Console", "console", DrawConsole, "Machines|Common"));
  rows->push_back(Plain(1092, "Screen", "screen", DrawScreen, "Machines"));
  rows->push_back(Plain(1093, "Panel", "panel", DrawPanel, "Machines"));
  rows->push_back(Plain(1094, "Tank", "tank", DrawTank, "Machines"));
  rows->push_back(Lamp(Plain(1095, "Reactor", "reactor", DrawReactor, "Machines"), 90, 150, 140));
  rows->push_back(Plain(1096, "Generator", "generator", DrawGenerator, "Machines"));
  rows->push_back(Plain(1097, "Battery", "battery", DrawBattery, "Machines"));
  rows->push_back(Plain(1098, "Rack", "rack", DrawRack, "Machines"));
  rows->push_back(Plain(1099, "Thruster", "thruster", DrawThruster, "Machines"));
  rows->push_back(Plain(1100, "Antenna", "antenna", DrawAntenna, "Machines"));
  rows->push_back(Plain(1101, "Dish", "dish", DrawDish, "Machines"));
  rows->push_back(Plain(1102, "Pump", "pump", DrawPump, "Machines|Pipes"));
  rows->push_back(Plain(1103, "Radiator", "radiator", DrawRadiator, "Machines"));
}

static void AddLiving(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(1120, "Seat", "seat", DrawSeat, "Living|Common"));
  rows->push_back(Plain(1121, "Crate", "crate", DrawCrate, "Living|Common"));
  rows->push_back(Plain(1122, "Barrel", "barrel", DrawBarrel, "Living"));
  rows->push_back(Plain(1123, "Locker", "locker", DrawLocker, "Living"));
  rows->push_back(Plain(1124, "Table", "table", DrawTable, "Living"));
  rows->push_back(Plain(1125, "Bunk", "bunk", DrawBunk, "Living"));
  rows->push_back(Plain(1126, "Planter", "planter", DrawPlanter, "Living"));
  rows->push_back(Plain(1127, "Shelf", "shelf", DrawShelf, "Living"));
}

static std::vector<ComponentRow> AllRows() {
  std::vector<ComponentRow> rows;
  AddStaples(&rows);
  AddLights(&rows);
  AddHull(&rows);
  AddStructure(&rows);
  AddMachines(&rows);
  AddLiving(&rows);
  AppendFamilies(&rows);
  AppendMore(&rows);
  return rows;
}

const std::vector<ComponentRow> &Components() {
  static const std::vector<ComponentRow> rows = AllRows();
  return rows;
}

static const char componentsHead[] =
    "# Components: the shapes of blocks. One row a line; a line that begins with # is a comment.\n"
    "# Saved ships name a row by its place in this file: add rows at the end, and never reorder them.\n"
    "# Rows 1, 3 and 4 are the aim's markers: nothing aimed at, the aimed face, the whole cell.\n"
    "#\n"
    "#  1 id, stable, not 0; language files and some rules name a component by it\n"
    "#  2 price, 3 strength, 4 power: not used yet\n"
    "#  5 red, 6 green, 7 blue of the light that the block gives, all 0 for none\n"
    "#  8 stem of the graphic file: config/graphics/components/STEM.3mp\n"
    "#  9 class, under 64 letters: what the block does. debug, singleanim, animation, door, airlock, plating,\n"
    "#    platingedg and platingcor have rules of their own\n"
    "# 10 rows back to the first of its family, 0 or negative; only the first stands in the block list\n"
    "# 11 note, under 128 letters, not used yet\n"
    "# 12 rows to the next frame of an animation; the last frame leads back, 0 stands still\n"
    "# 13 one or two category words joined by |, each under 32 letters; the first makes its category\n"
    "# Words hold no blanks. Ids 6, 10, 160, 215 to 219, 800, 850 and 900 must be here.\n"
    "#\n"
    "#id price stren power red green blue stem class family note frame tags\n";

static std::string ComponentLine(const ComponentRow &c) {
  char line[256];
  std::snprintf(line, sizeof line, "%4d %d %d %d %3d %3d %3d %-12s %-9s %2d %s %2d %s\n", c.id, 1, 100, 0, c.lightRed,
                c.lightGreen, c.lightBlue, c.stem, c.kind, c.familyOffset, "-", c.frameStep, c.tags);
  return line;
}

bool WriteComponents() {
  std::string text = componentsHead;
  for (const ComponentRow &row : Components()) {
    text += ComponentLine(row);
    Grid grid;
    row.draw(grid, row.form);
    if (!WriteGrid(grid, std::string("config/graphics/components/") + row.stem + ".3mp")) return false;
  }
  return WriteIfChanged("config/text/components", text);
}

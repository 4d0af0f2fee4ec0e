// The materials of the game, and the table file that holds them.
#include "materials.h"

#include "output.h"

#include <cstdio>
#include <string>

// Colours are light: a block shows its colour times the light that falls on it, and light is scarce.
static const std::vector<MaterialRow> materialRows = {
    // The first six are what a new player meets: hull, plate, paint, brass, the asteroid's rock, glass.
    {1, "Hull", 2700, 160, 2430, 930, 2740, 228, 223, 210, 255, "metal", "Common|Metal"},
    {2, "Graphite", 2260, 120, 1600, 3900, 4300, 120, 126, 134, 255, "hard", "Common|Ceramic"},
    {3, "Oxide", 5250, 12, 3400, 1838, 3100, 214, 118, 70, 255, "metal", "Common|Metal|Paint"},
    {4, "Brass", 8500, 110, 3200, 1200, 2840, 222, 182, 100, 255, "metal", "Common|Metal"},
    {5, "Chondrite", 3350, 2, 2500, 1450, 3000, 184, 180, 174, 255, "stone", "Stone|Common"},
    {6, "Glass", 2500, 1, 2100, 1700, 2500, 196, 224, 222, 72, "crystal", "Glass|Common"},
    // Metals
    {10, "Iron", 7870, 80, 3530, 1811, 3134, 170, 172, 176, 255, "magnetic", "Metal"},
    {11, "Steel", 7850, 50, 3650, 1720, 3130, 188, 196, 204, 255, "magnetic", "Metal"},
    {12, "Aluminium", 2700, 237, 2430, 933, 2743, 214, 220, 226, 255, "metal", "Metal"},
    {13, "Titanium", 4500, 22, 2350, 1941, 3560, 188, 184, 192, 255, "metal", "Metal"},
    {14, "Copper", 8960, 400, 3450, 1358, 2835, 226, 140, 96, 255, "metal", "Metal"},
    {15, "Verdigris", 8600, 60, 3300, 1340, 2800, 112, 184, 166, 255, "metal", "Metal"},
    {16, "Bronze", 8800, 60, 3300, 1220, 2800, 196, 146, 88, 255, "metal", "Metal"},
    {17, "Nickel", 8900, 91, 3950, 1728, 3003, 206, 200, 182, 255, "magnetic", "Metal"},
    {18, "Lead", 11340, 35, 1460, 601, 2022, 134, 140, 158, 255, "metal", "Metal"},
    {19, "Gold", 19300, 318, 2490, 1337, 3243, 250, 204, 92, 255, "metal", "Metal"},
    {20, "Tungsten", 19250, 174, 2580, 3695, 6203, 150, 146, 142, 255, "metal", "Metal"},
    // Stone
    {30, "Basalt", 2950, 2, 2480, 1450, 3000, 132, 134, 142, 255, "stone", "Stone"},
    {31, "Granite", 2650, 3, 2100, 1500, 3000, 204, 178, 168, 255, "stone", "Stone"},
    {32, "Regolith", 1500, 1, 1200, 1400, 2900, 198, 190, 176, 255, "medium", "Stone"},
    {33, "Slate", 2750, 2, 2000, 1400, 2900, 126, 148, 160, 255, "stone", "Stone"},
    {34, "Ochre", 2900, 2, 2200, 1600, 3000, 222, 172, 96, 255, "stone", "Stone"},
    {35, "Olivine", 3300, 4, 2700, 2100, 3300, 164, 182, 110, 255, "stone", "Stone|Crystal"},
    // Ceramic
    {40, "Porcelain", 2400, 2, 2500, 1900, 3000, 244, 240, 230, 255, "ceramic", "Ceramic"},
    {41, "Terracotta", 2000, 1, 1700, 1600, 2900, 226, 142, 106, 255, "ceramic", "Ceramic"},
    {42, "Firebrick", 2100, 1, 1900, 2000, 3100, 228, 206, 164, 255, "ceramic", "Ceramic"},
    {43, "Celadon", 2400, 2, 2450, 1880, 3000, 170, 206, 186, 255, "ceramic", "Ceramic"},
    // Plastic and paint
    {50, "Bone", 1200, 1, 1500, 430, 700, 236, 226, 196, 255, "plastic", "Plastic|Paint"},
    {51, "Teal", 1200, 1, 1500, 430, 700, 92, 174, 168, 255, "plastic", "Paint|Plastic"},
    {52, "Rust", 1200, 1, 1500, 430, 700, 192, 88, 56, 255, "plastic", "Paint|Plastic"},
    {53, "Mustard", 1200, 1, 1500, 430, 700, 234, 186, 66, 255, "plastic", "Paint|Plastic"},
    {54, "Sky", 1200, 1, 1500, 430, 700, 150, 190, 222, 255, "plastic", "Paint|Plastic"},
    {55, "Plum", 1200, 1, 1500, 430, 700, 156, 112, 150, 255, "plastic", "Paint|Plastic"},
    {56, "Signal", 1200, 1, 1500, 430, 700, 244, 92, 64, 255, "plastic", "Paint|Plastic"},
    {57, "Ink", 1200, 1, 1500, 430, 700, 82, 92, 118, 255, "plastic", "Paint|Plastic"},
    // Soft and grown
    {60, "Felt", 300, 1, 400, 520, 700, 178, 168, 148, 255, "soft", "Fabric"},
    {61, "Canvas", 450, 1, 600, 520, 700, 226, 208, 168, 255, "soft", "Fabric"},
    {62, "Rubber", 1100, 1, 1900, 450, 720, 104, 106, 112, 255, "soft", "Fabric|Plastic"},
    {63, "Oak", 720, 1, 1200, 570, 800, 200, 152, 102, 255, "medium", "Organic"},
    {64, "Walnut", 640, 1, 1100, 570, 800, 152, 108, 80, 255, "medium", "Organic"},
    {65, "Moss", 500, 1, 1500, 500, 700, 132, 174, 92, 255, "organic", "Organic"},
    {66, "Soil", 1400, 1, 1800, 1400, 2900, 150, 118, 92, 255, "organic", "Organic"},
    // Clear and frozen
    {70, "Ice", 917, 2, 1930, 273, 373, 198, 228, 242, 168, "crystal", "Crystal"},
    {71, "Amber", 1080, 1, 1400, 570, 800, 252, 178, 72, 150, "crystal", "Crystal|Glass"},
    {72, "Quartz", 2650, 8, 1950, 1940, 2500, 240, 226, 234, 128, "crystal", "Crystal"},
    {73, "Smoked", 2500, 1, 2100, 1700, 2500, 110, 116, 124, 140, "crystal", "Glass"},
    {74, "Seaglass", 2500, 1, 2100, 1700, 2500, 132, 206, 186, 110, "crystal", "Glass"},
    // Made things
    {80, "Circuit", 1900, 30, 1700, 560, 1200, 108, 168, 128, 255, "tech", "Tech"},
    {81, "Lattice", 900, 90, 900, 3200, 4200, 172, 182, 206, 255, "tech", "Tech|Metal"},
    {82, "Foil", 1400, 200, 1500, 900, 2600, 248, 222, 150, 255, "tech", "Tech|Metal"},
    {90, "Checker", 1000, 1, 1000, 9000, 9500, 255, 0, 255, 255, "medium", "debug"},
    // What stands in for a material that a ship names and the table lacks.
    {110, "Butter", 911, 1, 1900, 305, 520, 250, 228, 140, 255, "soft", "Organic"},
    // What came later: more of each kind, and gems
    {83, "Solder", 7300, 67, 1660, 456, 2500, 202, 206, 196, 255, "metal", "Tech|Metal"},
    {84, "Silicon", 2330, 149, 1660, 1687, 3538, 140, 152, 180, 255, "crystal", "Tech|Crystal"},
    {85, "Ferrite", 4900, 4, 3700, 1650, 2900, 122, 118, 126, 255, "magnetic", "Tech|Ceramic"},
    {21, "Silver", 10490, 429, 2470, 1235, 2435, 228, 232, 240, 255, "metal", "Metal"},
    {22, "Platinum", 21450, 72, 2850, 2041, 4098, 220, 214, 206, 255, "metal", "Metal"},
    {23, "Cobalt", 8900, 100, 3750, 1768, 3200, 142, 158, 196, 255, "magnetic", "Metal"},
    {24, "Chrome", 7190, 94, 3220, 2180, 2944, 206, 222, 232, 255, "metal", "Metal"},
    {25, "Rosegold", 15200, 240, 2700, 1200, 3000, 244, 186, 164, 255, "metal", "Metal"},
    {36, "Marble", 2700, 3, 2380, 1612, 3000, 238, 232, 224, 255, "stone", "Stone"},
    {37, "Sandstone", 2300, 2, 1900, 1500, 2900, 224, 196, 152, 255, "stone", "Stone"},
    {38, "Obsidian", 2400, 1, 2200, 1300, 2900, 98, 92, 112, 255, "crystal", "Stone|Glass"},
    {39, "Serpentine", 2600, 2, 2500, 1500, 2900, 130, 172, 142, 255, "stone", "Stone"},
    {44, "Cobaltglaze", 2400, 2, 2450, 1880, 3000, 104, 136, 210, 255, "ceramic", "Ceramic|Paint"},
    {45, "Bisque", 2100, 1, 1900, 1850, 3000, 240, 212, 184, 255, "ceramic", "Ceramic"},
    {46, "Zirconia", 5680, 3, 2570, 2988, 4570, 232, 236, 244, 255, "ceramic", "Ceramic"},
    {58, "Lime", 1200, 1, 1500, 430, 700, 178, 214, 92, 255, "plastic", "Paint|Plastic"},
    {59, "Rose", 1200, 1, 1500, 430, 700, 238, 164, 176, 255, "plastic", "Paint|Plastic"},
    {100, "Lavender", 1200, 1, 1500, 430, 700, 196, 178, 232, 255, "plastic", "Paint|Plastic"},
    {101, "Mint", 1200, 1, 1500, 430, 700, 178, 232, 204, 255, "plastic", "Paint|Plastic"},
    {102, "Peach", 1200, 1, 1500, 430, 700, 250, 196, 150, 255, "plastic", "Paint|Plastic"},
    {103, "Chalk", 1200, 1, 1500, 430, 700, 250, 250, 246, 255, "plastic", "Paint|Plastic"},
    {104, "Resin", 1150, 1, 1700, 460, 720, 214, 158, 84, 255, "plastic", "Plastic"},
    {105, "Nylon", 1140, 1, 1930, 500, 740, 220, 226, 210, 255, "plastic", "Plastic|Fabric"},
    {106, "Foam", 60, 1, 90, 420, 690, 246, 232, 172, 255, "soft", "Plastic|Fabric"},
    {67, "Leather", 860, 1, 1300, 480, 700, 178, 120, 84, 255, "soft", "Fabric|Organic"},
    {68, "Wool", 320, 1, 430, 510, 700, 238, 224, 208, 255, "soft", "Fabric"},
    {69, "Velvet", 340, 1, 450, 510, 700, 166, 76, 96, 255, "soft", "Fabric"},
    {75, "Frost", 400, 1, 840, 273, 373, 228, 240, 248, 255, "crystal", "Frozen|Crystal"},
    {76, "Dryice", 1560, 1, 1900, 195, 217, 216, 226, 232, 214, "crystal", "Frozen"},
    {77, "Methane", 520, 1, 1200, 91, 112, 176, 206, 232, 150, "crystal", "Frozen"},
    {78, "Rosewindow", 2500, 1, 2100, 1700, 2500, 240, 150, 160, 110, "crystal", "Glass"},
    {79, "Honeyglass", 2500, 1, 2100, 1700, 2500, 250, 206, 120, 110, "crystal", "Glass"},
    {92, "Ruby", 4000, 40, 3100, 2313, 3250, 232, 70, 92, 170, "crystal", "Gem|Crystal"},
    {93, "Emerald", 2760, 5, 2300, 1680, 2900, 84, 208, 138, 170, "crystal", "Gem|Crystal"},
    {94, "Sapphire", 3980, 42, 3100, 2313, 3250, 90, 136, 236, 170, "crystal", "Gem|Crystal"},
    {95, "Amethyst", 2650, 8, 1950, 1940, 2500, 180, 128, 226, 170, "crystal", "Gem|Crystal"},
    {96, "Topaz", 3530, 8, 2700, 1900, 2900, 246, 214, 108, 170, "crystal", "Gem|Crystal"},
    {107, "Birch", 650, 1, 1100, 570, 800, 232, 212, 172, 255, "medium", "Organic"},
    {108, "Bamboo", 600, 1, 1050, 560, 790, 214, 204, 124, 255, "organic", "Organic"},
    {109, "Cork", 240, 1, 450, 540, 780, 206, 172, 130, 255, "soft", "Organic"},
};

static const char materialsHead[] =
    "# Materials: what blocks are made of. One row a line; a line that begins with # is a comment.\n"
    "# Saved ships name a row by its place in this file: add rows at the end, and never reorder them.\n"
    "#\n"
    "#  1 id, stable, not 0; language files name a material by it\n"
    "#  2 price, not used yet\n"
    "#  3 density, kilograms per cubic metre: the mass of a full block\n"
    "#  4 conductivity, watts per metre and kelvin\n"
    "#  5 heat capacity, kilojoules per cubic metre and kelvin, not 0\n"
    "#  6 melting point, kelvin        7 boiling point, kelvin, not below it\n"
    "#  8 hardness, 9 brittleness (0 to 100), 10 strength, 11 wear: not used yet\n"
    "# 12 red, 13 green, 14 blue, 0 to 255: keep them light, since light is scarce out here\n"
    "# 15 alpha: 255 is solid, anything else is see-through\n"
    "# 16 sound: soft organic medium plastic hard ceramic stone crystal metal magnetic tech\n"
    "# 17 one to four category words joined by |, each under 32 letters; the first makes its category\n"
    "# Words hold no blanks. Row 5 is the rock of asteroids; id 110 stands in for unknown materials.\n"
    "#\n"
    "#id price dens cond hcap melt boil hard brit stren wear  red green blue alpha sound tags\n";

const std::vector<MaterialRow> &Materials() {
  return materialRows;
}

// The columns that the game does not use yet follow from the others.
static std::string MaterialLine(const MaterialRow &m) {
  const int price = 1 + m.density / 100 + m.conductivity / 4;
  const int hardness = m.melting > 4000 ? 100 : m.melting / 40;
  const int brittleness = m.alpha < 255 ? 80 : 20 + m.heatCapacity / 100;
  char line[256];
  std::snprintf(line, sizeof line, "%3d %5d %5d %4d %4d %4d %4d %4d %4d %5d %4d  %3d %5d %4d %5d %s %s\n", m.id, price,
                m.density, m.conductivity, m.heatCapacity, m.melting, m.boiling, hardness, brittleness,
                m.density / 20 + m.melting / 10, 10, m.red, m.green, m.blue, m.alpha, m.soundClass, m.tags);
  return line;
}

bool WriteMaterials() {
  std::string text = materialsHead;
  for (const MaterialRow &row : materialRows) text += MaterialLine(row);
  return WriteIfChanged("config/text/materials", text);
}

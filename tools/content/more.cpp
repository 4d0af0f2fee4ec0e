// More things for a ship: doors, coloured lamps, furnishings, signs, shapes to build from.
#include "components.h"
#include "shapes_more.h"

static ComponentRow OfClass(const char *kind, ComponentRow row) {
  row.kind = kind;
  return row;
}

static void AddDoors(std::vector<ComponentRow> *rows) {
  const auto door = [&](int id, const char *name, const char *stem, void (*draw)(Grid &, int), const char *tags) {
    rows->push_back(OfClass("door", Plain(id, name, stem, draw, tags)));
  };
  door(2000, "Slidingdoor", "slidingdoor", DrawSlidingDoor, "Doors|Common");
  door(2001, "Hatchdoor", "hatchdoor", DrawBulkheadDoor, "Doors");
  door(2002, "Glassdoor", "glassdoor", DrawGlassDoor, "Doors|Glass");
  door(2003, "Shutter", "shutter", DrawShutter, "Doors");
  door(2004, "Gate", "gate", DrawGate, "Doors");
  door(2005, "Doorway", "doorway", DrawDoorway, "Doors");
  door(2006, "Cabindoor", "cabindoor", DrawCabinDoor, "Doors|Furniture");
  door(2007, "Blastdoor", "blastdoor", DrawBlastDoor, "Doors");
  rows->push_back(OfClass("airlock", Plain(2010, "Airlock", "airlock", DrawAirlock, "Doors|Common")));
  rows->push_back(OfClass("airlock", Plain(2011, "Lockdoor", "lockdoor", DrawLockDoor, "Doors")));
  rows->push_back(OfClass("airlock", Plain(2012, "Iris", "iris", DrawIris, "Doors")));
  rows->push_back(OfClass("airlock", Plain(2013, "Dockring", "dockring", DrawDockRing, "Doors")));
}

namespace {

struct LampForm {
  int id;
  void (*draw)(Grid &, int);
  const char *names[LampColours];  // red, green, blue, amber, white, violet
  const char *stems[LampColours];
};

}  // namespace

static const LampForm lampForms[] = {
    {2020, DrawDomeLamp,
     {"DomeRed", "DomeGreen", "DomeBlue", "DomeAmber", "DomeWhite", "DomeViolet"},
     {"dome_red", "dome_green", "dome_blue", "dome_amber", "dome_white", "dome_violet"}},
    {2030, DrawWallLamp,
     {"SconceRed", "SconceGreen", "SconceBlue", "SconceAmber", "SconceWhite", "SconceViolet"},
     {"sconce_red", "sconce_green", "sconce_blue", "sconce_amber", "sconce_white", "sconce_violet"}},
    {2040, DrawPostLamp,
     {"PostRed", "PostGreen", "PostBlue", "PostAmber", "PostWhite", "PostViolet"},
     {"post_red", "post_green", "post_blue", "post_amber", "post_white", "post_violet"}},
    {2050, DrawTubeLamp,
     {"TubeRed", "TubeGreen", "TubeBlue", "TubeAmber", "TubeWhite", "TubeViolet"},
     {"tube_red", "tube_green", "tube_blue", "tube_amber", "tube_white", "tube_violet"}},
};

static const int lampLight[LampColours][3] = {{255, 72, 56},  {84, 255, 112},  {84, 144, 255},
                                              {255, 172, 72}, {255, 250, 240}, {186, 104, 255}};

static void AddLamps(std::vector<ComponentRow> *rows) {
  for (const LampForm &lamp : lampForms) {
    for (int c = 0; c < LampColours; c++) {
      const int *light = lampLight[c];
      rows->push_back(Lamp(Plain(lamp.id + c, lamp.names[c], lamp.stems[c], lamp.draw, "Lights", c), light[0], light[1],
                           light[2]));
    }
  }
  rows->push_back(Lamp(Plain(2060, "Floodlight", "floodlight", DrawFloodlight, "Lights"), 240, 250, 255));
  rows->push_back(Lamp(Plain(2061, "Spotlight", "spotlight", DrawSpotlight, "Lights"), 255, 240, 210));
  rows->push_back(Lamp(Plain(2062, "Runway", "runway", DrawRunway, "Lights|Signs"), 200, 130, 50));
  rows->push_back(Lamp(Plain(2063, "Lightpanel", "lightpanel", DrawLightPanel, "Lights|Panels"), 226, 240, 255));
}

// Each of these changes its picture by itself; those of the class "singleanim" blink or scroll in place.
static void AddAnimated(std::vector<ComponentRow> *rows) {
  static const char *const blinker[] = {"blinker1", "blinker2"};
  static const char *const radar[] = {"radar1", "radar2", "radar3", "radar4", "radar5", "radar6", "radar7", "radar8"};
  static const char *const monitor[] = {"monitor1", "monitor2", "monitor3"};
  static const char *const turbine[] = {"turbine1", "turbine2", "turbine3"};
  static const char *const pulse[] = {"pulsecore1", "pulsecore2", "pulsecore3", "pulsecore4"};
  AddAnimation(rows, OfClass("singleanim", Lamp(Plain(2070, "Blinker", nullptr, DrawBlinker, "Lights"), 140, 40, 30)),
               blinker, 2);
  AddAnimation(rows, Plain(2074, "Radar", nullptr, DrawRadar, "Sensors|Common"), radar, 8);
  AddAnimation(rows, OfClass("singleanim", Plain(2082, "Monitor", nullptr, DrawMonitor, "Panels|Common")), monitor, 3);
  AddAnimation(rows, Plain(2085, "Turbine", nullptr, DrawTurbine, "Engines"), turbine, 3);
  const ComponentRow core = Lamp(Plain(2090, "Pulsecore", nullptr, DrawPulseCore, "Engines"), 70, 150, 160);
  AddAnimation(rows, core, pulse, 4);
}

static void AddWindows(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(2100, "Skylight", "skylight", DrawSkylight, "Glass"));
  rows->push_back(Plain(2101, "Bubble", "bubble", DrawBubble, "Glass"));
  rows->push_back(Plain(2102, "Slit", "slit", DrawSlit, "Glass"));
  rows->push_back(Plain(2103, "Mullion", "mullion", DrawMullion, "Glass"));
  rows->push_back(Plain(2104, "Windscreen", "windscreen", DrawSlopedGlass, "Glass|Common"));
  rows->push_back(Plain(2105, "Glasstile", "glasstile", DrawGlassTile, "Glass"));
  rows->push_back(Plain(2106, "Glasscorner", "glasscorner", DrawGlassCorner, "Glass"));
  rows->push_back(Plain(2107, "Oculus", "oculus", DrawOculus, "Glass"));
}

static void AddPanels(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(2110, "Wallpanel", "wallpanel", DrawWallPanel, "Panels|Common"));
  rows->push_back(Plain(2111, "Switchboard", "switchboard", DrawSwitchboard, "Panels"));
  rows->push_back(Plain(2112, "Fusebox", "fusebox", DrawFusebox, "Panels"));
  rows->push_back(Plain(2113, "Keypad", "keypad", DrawKeypad, "Panels"));
  rows->push_back(Plain(2114, "Gauges", "gauges", DrawGauges, "Panels"));
  rows->push_back(Plain(2115, "Louvre", "louvre", DrawLouvre, "Panels|Machines"));
  rows->push_back(Plain(2116, "Strainer", "strainer", DrawGrille, "Panels|Machines"));
  rows->push_back(Plain(2117, "Exhaust", "exhaust", DrawExhaust, "Machines"));
  rows->push_back(Plain(2120, "Globetank", "globetank", DrawGlobeTank, "Tanks|Machines"));
  rows->push_back(Plain(2121, "Canisters", "canisters", DrawCanisters, "Tanks"));
  rows->push_back(Plain(2122, "Dewar", "dewar", DrawDewar, "Tanks"));
  rows->push_back(Plain(2123, "Fueltank", "fueltank", DrawFuelTank, "Tanks"));
}

static void AddFurniture(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(2130, "Pilotseat", "pilotseat", DrawPilotSeat, "Furniture|Common"));
  rows->push_back(Plain(2131, "Bench", "bench", DrawBench, "Furniture"));
  rows->push_back(Plain(2132, "Stool", "stool", DrawStool, "Furniture"));
  rows->push_back(Plain(2133, "Sofa", "sofa", DrawSofa, "Furniture"));
  rows->push_back(Plain(2134, "Desk", "desk", DrawDesk, "Furniture"));
  rows->push_back(Plain(2135, "Cabinet", "cabinet", DrawCabinet, "Furniture"));
  rows->push_back(Plain(2136, "Drawers", "drawers", DrawDrawers, "Furniture"));
  rows->push_back(Plain(2137, "Bed", "bed", DrawBed, "Furniture"));
  rows->push_back(Plain(2138, "Sink", "sink", DrawSink, "Furniture"));
  rows->push_back(Plain(2139, "Stove", "stove", DrawStove, "Furniture"));
  rows->push_back(Plain(2140, "Bookcase", "bookcase", DrawBookcase, "Furniture"));
  rows->push_back(Plain(2141, "Fridge", "fridge", DrawFridge, "Furniture"));
  rows->push_back(Plain(2142, "Rug", "rug", DrawRug, "Furniture"));
}

static void AddBridge(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(2150, "Helm", "helm", DrawHelm, "Machines|Common"));
  rows->push_back(Lamp(Plain(2151, "Charttable", "charttable", DrawChartTable, "Machines"), 60, 100, 92));
  rows->push_back(Plain(2152, "Terminal", "terminal", DrawTerminal, "Machines"));
  rows->push_back(Plain(2153, "Instrument", "instrument", DrawInstrument, "Machines"));
  rows->push_back(Lamp(Plain(2154, "Hologram", "hologram", DrawHologram, "Machines"), 60, 120, 110));
}

static void AddOutside(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(2160, "Whip", "whip", DrawWhip, "Sensors"));
  rows->push_back(Plain(2161, "Yagi", "yagi", DrawYagi, "Sensors"));
  rows->push_back(Plain(2162, "Camera", "camera", DrawCamera, "Sensors"));
  rows->push_back(Plain(2163, "Eye", "eye", DrawEye, "Sensors"));
  rows->push_back(Plain(2164, "Array", "array", DrawArray, "Sensors"));
  rows->push_back(Plain(2165, "Solarpanel", "solarpanel", DrawSolarPanel, "Sensors|Panels"));
  rows->push_back(Plain(2170, "Nozzle", "nozzle", DrawNozzle, "Engines|Common"));
  rows->push_back(Lamp(Plain(2171, "Iondrive", "iondrive", DrawIonEngine, "Engines"), 70, 120, 180));
  rows->push_back(Plain(2172, "Verniers", "verniers", DrawVerniers, "Engines"));
  rows->push_back(Plain(2173, "Aerospike", "aerospike", DrawAerospike, "Engines"));
  rows->push_back(Plain(2174, "Booster", "booster", DrawBooster, "Engines"));
  rows->push_back(Plain(2175, "Gyroscope", "gyroscope", DrawGyroscope, "Engines"));
}

static void AddSigns(std::vector<ComponentRow> *rows) {
  static const char *const names[] = {"Digit0", "Digit1", "Digit2", "Digit3", "Digit4",
                                      "Digit5", "Digit6", "Digit7", "Digit8", "Digit9"};
  static const char *const stems[] = {"digit0", "digit1", "digit2", "digit3", "digit4",
                                      "digit5", "digit6", "digit7", "digit8", "digit9"};
  for (int i = 0; i < 10; i++) rows->push_back(Plain(2180 + i, names[i], stems[i], DrawDigit, "Signs", i));
  rows->push_back(Plain(2190, "Arrow", "arrow", DrawArrow, "Signs|Common"));
  rows->push_back(Plain(2191, "Chevrons", "chevrons", DrawChevrons, "Signs"));
  rows->push_back(Lamp(Plain(2192, "Exit", "exit", DrawExitSign, "Signs|Lights"), 60, 120, 84));
  rows->push_back(Plain(2193, "Danger", "danger", DrawDanger, "Signs"));
  rows->push_back(Plain(2194, "Medical", "medical", DrawMedical, "Signs"));
  rows->push_back(Plain(2195, "Stripe", "stripe", DrawStripe, "Signs"));
  rows->push_back(Plain(2196, "Roundel", "roundel", DrawRoundel, "Signs"));
}

static void AddGreenery(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(2200, "Fern", "fern", DrawFern, "Greenery|Common"));
  rows->push_back(Plain(2201, "Bush", "bush", DrawBush, "Greenery"));
  rows->push_back(Plain(2202, "Grass", "grass", DrawGrass, "Greenery"));
  rows->push_back(Plain(2203, "Vine", "vine", DrawVine, "Greenery"));
  rows->push_back(Plain(2204, "Cactus", "cactus", DrawCactus, "Greenery"));
  rows->push_back(Plain(2205, "Flowers", "flowers", DrawFlowers, "Greenery"));
  rows->push_back(Plain(2206, "Tree", "tree", DrawTree, "Greenery"));
  rows->push_back(Plain(2207, "Mushrooms", "mushrooms", DrawMushrooms, "Greenery"));
  rows->push_back(Lamp(Plain(2208, "Hydroponics", "hydroponics", DrawHydroponics, "Greenery"), 120, 70, 110));
}

static void AddSolids(std::vector<ComponentRow> *rows) {
  rows->push_back(Plain(2220, "RampLow", "ramp_low", DrawLowRamp, "Shapes|Common"));
  rows->push_back(Plain(2221, "RampHigh", "ramp_high", DrawHighRamp, "Shapes"));
  rows->push_back(Plain(2222, "Half", "half", DrawHalf, "Shapes|Common"));
  rows->push_back(Plain(2223, "Quarter", "quarter", DrawQuarter, "Shapes"));
  rows->push_back(Plain(2224, "Eighth", "eighth", DrawEighth, "Shapes"));
  rows->push_back(Plain(2225, "Innercorner", "innercorner", DrawInnerCorner, "Shapes"));
  rows->push_back(Plain(2226, "Pyramid", "pyramid", DrawPyramid, "Shapes"));
  rows->push_back(Plain(2227, "Pole", "pole", DrawPole, "Shapes|Structure"));
  rows->push_back(Plain(2228, "Column", "column", DrawColumn, "Shapes|Structure"));
  rows->push_back(Plain(2229, "Round", "round", DrawRound, "Shapes"));
  rows->push_back(Plain(2230, "Cove", "cove", DrawCove, "Shapes"));
  rows->push_back(Plain(2231, "Arch", "arch", DrawArch, "Shapes|Structure"));
  rows->push_back(Plain(2232, "Treads", "treads", DrawTreads, "Shapes|Structure"));
  rows->push_back(Plain(2233, "Sphere", "sphere", DrawSphere, "Shapes"));
  rows->push_back(Plain(2234, "Dome", "dome", DrawDome, "Shapes"));
  rows->push_back(Plain(2235, "Cone", "cone", DrawCone, "Shapes"));
  rows->push_back(Plain(2236, "Ring", "ring", DrawRing, "Shapes"));
  rows->push_back(Plain(2237, "Bracket", "bracket", DrawBracket, "Shapes|Structure"));
  rows->push_back(Plain(2238, "Paling", "paling", DrawBars, "Shapes|Structure"));
}

void AppendMore(std::vector<ComponentRow> *rows) {
  AddDoors(rows);
  AddLamps(rows);
  AddAnimated(rows);
  AddWindows(rows);
  AddPanels(rows);
  AddFurniture(rows);
  AddBridge(rows);
  AddOutside(rows);
  AddSigns(rows);
  AddGreenery(rows);
  AddSolids(rows);
}

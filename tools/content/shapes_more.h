// What the doors, coloured lamps, furnishings, signs and building shapes look like. As in shapes.h, every
// function draws into an empty grid, and `form` tells its variants apart. Things that are put on a wall have
// z = 15 at their upper end.
#pragma once

#include "grid.h"

// The colours of the coloured lamps, in the order of their forms.
constexpr int LampColours = 6;

// Doors and airlocks
void DrawSlidingDoor(Grid &grid, int form);
void DrawBulkheadDoor(Grid &grid, int form);
void DrawGlassDoor(Grid &grid, int form);
void DrawShutter(Grid &grid, int form);
void DrawGate(Grid &grid, int form);
void DrawDoorway(Grid &grid, int form);
void DrawCabinDoor(Grid &grid, int form);
void DrawBlastDoor(Grid &grid, int form);
void DrawAirlock(Grid &grid, int form);
void DrawLockDoor(Grid &grid, int form);
void DrawIris(Grid &grid, int form);
void DrawDockRing(Grid &grid, int form);

// Lamps; those of six colours take the colour as their form
void DrawDomeLamp(Grid &grid, int form);
void DrawWallLamp(Grid &grid, int form);
void DrawPostLamp(Grid &grid, int form);
void DrawTubeLamp(Grid &grid, int form);
void DrawFloodlight(Grid &grid, int form);
void DrawSpotlight(Grid &grid, int form);
void DrawRunway(Grid &grid, int form);
void DrawLightPanel(Grid &grid, int form);
void DrawBlinker(Grid &grid, int form);

// Windows
void DrawSkylight(Grid &grid, int form);
void DrawBubble(Grid &grid, int form);
void DrawSlit(Grid &grid, int form);
void DrawMullion(Grid &grid, int form);
void DrawSlopedGlass(Grid &grid, int form);
void DrawGlassTile(Grid &grid, int form);
void DrawGlassCorner(Grid &grid, int form);
void DrawOculus(Grid &grid, int form);

// Panels, vents and tanks
void DrawWallPanel(Grid &grid, int form);
void DrawSwitchboard(Grid &grid, int form);
void DrawFusebox(Grid &grid, int form);
void DrawKeypad(Grid &grid, int form);
void DrawGauges(Grid &grid, int form);
void DrawLouvre(Grid &grid, int form);
void DrawGrille(Grid &grid, int form);
void DrawExhaust(Grid &grid, int form);
void DrawGlobeTank(Grid &grid, int form);
void DrawCanisters(Grid &grid, int form);
void DrawDewar(Grid &grid, int form);
void DrawFuelTank(Grid &grid, int form);

// Bridge and machines
void DrawHelm(Grid &grid, int form);
void DrawChartTable(Grid &grid, int form);
void DrawTerminal(Grid &grid, int form);
void DrawInstrument(Grid &grid, int form);
void DrawHologram(Grid &grid, int form);
void DrawMonitor(Grid &grid, int form);
void DrawPulseCore(Grid &grid, int form);
void DrawTurbine(Grid &grid, int form);

// Furniture
void DrawPilotSeat(Grid &grid, int form);
void DrawBench(Grid &grid, int form);
void DrawStool(Grid &grid, int form);
void DrawSofa(Grid &grid, int form);
void DrawDesk(Grid &grid, int form);
void DrawCabinet(Grid &grid, int form);
void DrawDrawers(Grid &grid, int form);
void DrawBed(Grid &grid, int form);
void DrawSink(Grid &grid, int form);
void DrawStove(Grid &grid, int form);
void DrawBookcase(Grid &grid, int form);
void DrawFridge(Grid &grid, int form);
void DrawRug(Grid &grid, int form);

// Greenery
void DrawFern(Grid &grid, int form);
void DrawBush(Grid &grid, int form);
void DrawGrass(Grid &grid, int form);
void DrawVine(Grid &grid, int form);
void DrawCactus(Grid &grid, int form);
void DrawFlowers(Grid &grid, int form);
void DrawTree(Grid &grid, int form);
void DrawMushrooms(Grid &grid, int form);
void DrawHydroponics(Grid &grid, int form);

// Sensors and antennas
void DrawWhip(Grid &grid, int form);
void DrawYagi(Grid &grid, int form);
void DrawCamera(Grid &grid, int form);
void DrawEye(Grid &grid, int form);
void DrawArray(Grid &grid, int form);
void DrawSolarPanel(Grid &grid, int form);
void DrawRadar(Grid &grid, int form);

// Engines
void DrawNozzle(Grid &grid, int form);
void DrawIonEngine(Grid &grid, int form);
void DrawVerniers(Grid &grid, int form);
void DrawAerospike(Grid &grid, int form);
void DrawBooster(Grid &grid, int form);
void DrawGyroscope(Grid &grid, int form);

// Signs
void DrawDigit(Grid &grid, int form);
void DrawArrow(Grid &grid, int form);
void DrawChevrons(Grid &grid, int form);
void DrawExitSign(Grid &grid, int form);
void DrawDanger(Grid &grid, int form);
void DrawMedical(Grid &grid, int form);
void DrawStripe(Grid &grid, int form);
void DrawRoundel(Grid &grid, int form);

// Shapes to build from
void DrawLowRamp(Grid &grid, int form);
void DrawHighRamp(Grid &grid, int form);
void DrawHalf(Grid &grid, int form);
void DrawQuarter(Grid &grid, int form);
void DrawEighth(Grid &grid, int form);
void DrawInnerCorner(Grid &grid, int form);
void DrawPyramid(Grid &grid, int form);
void DrawPole(Grid &grid, int form);
void DrawColumn(Grid &grid, int form);
void DrawRound(Grid &grid, int form);
void DrawCove(Grid &grid, int form);
void DrawArch(Grid &grid, int form);
void DrawTreads(Grid &grid, int form);
void DrawSphere(Grid &grid, int form);
void DrawDome(Grid &grid, int form);
void DrawCone(Grid &grid, int form);
void DrawRing(Grid &grid, int form);
void DrawBracket(Grid &grid, int form);
void DrawBars(Grid &grid, int form);

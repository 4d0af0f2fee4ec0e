// What each component looks like. Every function draws into an empty grid; `form` tells apart the
// members of a family. The frame of reference is that of grid.h.
#pragma once

#include "grid.h"

// Markers and stand-ins
void DrawAimMarker(Grid &grid, int form);
void DrawFaceMarker(Grid &grid, int form);
void DrawCellMarker(Grid &grid, int form);
void DrawPlaceholder(Grid &grid, int form);
void DrawFigure(Grid &grid, int form);

// Rock and the phases of matter
void DrawRock(Grid &grid, int form);
void DrawHeart(Grid &grid, int form);
void DrawLiquid(Grid &grid, int form);
void DrawGas(Grid &grid, int form);
void DrawSolid(Grid &grid, int form);

// Hull
void DrawCube(Grid &grid, int form);
void DrawHullPlate(Grid &grid, int form);
void DrawRibs(Grid &grid, int form);
void DrawArmour(Grid &grid, int form);
void DrawWedge(Grid &grid, int form);
void DrawCornerWedge(Grid &grid, int form);
void DrawSlab(Grid &grid, int form);
void DrawStep(Grid &grid, int form);
void DrawHazard(Grid &grid, int form);
void DrawHatch(Grid &grid, int form);
void DrawWindow(Grid &grid, int form);
void DrawPorthole(Grid &grid, int form);
void DrawPane(Grid &grid, int form);

// Structure and pipes
void DrawStrut(Grid &grid, int form);
void DrawGirder(Grid &grid, int form);
void DrawTruss(Grid &grid, int form);
void DrawPillar(Grid &grid, int form);
void DrawGrate(Grid &grid, int form);
void DrawRailing(Grid &grid, int form);
void DrawLadder(Grid &grid, int form);
void DrawPipe(Grid &grid, int form);
void DrawPipeBend(Grid &grid, int form);
void DrawPipeCross(Grid &grid, int form);
void DrawValve(Grid &grid, int form);
void DrawCables(Grid &grid, int form);

// Lights
void DrawCeilingLamp(Grid &grid, int form);
void DrawStripLamp(Grid &grid, int form);
void DrawLantern(Grid &grid, int form);
void DrawBeacon(Grid &grid, int form);

// Machines
void DrawFan(Grid &grid, int form);
void DrawVent(Grid &grid, int form);
void DrawConsole(Grid &grid, int form);
void DrawScreen(Grid &grid, int form);
void DrawPanel(Grid &grid, int form);
void DrawTank(Grid &grid, int form);
void DrawReactor(Grid &grid, int form);
void DrawGenerator(Grid &grid, int form);
void DrawBattery(Grid &grid, int form);
void DrawRack(Grid &grid, int form);
void DrawThruster(Grid &grid, int form);
void DrawAntenna(Grid &grid, int form);
void DrawDish(Grid &grid, int form);
void DrawPump(Grid &grid, int form);
void DrawRadiator(Grid &grid, int form);

// Living
void DrawSeat(Grid &grid, int form);
void DrawCrate(Grid &grid, int form);
void DrawBarrel(Grid &grid, int form);
void DrawLocker(Grid &grid, int form);
void DrawTable(Grid &grid, int form);
void DrawBunk(Grid &grid, int form);
void DrawPlanter(Grid &grid, int form);
void DrawShelf(Grid &grid, int form);

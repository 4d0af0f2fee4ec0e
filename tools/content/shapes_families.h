// What the families look like that join up with their neighbours, and the things of several cells. `form` is the row's
// distance from the family's first row; the frame of reference is that of grid.h.
#pragma once

#include "grid.h"

// Runs of pieces. Which sides are open is told beside each.
void DrawPipeRun(Grid &grid, int form);   // 0 along y, 1 to 3 ends open at y = 0, 4 open on all sides
void DrawCableRun(Grid &grid, int form);  // 0 along y, 1 and 2 ends open at y = 15, 3 open on all sides
void DrawCrawlway(Grid &grid, int form);  // 0 to 2 along y, 3 open on all sides, 4 closed
void DrawDuct(Grid &grid, int form);      // 0, 1, 4, 5 along y, 2 an end open at y = 15, 3 on all sides, 6 at x and y = 15

// Plating. A style has eight looks: an edge that joins x = 15 and y = 15, a corner that joins x = 15, y = 0 and z = 0,
// and six full plates.
constexpr int PlatingLooks = 8;
void DrawFlatPlating(Grid &grid, int form);
void DrawPlating(Grid &grid, int form);  // style * PlatingLooks + look

// Things of several cells, in the order in which they are placed: x rising, y falling, z rising.
void DrawBerth(Grid &grid, int form);
void DrawWardrobe(Grid &grid, int form);
void DrawCoolant(Grid &grid, int form);
void DrawSuitLocker(Grid &grid, int form);
void DrawFusionCore(Grid &grid, int form);

// Things that look a little different each time, from all sides alike.
void DrawMachinery(Grid &grid, int form);
void DrawConglomerate(Grid &grid, int form);
void DrawBoulder(Grid &grid, int form);
void DrawCircuitry(Grid &grid, int form);
void DrawCrystal(Grid &grid, int form);

// Full cubes with one picture on all sides; the form says which.
void DrawFacedCube(Grid &grid, int form);

// Things that line up with their neighbours.
void DrawRamp(Grid &grid, int form);
void DrawStairs(Grid &grid, int form);
void DrawTray(Grid &grid, int form);
void DrawHandrail(Grid &grid, int form);
void DrawTrack(Grid &grid, int form);
void DrawWainscot(Grid &grid, int form);
void DrawBeamLine(Grid &grid, int form);  // 0 an I beam, 1 a channel
void DrawPlanking(Grid &grid, int form);
void DrawMesh(Grid &grid, int form);
void DrawFence(Grid &grid, int form);  // 0 the field, 1 the post
void DrawConveyor(Grid &grid, int form);  // 0 a belt, 1 rollers

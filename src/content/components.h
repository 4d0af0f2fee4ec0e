// The components: the shape and behaviour of a block, 16 x 16 x 16 coloured voxels and a few words. Read once from
// "config/text/components" and the graphic files that it names, constant afterwards.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/types.h"

constexpr int VoxelsPerBlock = 4096;

struct Voxel {
  u8 blue = 0, green = 0, red = 0;
  u8 alpha = 0;  // 0 none; 1 to 249 translucent; 250 up opaque; 254 takes the material's colour and see-through rule
  u16 skip = 0;  // in a run table, at an empty record: how many more records to jump over
};

// Facts about a component's voxels that a cache build asks for, worked out once so that a build only looks them up.
// A bit i of a mask is bit (i & 63) of word i >> 6. "Glass" is a material whose alpha isn't 255.
struct VoxelFacts {
  u8 alpha[VoxelsPerBlock];       // the alpha bytes alone: one voxel a byte, so that neighbour tests stay in cache
  std::vector<u16> drawn;         // the indices that voxelRuns keeps, ascending
  std::vector<u32> drawnColours;  // and what stands there: red in the lowest byte, then green, blue, alpha
  u64 openInside[2][64];          // [glass]: some neighbour inside the grid shows this voxel
  u64 sunkInGlass[2][64];         // [glass]: all six neighbours are inside and see-through, and so is the voxel
};

struct Component {
  u16 id = 0;             // stable identifier; 0 marks the empty row 0 and the end row
  std::string name;       // display name, from the language file
  i32 column2 = 0;        // kept, used by nothing
  u16 column3 = 0, column4 = 0;
  u8 fillPercent = 0;     // share of voxels with alpha above 0, at least 1
  u16 drawnOpaque = 0, drawnTranslucent = 0;    // voxels that voxelRuns keeps, by alpha 250
  u16 opaqueVoxels = 0, translucentVoxels = 0;  // voxels of the file, by alpha 250
  std::unique_ptr<Voxel[]> voxels;     // 4096 records, the grid as the file has it
  std::unique_ptr<Voxel[]> voxelRuns;  // the same without empty and buried voxels, with runs
  std::unique_ptr<VoxelFacts> facts;
  u8 lightRed = 0, lightGreen = 0, lightBlue = 0;  // the light that the block gives
  std::string className;    // behaviour word, at most 63 bytes
  std::string column11;   // kept, used by nothing, at most 127 bytes
  i8 familyOffset = 0;    // rows from here back to the family's base; 0 for a base
  std::string primaryTag, secondaryTag;  // category words, at most 31 bytes
  i8 frameStep = 0;       // rows to the next frame of an animation; 0 for none
  u8 frameDelay = 255;
};

// What hot paths ask of a component, one byte a row, so that they need not compare words or touch the wide record.
enum ComponentTrait : u8 {
  TraitGivesLight = 1,    // any of the three light colours above 0
  TraitAnimated = 2,      // stands on the animation work list
  TraitRemoves = 4,       // id 9: stands on the removal work list
  TraitFullBlock = 8,     // its id is on the list of full cubes
  TraitHidesNothing = 16  // its id is one of those that count as nothing
};

extern std::vector<Component> Components;  // row 0 empty, rows from 1, then the end row with id 0
extern std::vector<u8> ComponentTraits;     // a ComponentTrait mask for each row of Components
extern u16 ComponentCount;                 // the index of the end row
extern u16 RemotePlayerComponent;          // row of id 160, under 1024
extern u16 AsteroidRockBase;               // row of id 215, under 1024; 1 without one
extern u16 LiquidComponent, GasComponent, SolidifiedComponent;  // rows of ids 800, 850, 900

int LoadComponents();                      // Returns the index of the end row, or 0 on failure (logged).
bool FindPhaseComponents();                // Sets the three phase rows; true only if all three were found.
int FindComponent(u16 id);                 // The first row with this id, or 0.
u16 FamilyBase(u16 row);                   // row + familyOffset, held inside the table.
// Fills a grid of 4096 from a graphic file; returns the fill percentage (1 to 100), or 0 on failure (logged).
int Load3mpGraphic(Voxel *grid, const char *stem, u16 *opaque, u16 *translucent);
int LoadSbfGraphic(Voxel *grid, const char *stem, u16 *opaque, u16 *translucent);  // The gzip form, likewise.
int BuildVoxelRuns(const Voxel *grid, Voxel *runs, u16 *drawnOpaque, u16 *drawnTranslucent);  // Kept voxels.
void BuildVoxelFacts(const Voxel *grid, const Voxel *runs, VoxelFacts *facts);
// Works out ComponentTraits from the whole table. Called by LoadComponents, and by tests that build a table by hand.
void DeriveComponentTraits();

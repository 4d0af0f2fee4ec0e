// The components table, on the game's own voxel grids.
#include "content/components.h"

#include "fuzz/fuzz.h"

void PrepareTarget() {}

void FuzzOne(Bytes input) {
  WriteInput("config/text/components", input);
  LoadComponents();
  Demand(Components.size() == ComponentCount + 1u && Components[ComponentCount].id == 0, "the table ends with the end row");
  for (u16 row = 0; row <= ComponentCount; ++row) Demand(FamilyBase(row) <= ComponentCount, "families stay inside the table");
}

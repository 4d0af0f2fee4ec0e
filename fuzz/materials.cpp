// The materials table.
#include "content/materials.h"

#include "fuzz/fuzz.h"

void PrepareTarget() {}

void FuzzOne(Bytes input) {
  WriteInput("config/text/materials", input);
  LoadMaterials();
  Demand(Materials.size() == MaterialCount + 1u && Materials[MaterialCount].id == 0, "the table ends with the end row");
}

// The options file.
#include "content/options.h"

#include "fuzz/fuzz.h"

void PrepareTarget() {}

void FuzzOne(Bytes input) {
  WriteInput("config/text/options", input);
  LoadOptions();
  Demand(Options.FOV >= 1 && Options.FOV <= 179 && Options.SoundVolume <= 1.0f, "values stay in their range");
}

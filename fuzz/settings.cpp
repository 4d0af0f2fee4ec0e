// The settings file, and a value put into it.
#include "content/settings.h"

#include "fuzz/fuzz.h"

void PrepareTarget() {}

void FuzzOne(Bytes input) {
  WriteInput("config/text/settings", input);
  LoadSettings();
  Demand(SettingText(Setting::Ship).size() <= 200, "values stay in their range");
  if (!StoreSetting(Setting::Ship, "Heron")) return;
  LoadSettings();
  Demand(SettingText(Setting::Ship) == "Heron", "what was stored is read again");
}

// A language file.
#include "gui/language.h"

#include "fuzz/fuzz.h"

void PrepareTarget() { LoadGameTables(); }

void FuzzOne(Bytes input) {
  WriteInput("config/language/english", input);
  LoadLanguage();
  Demand(GuiStrings.size() == GuiStringRows, "there is a text for every number");
}

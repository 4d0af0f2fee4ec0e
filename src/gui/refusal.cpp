// The line that says why a press was refused.
#include "gui/refusal.h"

#include "audio/sound.h"
#include "gui/language.h"

constexpr double QuietTime = 1.0, ShowTime = 2.5;  // seconds
constexpr size_t FirstRefusalText = 99;            // row of GuiStrings
constexpr float NoGain = 0.5f;

ToldRefusal LastRefusal;

static void SayNo() {
  for (int slot = SlotNo; slot <= SlotLastNo; ++slot)
    if (PlaySlotAt(slot, 1.0f, NoGain)) return;
}

bool TellRefusal(Refusal why, double now) {
  if (why == Refusal::None || now - LastRefusal.at < QuietTime) return false;
  LastRefusal = {why, now};
  SayNo();
  return true;
}

void ForgetRefusal() { LastRefusal.why = Refusal::None; }

const char *RefusalLine(double now) {
  if (LastRefusal.why == Refusal::None || now - LastRefusal.at >= ShowTime) return nullptr;
  const size_t row = FirstRefusalText + static_cast<size_t>(LastRefusal.why) - static_cast<size_t>(Refusal::OutOfReach);
  return GuiStrings[row].c_str();
}

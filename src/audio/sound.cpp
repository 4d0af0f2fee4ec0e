// The sound slots of a game that has no sounds of its own yet: SoundOff is set from the start, no device is opened, and
// every call answers as it does without one. The device comes with the sound set.
#include "audio/sound.h"

std::atomic<bool> SoundOff{true};
std::atomic<i8> FirstSong{-1};

bool InitSound() { return true; }

void ShutdownSound() {}

bool PlaySlot(int) { return false; }

bool PlaySlotAt(int, float, float) { return false; }

bool StopSlot(int) { return false; }

bool SetSlotGain(int, float) { return false; }

u16 PlaySong(int) { return 0; }

bool PlaceSound(u16) { return false; }

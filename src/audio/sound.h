// Numbered sound slots. Without a device every call does nothing and answers false.
#pragma once

#include <atomic>

#include "core/types.h"

extern std::atomic<bool> SoundOff;    // nothing is to be played

bool InitSound();
void ShutdownSound();
bool PlaySlot(int slot);
bool PlaySlotAt(int slot, float pitch, float gain);
bool StopSlot(int slot);
bool SetSlotGain(int slot, float gain);
u16 PlaySong(int index);              // Length in seconds; 0 when nothing plays.
bool PlaceSound(u16 material);
extern std::atomic<i8> FirstSong;     // index of the song to open with, -1 for none

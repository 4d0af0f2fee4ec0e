// Sound: 64 numbered slots that all play at the listener, and one of them streams the music. The slots are filled at
// start-up. A sound that can overlap itself owns several slots with one buffer, which are tried in turn.
// Every call may come from any thread, takes one leaf mutex, and does nothing and answers false while SoundOff is set.
#pragma once

#include <atomic>

#include "core/types.h"

constexpr int SlotCount = 64;
constexpr float BreathingGain = 0.03f;

enum SoundSlot : int {  // slots with a duty of their own; those of the jets are told in gameplay/motion.h
  SlotMusic = 1,
  SlotSwitch = 3,       // a click on a menu entry
  SlotBreathing = 4,
  SlotNo = 52, SlotLastNo = 57,  // a press that is refused: any of them
};

extern std::atomic<bool> SoundOff;   // Nothing is to be played: before InitSound, by option, or by a fault that it met. Main thread.
extern std::atomic<bool> MusicOff;   // There are no songs. Main thread, in InitSound.
extern std::atomic<i8> FirstSong;    // Index of the song to open with, -1 for none. Main thread, in InitSound.

bool InitSound();      // Opens the device and loads everything. False without a device; any fault is logged and leaves silence.
void ShutdownSound();  // Ends all sounds and closes the device. No other thread may be playing by then.
bool PlaySlot(int slot);                             // With gain and pitch as they are. False when the slot is still busy.
bool PlaySlotAt(int slot, float pitch, float gain);  // The gain, 0 to 1, is scaled by the option SoundVolume.
bool StopSlot(int slot);
bool SetSlotGain(int slot, float gain);              // Scaled in the same way.
bool PlaceSound(u16 material);  // The sound of a block of this material row, on the first free slot of its class.

// Ends the last song and starts this one; -1 chooses any but the last. Gives its length in seconds, or 0 when nothing
// plays. Only the thread of the music timer.
u16 PlaySong(int index);
bool SetMusicGain();            // Takes the option MusicVolume over for the song that plays.

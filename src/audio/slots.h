// What the slots and the music share; for this folder only.
#pragma once

#include <atomic>

#include "audio/sound.h"
#include "platform/threads.h"

extern Mutex SoundMutex;               // round the calls of a slot's play, so that a fault is met by the one who made it
extern u32 *SoundSlots;                // the SlotCount sources; main thread, in InitSound
extern std::atomic<bool> SongPlaying;  // set with a song's start, cleared by SoundEnded

// While a song starts, the sound library decodes its first seconds in a lock of its own, for up to 20 ms. Plays and stops of the
// slots that come in between are noted and done when HoldSlots(false) ends it, so that nobody waits. Not SoundMutex held.
void HoldSlots(bool hold);
void SetSource(int slot, int property, float value);  // A fault is dropped. SoundMutex held.
// Called for each sound that has ended, by the sound library's thread with a lock of its own: takes none of ours.
void SoundEnded(void *, u32 source);

bool ListSongs();     // Reads the music folder. False, with the reason logged, when there is no song.
void ReleaseSong();   // Ends the song, if there is one. The music timer's thread, or the main thread behind it.

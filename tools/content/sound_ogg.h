// Ogg Vorbis files.
#pragma once

#include "sound_synth.h"

#include <string>

struct OggHead {
  int channels;
  int rate;  // samples a second
};

// Writes one channel, or two of the same length, at 44.1 kHz. `quality` runs from 0 (about 64 kbit/s for two channels)
// to 1. False, with a line on the error output, when it can't.
bool WriteOgg(const std::string &path, const std::vector<const Samples *> &channels, float quality, const char *title);

// The head of an Ogg Vorbis file; false when it isn't one.
bool ReadOggHead(const std::string &path, OggHead *head);

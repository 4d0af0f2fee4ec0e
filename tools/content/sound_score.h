// Written music: notes in a line of text.
//
// "D4:2 F4+A4:1 r:3 E4 C#5:0.5*0.6" is D for two beats, F and A together for one, a rest of three, E as long as what stood
// before it, and C sharp for half a beat at six tenths of its strength. A | may stand between bars.
#pragma once

#include <vector>

struct Note {
  float at;      // beats
  float length;  // beats
  float hz;
  float loud;    // 1 is the part's own strength
};

using Part = std::vector<Note>;

// Reads a line of text. One that can't be read ends the tool with a word about it.
Part ReadPart(const char *text);

// The pitches of a chord, such as "D3+A3+F4", from the first named to the last.
std::vector<float> ReadChord(const char *text);

// Adds a part from a beat on, moved by half tones.
void Append(Part *to, const Part &more, float at, float loud = 1, float halfTones = 0);

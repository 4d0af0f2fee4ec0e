// Written music: reads it.
#include "sound_score.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

namespace {

// One word of a score.
struct Word {
  std::vector<float> pitches;  // hertz; none for a rest
  float length = 0;            // 0: as before
  float loud = 1;
};

}  // namespace

[[noreturn]] static void Unreadable(const std::string &word) {
  std::fprintf(stderr, "%s: isn't a note\n", word.c_str());
  std::exit(1);
}

// A letter, # or b behind it, and the octave; A4 has 440 hertz.
static float PitchOf(const std::string &name) {
  static constexpr int halfTones[] = {9, 11, 0, 2, 4, 5, 7};  // of A to G above C
  if (name.size() < 2 || name[0] < 'A' || name[0] > 'G') Unreadable(name);
  int tone = halfTones[name[0] - 'A'];
  size_t at = 1;
  if (name[at] == '#') tone++, at++;
  else if (name[at] == 'b') tone--, at++;
  if (at + 1 != name.size() || name[at] < '0' || name[at] > '8') Unreadable(name);
  tone += 12 * (name[at] - '0' - 4) - 9;
  return 440 * std::pow(2.0f, static_cast<float>(tone) / 12);
}

std::vector<float> ReadChord(const char *text) {
  std::vector<float> pitches;
  std::istringstream names(text);
  for (std::string name; std::getline(names, name, '+');) pitches.push_back(PitchOf(name));
  return pitches;
}

static Word ReadWord(const std::string &text) {
  Word word;
  const size_t star = text.find('*'), colon = text.find(':');
  if (star != std::string::npos) word.loud = std::strtof(text.c_str() + star + 1, nullptr);
  if (colon != std::string::npos) word.length = std::strtof(text.c_str() + colon + 1, nullptr);
  const std::string names = text.substr(0, std::min(star, colon));
  if (names != "r") word.pitches = ReadChord(names.c_str());
  return word;
}

Part ReadPart(const char *text) {
  Part part;
  std::istringstream words(text);
  float at = 0, length = 1;
  for (std::string one; words >> one;) {
    if (one == "|") continue;
    const Word word = ReadWord(one);
    if (word.length > 0) length = word.length;
    for (const float hz : word.pitches) part.push_back({at, length, hz, word.loud});
    at += length;
  }
  return part;
}

void Append(Part *to, const Part &more, float at, float loud, float halfTones) {
  const float ratio = std::pow(2.0f, halfTones / 12);
  for (const Note &note : more) to->push_back({at + note.at, note.length, note.hz * ratio, note.loud * loud});
}

// The tutorial's script and the text of its current step. The script is kept as it was when the tutorial began, so that a
// change of language changes the screens and leaves the steps in their order.
//
// A step is two lines behind "0 #DemoTutorialStart": its text, then a number and a word. Number 1 waits for the action that
// the word names, 0 ends the tutorial; a larger one with "#SetComponent" is the id of a component for the player's hand,
// and a line with number 1 follows.
#include "gui/tutorial.h"

#include <algorithm>

#include "content/components.h"
#include "content/options.h"
#include "core/log.h"
#include "core/utils.h"
#include "gameplay/player.h"
#include "gui/language.h"

constexpr size_t LongestText = 511, LongestLine = 1023;  // characters of the script's lines
constexpr int LineWidth = 26;                            // a line of the window stays below it

std::string TutorialLines[TutorialMaxLines];
u8 TutorialLineCount = 0;
u8 TutorialSide = 4;
std::atomic<u8> tutorialStep{WaitNothing};

static std::vector<u8> ScriptBytes;
static TextCursor Script;  // at the next step; reads ScriptBytes
static int StepNumber = 0; // of the step shown, from 1

// Appends what the line has room for. False when letters were lost.
static bool Append(std::string *line, std::string_view text) {
  const size_t room = TutorialLineLimit - line->size();
  line->append(text.substr(0, room));
  return text.size() <= room || text.substr(room) == " ";
}

// A word goes on to the next line when it would fill the current one, or when a "$" ends it. The last line takes what it can.
static void WrapText(std::string_view text) {
  int n = 0;
  bool whole = true;
  TutorialLines[0].assign(1, ' ');
  for (size_t at = 0, end; at < text.size(); at = end + 1) {
    end = std::min(text.find_first_of(" $", at), text.size());
    const bool blank = end < text.size() && text[end] == ' ', lineBreak = end < text.size() && !blank;
    const std::string word(text.substr(at, end - at));
    const int width = Utf8Length(word.c_str()) + Utf8Length(TutorialLines[n].c_str());
    if (n < TutorialMaxLines - 1 && (lineBreak || width >= LineWidth)) TutorialLines[++n].assign(1, ' ');
    whole &= Append(&TutorialLines[n], word + (blank ? " " : ""));
  }
  TutorialLineCount = static_cast<u8>(n + 1);
  if (!whole) LogWarn(("The text of tutorial step " + std::to_string(StepNumber) + " is too long for its window").c_str());
}

static u8 WaitFor(std::string_view word) {
  static constexpr std::string_view words[] = {"#Space", "#Esc", "#Q", "#LMB-BlockPlace", "#EscorQ", "#1", "#2",
                                               "#3",     "#4",   "#5", "#2or5",           "#WASD",   "#LMB-Laser", "#E"};
  for (u8 i = 0; i < std::size(words); ++i)
    if (words[i] == word) return static_cast<u8>(WaitSpace + i);
  return WaitNothing;
}

// The number and the word that end a step. False when the line has no such two.
static bool ReadControl(i64 *number, std::string_view *word) {
  std::string_view line;
  if (!ScanLine(&Script, LongestLine, &line)) return false;
  TextCursor cursor{line, 0};
  return ScanInt(&cursor, number) && ScanWord(&cursor, word);
}

// The hand keeps what it has when no component has the id.
static void TakeInHand(i64 id) {
  const int row = id <= 0xffff ? FindComponent(static_cast<u16>(id)) : 0;
  if (row == 0) return;
  Player p = ReadPlayer();
  p.heldBlock.component = static_cast<u16>(row);
  StoreHand(p);
}

// Moves to the line behind the mark.
static bool FindScript() {
  i64 number = 0;
  std::string_view word;
  while (Script.at < Script.text.size())
    if (ReadControl(&number, &word) && number == 0 && word == "#DemoTutorialStart") return true;
  return LogError("The language file has no tutorial") != 0;
}

static void ClearStep() {
  tutorialStep = WaitNothing;
  TutorialLineCount = 0;
  StepNumber = 0;
}

void StartTutorial() {
  ClearStep();
  Script = {};
  Options.Tutorial = OpenLanguage(&ScriptBytes, &Script) && FindScript();
}

void TutorialNext() {
  std::string_view text, word;
  i64 number = 0;
  if (!Options.Tutorial || !ScanLine(&Script, LongestText, &text)) return;
  ++StepNumber;
  WrapText(text);
  if (!ReadControl(&number, &word)) return;
  if (number > 1) {
    if (word != "#SetComponent") return;
    TakeInHand(number);
    if (!ReadControl(&number, &word) || number != 1) return;
  }
  if (number == 1) tutorialStep = WaitFor(word);
  if (number == 0) EndTutorial();
}

void EndTutorial() {
  LogInfo("Ending Tutorial");
  Options.Tutorial = false;
  ClearStep();
  Script = {};
  ScriptBytes = {};
}

// A script that ends clears the option in memory only. Saved here, or the tutorial would begin anew at the next start.
bool TutorialAdvances(u8 wait) {
  if (wait == WaitNothing || !Options.Tutorial || tutorialStep != wait) return false;
  TutorialNext();
  if (!Options.Tutorial) SaveOptions();
  return true;
}

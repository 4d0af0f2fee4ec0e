// The slots on a sound device that nobody hears, with the game's own sounds and with broken ones.
#include <AL/al.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <thread>

#include "audio/slots.h"
#include "content/materials.h"
#include "content/options.h"
#include "support/installation.h"

namespace fs = std::filesystem;

constexpr const char *Sounds = "config/audio/sounds", *Music = "config/audio/music";

namespace {

struct Sound : testing::Test {
  void SetUp() override {
    setenv("ALSOFT_DRIVERS", "null", 1);
    LoadTables();
    UseTemporaryInstallation();
    fs::create_directories(Music);
    fs::copy(fs::path(TARNVALE_ROOT) / Sounds, Sounds);
    fs::copy("config/audio/sounds/laser3.ogg", fs::path(Music) / "a.ogg");
    ResetOptions();
  }
  void TearDown() override { ShutdownSound(); }
  static int Says(const std::string &line) { return Count(ReadText("errors.txt"), line + " \n"); }
  static float Of(int slot, int property) {
    float value = -1;
    alGetSourcef(SoundSlots[slot], property, &value);
    return value;
  }
  static int IntOf(int slot, int property) {
    int value = -1;
    alGetSourcei(SoundSlots[slot], property, &value);
    return value;
  }
  static bool Plays(int slot) { return IntOf(slot, AL_SOURCE_STATE) == AL_PLAYING; }
};

}  // namespace

TEST_F(Sound, EverySlotHasItsSoundAndOnlyBreathingPlaysFromTheStart) {
  ASSERT_TRUE(InitSound());
  EXPECT_FALSE(SoundOff);
  const struct { int first, last; bool looping; } groups[] = {
      {2, 2, 0},   {3, 3, 0},   {4, 4, 1},   {5, 5, 1},   {6, 6, 1},   {7, 7, 1},   {8, 8, 1},   {9, 9, 1},
      {10, 10, 1}, {11, 11, 0}, {12, 12, 0}, {13, 16, 0}, {17, 22, 0}, {23, 28, 0}, {29, 34, 0}, {35, 44, 0},
      {45, 45, 0}, {46, 46, 1}, {47, 47, 0}, {48, 49, 0}, {50, 51, 0}, {52, 57, 0}, {58, 59, 0}};
  std::map<int, int> lineOfBuffer;
  for (const auto &g : groups)
    for (int slot = g.first; slot <= g.last; ++slot) {
      const int buffer = IntOf(slot, AL_BUFFER);
      EXPECT_GT(buffer, 0) << slot;
      EXPECT_EQ(lineOfBuffer.emplace(buffer, g.first).first->second, g.first) << slot;
      EXPECT_EQ(IntOf(slot, AL_LOOPING), g.looping) << slot;
    }
  EXPECT_EQ(lineOfBuffer.size(), std::size(groups));
  for (const int slot : {0, 1, 60, 63}) EXPECT_EQ(IntOf(slot, AL_BUFFER), 0) << slot;
  for (int slot = 0; slot < SlotCount; ++slot) EXPECT_EQ(Plays(slot), slot == 4) << slot;
  EXPECT_FLOAT_EQ(Of(4, AL_GAIN), 0.03f);
  EXPECT_EQ(Says("WARN: "), 0);
}

TEST_F(Sound, AGainIsScaledByTheVolumeAndABusySlotRefuses) {
  ASSERT_TRUE(InitSound());
  Options.SoundVolume = 0.5f;
  EXPECT_TRUE(PlaySlotAt(48, 16.0f, 0.5f));
  EXPECT_FLOAT_EQ(Of(48, AL_GAIN), 0.25f);
  EXPECT_FLOAT_EQ(Of(48, AL_PITCH), 16.0f);
  EXPECT_TRUE(Plays(48));
  EXPECT_TRUE(PlaySlotAt(46, 1.0f, 0.8f));
  EXPECT_FALSE(PlaySlot(46));
  EXPECT_TRUE(SetSlotGain(46, 0.2f));
  EXPECT_FLOAT_EQ(Of(46, AL_GAIN), 0.1f);
  EXPECT_TRUE(StopSlot(46));
  EXPECT_FALSE(Plays(46));
  EXPECT_TRUE(PlaySlot(46));
  EXPECT_FLOAT_EQ(Of(46, AL_GAIN), 0.1f);  // as it was
  EXPECT_FALSE(PlaySlot(-1) || PlaySlotAt(64, 1, 1) || StopSlot(64) || SetSlotGain(-1, 1));
  SetSlotGain(46, -1);  // refused by the library; the next play must not meet that fault
  EXPECT_TRUE(PlaySlot(47));
}

TEST_F(Sound, ABlockSoundsOnTheFirstFreeSlotOfItsClass) {
  ASSERT_TRUE(InitSound());
  const struct { const char *word; int first, last; float gain; const char *exhausted; } cases[] = {
      {"soft", 17, 22, 0.4f, "Soft"}, {"organic", 17, 22, 0.4f, "Soft"}, {"medium", 23, 28, 0.5f, "Medium"},
      {"plastic", 23, 28, 0.5f, "Medium"}, {"hard", 29, 34, 0.6f, "Hard"}, {"ceramic", 29, 34, 0.6f, "Hard"},
      {"stone", 29, 34, 0.6f, "Hard"}, {"crystal", 29, 34, 0.6f, "Hard"}, {"metal", 35, 44, 0.6f, "Metal"},
      {"magnetic", 35, 44, 0.6f, "Metal"}, {"tech", 35, 44, 0.6f, "Metal"}};
  const std::string before = Materials[1].soundClass;
  for (const auto &c : cases) {
    const std::string warning = std::string("WARN: Ran out of ") + c.exhausted + "Place sounds";
    Materials[1].soundClass = c.word;
    const int said = Says(warning);
    for (int slot = c.first; slot <= c.last; ++slot) {
      EXPECT_TRUE(PlaceSound(1));
      EXPECT_TRUE(Plays(slot)) << c.word << slot;
      EXPECT_FLOAT_EQ(Of(slot, AL_GAIN), c.gain);
    }
    EXPECT_EQ(Says(warning), said);
    EXPECT_TRUE(PlaceSound(1));
    EXPECT_EQ(Says(warning), said + 1);
    StopSlot(c.first + 1);
    EXPECT_TRUE(PlaceSound(1));
    EXPECT_TRUE(Plays(c.first + 1));
    for (int slot = c.first; slot <= c.last; ++slot) StopSlot(slot);
  }
  const std::string log = ReadText("errors.txt");
  for (const char *word : {"", "softer", "Metal"}) {
    Materials[1].soundClass = word;
    EXPECT_TRUE(PlaceSound(1));
    for (int slot = 17; slot <= 44; ++slot) EXPECT_FALSE(Plays(slot));
  }
  Materials[1].soundClass = before;
  EXPECT_FALSE(PlaceSound(65535));
  EXPECT_EQ(ReadText("errors.txt"), log);
}

TEST_F(Sound, TheMusicChoosesAnyOtherSong) {
  for (const char *name : {"b.ogg", "Ashenfold-Tidewheel.ogg"}) fs::copy(fs::path(Sounds) / "slowbreathing.ogg", fs::path(Music) / name);
  ASSERT_TRUE(InitSound());
  ASSERT_GE(FirstSong, 0);
  Options.MusicVolume = 0.19f;
  EXPECT_EQ(PlaySong(FirstSong), 0);
  Options.MusicVolume = 0.6f;
  EXPECT_EQ(PlaySong(FirstSong), 24);
  EXPECT_TRUE(Plays(1));
  EXPECT_TRUE(SongPlaying);
  EXPECT_FLOAT_EQ(Of(1, AL_GAIN), 0.3f);
  Options.MusicVolume = 0.4f;
  EXPECT_TRUE(SetMusicGain());
  EXPECT_FLOAT_EQ(Of(1, AL_GAIN), 0.2f);
  std::map<std::string, int> heard;
  const std::string first = "info: Playing song " + std::to_string(FirstSong);
  for (int i = 0; i < 8; ++i) {
    const std::string before = ReadText("errors.txt");
    PlaySong(-1);
    ++heard[ReadText("errors.txt").substr(before.size())];
    EXPECT_TRUE(i > 0 || heard.count(first + " \n") == 0) << "the same song twice";
  }
  EXPECT_GE(heard.size(), 2u);
  StopSlot(1);
  EXPECT_FALSE(SongPlaying);
}

TEST_F(Sound, ASongThatEndsIsNoticed) {
  ASSERT_TRUE(InitSound());
  EXPECT_EQ(FirstSong, -1);
  EXPECT_EQ(PlaySong(-1), 0);  // of the one song, a quarter of a second long
  EXPECT_TRUE(SongPlaying);
  for (int i = 0; i < 100 && SongPlaying; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(SongPlaying);
}

// The song is a pipe that says nothing, so that its start takes as long as the test likes.
TEST_F(Sound, NoOtherSoundWaitsForTheStartOfASong) {
  ASSERT_TRUE(InitSound());
  const std::string path = std::string(Music) + "/a.ogg";
  fs::remove(path);
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::thread song([] { EXPECT_EQ(PlaySong(0), 0); });
  int writer = -1;  // opens once somebody reads
  while (writer < 0 && Says("*ERR: Cannot stream song") == 0) writer = open(path.c_str(), O_WRONLY | O_NONBLOCK);
  const bool isFree = TryLockMutex(&SoundMutex);
  EXPECT_TRUE(isFree && writer >= 0);
  if (isFree) {
    UnlockMutex(&SoundMutex);
    EXPECT_TRUE(PlaySlot(3) && SetSlotGain(46, 0.5f));
  }
  EXPECT_EQ(Says("*ERR: Cannot stream song"), 0);
  close(writer);
  song.join();
  EXPECT_EQ(Says("*ERR: Cannot stream song"), 1);
}

// What the slots are asked for while the sound library is busy with a song is done behind it, in its order.
TEST_F(Sound, WhatIsAskedForDuringASongsStartIsDoneBehindIt) {
  ASSERT_TRUE(InitSound() && PlaySlot(46));
  HoldSlots(true);
  EXPECT_TRUE(PlaySlotAt(35, 1.0f, 0.6f));
  EXPECT_FALSE(PlaySlot(35)) << "busy";
  EXPECT_TRUE(PlaySlot(3) && StopSlot(3));
  EXPECT_FALSE(PlaySlot(46)) << "plays already";
  EXPECT_TRUE(StopSlot(46) && StopSlot(SlotBreathing) && PlaySlot(SlotBreathing));
  EXPECT_FALSE(Plays(35) || !Plays(46));
  HoldSlots(false);
  EXPECT_TRUE(Plays(35) && Plays(SlotBreathing));
  EXPECT_FALSE(Plays(3) || Plays(46));
  EXPECT_TRUE(StopSlot(35) && !Plays(35));
}

static void Truncate(const fs::path &path) { fs::resize_file(path, fs::file_size(path) / 3); }
static void Rubbish(const fs::path &path) { WriteText(path, std::string("OggS\0\2", 6).append(3000, 'x')); }
static void Remove(const fs::path &path) { fs::remove_all(path); }
static void Empty(const fs::path &path) { WriteText(path, ""); }

TEST_F(Sound, AFaultIsNamedAndLeavesSilence) {
  struct Case {
    const char *path;
    void (*breakIt)(const fs::path &);
    bool silent, noMusic;
    std::vector<const char *> words;
  };
  const char *noBuffer = "WARN: Could not make audio buffer from file", *noFiles = "WARN: Could not load audio files";
  const char *noSongs = "WARN: Could not load music files";
  const Case cases[] = {
      {"config/audio/sounds/impact.ogg", Rubbish, true, false, {noBuffer, noFiles}},
      {"config/audio/sounds/no.ogg", Empty, true, false, {noBuffer, noFiles}},
      {"config/audio/sounds", Remove, true, false, {noBuffer, noFiles}},
      {"config/audio/sounds/slowbreathing.ogg", Truncate, false, false, {}},  // what is there is played
      {"config/audio/music/a.ogg", Remove, false, true, {noSongs}}};
  for (const Case &c : cases) {
    SCOPED_TRACE(c.path);
    SetUp();
    c.breakIt(c.path);
    EXPECT_TRUE(InitSound());
    EXPECT_EQ(SoundOff, c.silent);
    EXPECT_EQ(MusicOff, c.noMusic);
    for (const char *line : c.words) EXPECT_EQ(Says(line), 1) << line;
    EXPECT_EQ(Count(ReadText("errors.txt"), "\n"), static_cast<int>(c.words.size())) << ReadText("errors.txt");
    EXPECT_EQ(PlaySlot(3), !c.silent);
    EXPECT_EQ(PlaceSound(1), !c.silent);
    EXPECT_TRUE(PlaySong(0) == 0 || !(c.silent || c.noMusic));
    ShutdownSound();
  }
  SetUp();
  ASSERT_TRUE(InitSound());
  Empty("config/audio/music/a.ogg");
  EXPECT_EQ(PlaySong(0), 0);
  EXPECT_EQ(Says("*ERR: Cannot stream song"), 1);
  EXPECT_TRUE(!SongPlaying && PlaySlot(3));
}

TEST_F(Sound, OnlyThirtyTwoSongsAreTaken) {
  for (int i = 0; i < 32; ++i) WriteText(std::string(Music) + "/" + std::to_string(i), "");
  ASSERT_TRUE(InitSound());
  EXPECT_EQ(Count(ReadText("errors.txt"), "\n"), 1);
  EXPECT_EQ(Says("WARN: There are more than 32 songs, I'll leave the others out"), 1);
  EXPECT_FALSE(MusicOff);
  EXPECT_EQ(PlaySong(32), 0);
}

TEST_F(Sound, SwitchedOffNothingIsOpened) {
  Options.DisableSound = true;
  Remove("config/audio");
  EXPECT_TRUE(InitSound());
  EXPECT_TRUE(SoundOff);
  EXPECT_EQ(ReadText("errors.txt"), "");
  EXPECT_FALSE(PlaySlot(3) || PlaySlotAt(3, 1, 1) || StopSlot(3) || SetSlotGain(3, 1) || PlaceSound(1) || SetMusicGain());
  EXPECT_EQ(PlaySong(-1), 0);
}

// The library reads its settings once in a process, so this runs in a process of its own.
TEST_F(Sound, ADeviceWithTooFewSourcesIsSilent) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        WriteText("few", "[general]\nsources=20\n");
        dup2(2, 1);
        setenv("ALSOFT_CONF", "few", 1);
        const bool started = InitSound();
        ShutdownSound();
        std::fflush(stdout);
        _exit(started ? 1 : 2);
      },
      testing::ExitedWithCode(1), "WARN: Unable to generate sources \ninfo: ALErr: [0-9]+ \n");
}

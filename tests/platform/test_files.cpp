// Files survive what goes wrong while they are replaced, and removing a tree stays inside it.
#include "platform/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <thread>

#include "core/utils.h"
#include "platform/installation.h"
#include "support/ship_test.h"

static size_t EntriesIn(const fs::path &folder) {
  return static_cast<size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

namespace {

struct Files : testing::Test {
  void SetUp() override {
    UseTemporaryInstallation();
    fs::create_directory("files");
    fs::current_path("files");
  }
};

}  // namespace

TEST_F(Files, AReplacementIsWholeOrLeavesTheOldFile) {
  WriteText("folder/name.tmp", "left by a game that was killed, and longer than what comes");
  EXPECT_TRUE(ReplaceFile("folder/name", "old", 3));
  EXPECT_TRUE(ReplaceFile("folder/name", "newer", 5));
  EXPECT_TRUE(ReplaceFile("bare", "", 0));
  EXPECT_TRUE(ReadText("folder/name") == "newer" && fs::file_size("bare") == 0);
  EXPECT_FALSE(ReplaceFile("missing/file", "x", 1));
  EXPECT_FALSE(ReplaceFile("folder", "x", 1));
  const std::string large(1000, 'x');
  EXPECT_EQ(OnFullDisk(100, [&] { return ReplaceFile("folder/name", large.data(), large.size()) ? 1 : 0; }), 0);
  EXPECT_EQ(ReadText("folder/name"), "newer");
  EXPECT_TRUE(EntriesIn("folder") == 1 && EntriesIn(".") == 2) << "nothing is left beside";
  FileReplacement first, second;
  ASSERT_TRUE(BeginReplacement(&first, "bare") && WriteReplacement(&first, "first", 5) && SettleReplacement(&first));
  std::thread other([] { EXPECT_TRUE(ReplaceFile("bare", "second", 6)); });
  usleep(100000);  // the other one waits for its turn
  EXPECT_TRUE(CommitReplacement(&first));
  other.join();
  EXPECT_EQ(ReadText("bare"), "second");
  ASSERT_TRUE(BeginReplacement(&first, "bare"));
  EXPECT_FALSE(BeginReplacement(&second, "bare")) << "and not for ever";
  AbandonReplacement(&second);
  EXPECT_TRUE(fs::exists("bare.tmp"));
  AbandonReplacement(&first);
  EXPECT_FALSE(fs::exists("bare.tmp"));
}

TEST_F(Files, AReadKeepsToItsLimitAndToPlainFiles) {
  WriteText("ten", "0123456789");
  fs::create_directory("folder");
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  const struct {
    const char *path;
    size_t limit;
    bool whole, front;
  } cases[] = {{"ten", 10, true, true}, {"ten", 9, false, true}, {"ten", 1000, true, true}, {"none", 10, false, false},
               {"folder", 10, false, false}, {"pipe", 10, false, false}, {"/proc/self/status", 10, false, true}};
  for (const auto &c : cases) {
    std::vector<u8> bytes{1, 2, 3};
    EXPECT_EQ(ReadWholeFile(c.path, c.limit, &bytes), c.whole) << c.path << " " << c.limit;
    EXPECT_EQ(bytes.size(), c.whole ? 10u : 0u) << c.path;
    EXPECT_EQ(ReadFileFront(c.path, c.limit, &bytes), c.front) << c.path << " " << c.limit;
    EXPECT_EQ(bytes.size(), c.front ? std::min<size_t>(c.limit, 10) : 0) << c.path;
  }
  std::vector<u8> bytes;
  EXPECT_TRUE(ReadWholeFile("/proc/self/status", 1 << 20, &bytes) && bytes.size() > 100) << "a file without a known size";
}

TEST_F(Files, RemovingATreeStaysInsideItAndKeepsHiddenEntries) {
  WriteText("outside/kept", "k");
  WriteText("tree/a/b/file", "f");
  EXPECT_FALSE(MakeDirectory("tree"));
  fs::create_directory_symlink("../outside", "tree/link");
  fs::create_directory_symlink("outside", "linked");
  EXPECT_TRUE(RemoveTree("linked/"));
  EXPECT_FALSE(fs::exists(fs::symlink_status("linked")));
  WriteText("tree/hides/.keep", "");
  EXPECT_FALSE(RemoveTree("tree"));
  EXPECT_TRUE(EntriesIn("tree") == 1 && fs::exists("tree/hides/.keep"));
  fs::remove("tree/hides/.keep");
  EXPECT_TRUE(RemoveTree("tree"));
  EXPECT_FALSE(RemoveTree("tree"));
  EXPECT_TRUE(RemoveTree("outside/kept"));
  EXPECT_EQ(EntriesIn("."), 1u);
}

TEST_F(Files, LongNamesAndLinksLeadToTheFileThatIsMeant) {
  std::string letters;
  while (letters.size() < 254) letters += "\xc3\xbc";
  for (const std::string &name : {letters, "a" + letters, std::string(251, 'n') + ".sts"}) {
    EXPECT_TRUE(ReplaceFile(name.c_str(), "old", 3) && ReplaceFile(name.c_str(), "new", 3) && ReadText(name) == "new") << name;
    const std::string kept = KeepBeside(name.c_str(), ".damaged");
    EXPECT_TRUE(kept.size() <= 255 && kept.ends_with(".damaged") && ReadText(kept) == "new") << kept;
    EXPECT_EQ(FrontOf(kept, kept.size() - 8).size() % 2, name.size() % 2) << "cut between letters";
    EXPECT_EQ(EntriesIn("."), 2u) << "nothing else is left";
    fs::remove(name);
    fs::remove(kept);
  }
  WriteText("far/file", "far");
  fs::create_directory("near");
  fs::create_symlink("../far/file", "near/link");
  fs::create_symlink("near/link", "chain");
  fs::create_symlink("far/none", "dangling");
  fs::create_symlink("nowhere/none", "lost");
  fs::create_symlink("two", "one");
  fs::create_symlink("one", "two");
  fs::create_directory_symlink("far", "folder");
  fs::create_symlink("/dev/null", "device");
  const struct { const char *name, *behind; bool taken, written; } cases[] = {
      {"far/file", "far/file", true, true}, {"none", "none", false, true}, {"chain", "near/../far/file", true, true},
      {"dangling", "far/none", true, true}, {"lost", "nowhere/none", true, false}, {"one", "", true, false},
      {"folder", "", true, false}, {"far", "", true, false}, {"device", "", true, false}};
  for (const auto &c : cases) {
    EXPECT_EQ(FileBehind(c.name), c.behind) << c.name;
    EXPECT_EQ(NameIsTaken(c.name), c.taken) << c.name;
    EXPECT_EQ(ReplaceFile(FileBehind(c.name).c_str(), c.name, std::strlen(c.name)), c.written) << c.name;
  }
  EXPECT_TRUE(ReadText("far/file") == "chain" && ReadText("far/none") == "dangling" && fs::is_symlink("chain"));
  const std::string kept = KeepBeside("chain", ".kept");
  EXPECT_TRUE(kept == "chain.kept" && !fs::is_symlink(kept) && ReadText(kept) == "chain");
  fs::remove("far/none");
  EXPECT_EQ(KeepBeside("dangling", ".kept"), "");
}

TEST_F(Files, AStampKnowsAFileThatChangedFromOneThatOnlyMoved) {
  const auto write = [](const char *text) { ReplaceFile("file", text, std::strlen(text)); };
  EXPECT_TRUE(SameContent(StampAt("file"), {})) << "none is none";
  write("one and the same");
  const FileStamp first = StampAt("file");
  EXPECT_FALSE(SameContent(first, {}) || SameContent({}, first));
  write("one and the same");
  EXPECT_TRUE(SameContent(first, StampAt("file"))) << "another file, of the same bytes";
  for (const char *other : {"one and the sane", "one and the same!", "same"}) {
    write(other);
    EXPECT_FALSE(SameContent(first, StampAt("file"))) << other;
  }
}

// What a process of its own finds while the calling one holds what it holds.
static bool AnotherFinds(Hold (*work)()) { return OnFullDisk(1000, [&] { return work() == Hold::Taken ? 1 : 0; }) == 1; }

TEST(Installation, IsHeldByOneGameAndNotBesideAServer) {
  UseTemporaryInstallation();
  const auto look = [] { return OthersHoldInstallation() ? Hold::Taken : Hold::Ours; };
  EXPECT_FALSE(AnotherFinds(look) || AnotherFinds(HoldInstallation) || AnotherFinds(HoldInstallation)) << "a game that ended holds nothing";
  const int server = open("saves", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ASSERT_EQ(flock(server, LOCK_EX | LOCK_NB), 0);
  EXPECT_TRUE(AnotherFinds(HoldInstallation));
  close(server);
  fs::remove_all("saves");
  EXPECT_FALSE(AnotherFinds(HoldInstallation)) << "where there is no folder there is nobody";
  fs::create_directory("saves");
  const int looker = open("cache", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ASSERT_EQ(flock(looker, LOCK_SH | LOCK_NB), 0);
  EXPECT_FALSE(AnotherFinds(look)) << "one that only looks is in no other's way";
  std::thread leaves([&] {
    usleep(30000);
    flock(looker, LOCK_UN);
  });
  EXPECT_FALSE(AnotherFinds(HoldInstallation)) << "nor in the way of a game, that waits a moment";
  leaves.join();
  close(looker);
  ASSERT_EQ(HoldInstallation(), Hold::Ours);
  EXPECT_TRUE(AnotherFinds(HoldInstallation) && AnotherFinds(look));
  const int saves = open("saves", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  EXPECT_NE(flock(saves, LOCK_EX | LOCK_NB), 0) << "nor may a server start";
  EXPECT_EQ(flock(saves, LOCK_SH | LOCK_NB), 0) << "but the tool for ships may work";
  close(saves);
}

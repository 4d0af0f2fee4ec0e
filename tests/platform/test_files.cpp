// Files survive what goes wrong while they are replaced, and removing a tree stays inside it.
#include "platform/files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <thread>

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

// The log: the exact bytes of every form, both ways, what happens when it can't be written, and what floods, full pipes and
// texts of strangers do to it.
#include "core/log.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <thread>
#include <vector>

#include "core/repeats.h"
#include "core/utils.h"
#include "support/installation.h"

static std::string Printed(const std::function<void()> &work) {
  testing::internal::CaptureStdout();
  work();
  return testing::internal::GetCapturedStdout();
}

static void SayEverything() {
  LogInit();
  EXPECT_TRUE(LogError("x") == 0 && LogWarn("%s %n") == 0 && LogInfo("") == 1);
  LogInt("Number of Cores:", 4);
  LogVector("at", -1, 0, 10000);
  LogFloat("f", 0.5);
  LogText("a", "b");
  LogLabelFloat("Load:", 1.25);
  LogLabelInt("n", -7);
}

TEST(Log, SaysTheSameWordsInFileAndOutputOrInOutputAlone) {
  UseTemporaryInstallation();
  WriteText("errors.txt", "of an earlier run\n");
  const std::string printed = Printed(SayEverything);
  EXPECT_EQ(printed,
            "info: Error System Initialized \n*ERR: x \nWARN: %s %n \ninfo:  \ninfo: Number of Cores: 4 \n"
            "info: at -1x 0y 10000z\ninfo: f 0.500000 \ninfo: a b \n:Load: 1.250000 \n:n -7 \n");
  EXPECT_EQ(ReadText("errors.txt"), printed);
  std::filesystem::remove("errors.txt");
  std::filesystem::create_directory("errors.txt");
  EXPECT_EQ(Printed(SayEverything), printed);
  const std::string cut = Printed([] { LogInfo((std::string(2039, 'y') + "\xe2\x82\xac and more").c_str()); });
  EXPECT_EQ(cut, "info: " + std::string(2039, 'y') + "\n");  // not in the middle of a letter
}

TEST(Log, KeepsTheLinesOfManyThreadsWhole) {
  UseTemporaryInstallation();
  Printed([] {
    LogInit();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
      threads.emplace_back([t] {
        for (int i = 0; i < 200; ++i) {
          LogLabelInt("a line of some length", 1000 * t + i);
          LogWarn("a flood");
        }
      });
    for (std::thread &t : threads) t.join();
    TellRepeats(true);
  });
  std::istringstream lines(ReadText("errors.txt"));
  int whole = 0, flood = 0;
  for (std::string line; std::getline(lines, line);) {
    whole += line.starts_with(":a line of some length ");
    int more = 0;
    if (std::sscanf(line.c_str(), "WARN: a flood (%d times more)", &more) == 1) flood += more;
    else flood += line == "WARN: a flood ";
  }
  EXPECT_EQ(whole, 800);
  EXPECT_EQ(flood, 800);
}

static std::vector<std::string> Told;
static void Tell(const char *line) { Told.push_back(line); }

// 256 times a second for a minute, beside a line that is news each time and one that comes 20 times a second.
TEST(Log, AFloodIsToldOnceASecondWithItsCountAndLosesNothingElse) {
  const auto repeats = std::make_unique<LineRepeats>();
  Told.clear();
  int said = 0, other = 0, news = 0;
  for (int tick = 0; tick < 256 * 60; ++tick) {
    const double now = 1000 + tick / 256.0;
    said += TakeLine(repeats.get(), "*ERR: Inside two ships! \n", now, Tell);
    if (tick % 13 == 0) other += TakeLine(repeats.get(), "at 1x 2y 3z\n", now, Tell);
    news += TakeLine(repeats.get(), (std::to_string(tick) + "\n").c_str(), now, Tell);
  }
  EXPECT_EQ(said, 20);
  EXPECT_EQ(other, (256 * 60 + 12) / 13);
  EXPECT_EQ(news, 256 * 60);
  EXPECT_EQ(Told.size(), 59u);
  EXPECT_EQ(Told.front(), "*ERR: Inside two ships! (256 times more) \n");
  TellCounts(repeats.get(), 1059.9, Tell);
  EXPECT_EQ(Told.size(), 59u);
  TellCounts(repeats.get(), 1061, Tell);
  ASSERT_EQ(Told.size(), 60u);
  EXPECT_EQ(Told.back(), "*ERR: Inside two ships! (236 times more) \n");
  EXPECT_TRUE(TakeLine(repeats.get(), "*ERR: Inside two ships! \n", 1062, Tell));  // it has come to rest
  Told.clear();
  for (int i = 0; i < 25; ++i) TakeLine(repeats.get(), "at 1x 2y 3z\n", 1070, Tell);
  ForgetLines(repeats.get(), Tell);
  EXPECT_EQ(Told, std::vector<std::string>{"at 1x 2y 3z (5 times more)\n"});
  EXPECT_TRUE(TakeLine(repeats.get(), "at 1x 2y 3z\n", 1070, Tell));
}

// More floods at once than there are rows: each line is said or stands in a count.
TEST(Log, ManyFloodsAtOnceLoseNoLine) {
  const auto repeats = std::make_unique<LineRepeats>();
  Told.clear();
  long said = 0;
  for (int round = 0; round < 100; ++round)
    for (int text = 0; text < 100; ++text)
      for (int burst = 0; burst < 30; ++burst)
        said += TakeLine(repeats.get(), ("WARN: " + std::to_string(text) + " \n").c_str(), round * 0.01, Tell);
  ForgetLines(repeats.get(), Tell);
  for (const std::string &line : Told) said += std::stol(line.substr(line.find('(') + 1));
  EXPECT_EQ(said, 100L * 100 * 30);
}

TEST(Log, ACountIsToldThoughNothingElseIsSaid) {
  UseTemporaryInstallation();
  const std::string printed = Printed([] {
    LogInit();
    for (int i = 0; i < 10; ++i)
      for (const int at : {-1, 10000}) LogErrorAt(at, 0, 7, "out of bounds");
    EXPECT_EQ(Count(ReadText("errors.txt"), "*ERR: out of bounds \n"), 20);
    for (int i = 0; i < 13; ++i) LogError("out of bounds");
    for (int i = 0; i < 500 && Count(ReadText("errors.txt"), "more") == 0; ++i) {
      TellRepeats();
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  });
  EXPECT_EQ(Count(printed, "-1 0 7 :*ERR: out of bounds \n"), 10);
  EXPECT_EQ(Count(printed, "10000 0 7 :*ERR: out of bounds \n"), 10);
  for (const std::string &text : {printed, ReadText("errors.txt")})
    EXPECT_TRUE(text.ends_with("\n*ERR: out of bounds (13 times more) \n")) << text;
}

TEST(Log, TheFileNeverPassesItsSizeAndOneOldOneIsKept) {
  UseTemporaryInstallation();
  constexpr size_t most = 64 << 20;
  Printed([&] {
    LogInit();
    WriteText("errors.txt.old", "of an earlier day");
    std::filesystem::resize_file("errors.txt", most - std::strlen("info: abc \n"));
    LogInfo("abc");
    ASSERT_EQ(std::filesystem::file_size("errors.txt"), most);
    EXPECT_EQ(ReadText("errors.txt.old"), "of an earlier day");
    LogInfo("next");
    ASSERT_LT(std::filesystem::file_size("errors.txt"), 100u);
    EXPECT_EQ(ReadText("errors.txt"), "info: next \n");
    EXPECT_EQ(std::filesystem::file_size("errors.txt.old"), most);
    std::filesystem::remove("errors.txt.old");
    std::filesystem::create_directories("errors.txt.old/in the way");
    std::filesystem::resize_file("errors.txt", most);
    LogInfo("last");
    ASSERT_LT(std::filesystem::file_size("errors.txt"), 100u);
    EXPECT_EQ(ReadText("errors.txt"), "info: last \n");
  });
}

TEST(Log, TextsOfOthersForgeNoLineAndReachNoTerminal) {
  UseTemporaryInstallation();
  const std::string printed = Printed([] {
    LogInit();
    LogError("a\n*ERR: forged\r\tb");
    LogText("\x1b[2J", "\xc2\x9b" "31m\x7f");
    LogWarn("\xe9 \xc3\xa9 \xe2\x82\xac \xf0\x9f\x9a\x80 \xc0\x8a \xed\xa0\x80 \xf4\x90\x80\x80 \xe2\x82");
    LogErrorLines("0:1: no such word\n0:2: \x1b[31m\n");
    Print("Loading Ship: %s \n", "x\ny");
    PrintLine("one\ntwo\x07\n");
  });
  EXPECT_EQ(printed.substr(printed.find('\n') + 1),
            "*ERR: a?*ERR: forged??b \ninfo: ?[2J ?31m? \n"
            "WARN: ? \xc3\xa9 \xe2\x82\xac \xf0\x9f\x9a\x80 ?? ??? ???? ?? \n"
            "*ERR: 0:1: no such word\n0:2: ?[31m\n \nLoading Ship: x?y \none\ntwo?\n");
  EXPECT_TRUE(printed.starts_with(ReadText("errors.txt")));
}

TEST(Log, CutsALetterBeforeItAndRubbishAnywhere) {
  const struct { const char *text; size_t most, cut; } cases[] = {
      {"abc", 3, 3}, {"abc", 2, 2}, {"a\xc3\xa9", 2, 1}, {"a\xc3\xa9", 3, 3}, {"\xf0\x9f\x9a\x80", 3, 0}, {"\x80\x80\x80\x80\x80\x80", 5, 5}, {"", 0, 0}};
  for (const auto &c : cases) EXPECT_EQ(CutAtLetter(c.text, c.most), c.cut) << c.text << c.most;
}

// Standard output for the time of a call is the writing end of a pipe that holds all it can.
namespace {
struct FullPipe {
  int reader = -1, before = -1;
};
}  // namespace

static FullPipe BeginFullPipe() {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  fcntl(ends[1], F_SETFL, O_NONBLOCK);
  const std::string page(4096, 'x');
  while (write(ends[1], page.data(), page.size()) > 0) {}
  fcntl(ends[1], F_SETFL, 0);
  FullPipe p{ends[0], dup(STDOUT_FILENO)};
  dup2(ends[1], STDOUT_FILENO);
  close(ends[1]);
  return p;
}

static void EndFullPipe(const FullPipe &p) {
  dup2(p.before, STDOUT_FILENO);
  close(p.before);
}

TEST(Log, NobodyWaitsForAFullPipeOrDiesOfAClosedOne) {
  UseTemporaryInstallation();
  std::fflush(stdout);
  GuardStreams();
  const FullPipe pipe = BeginFullPipe();
  SayEverything();
  Print("%i\n", 1);
  PrintLine("line\n");
  char page[4096];
  EXPECT_EQ(read(pipe.reader, page, sizeof page), 4096);
  LogInfo("taken");  // there is room again
  close(pipe.reader);
  SayEverything();
  PrintLine("line\n");
  const ssize_t written = write(STDOUT_FILENO, "x", 1);
  EndFullPipe(pipe);
  EXPECT_EQ(written, -1);
  EXPECT_TRUE(ReadText("errors.txt").ends_with(":n -7 \n"));
}

TEST(Log, AClosedStandardStreamIsNoPlaceForOtherFiles) {
  EXPECT_EXIT(
      {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        GuardStreams();
        const int next = open("/dev/null", O_RDONLY);
        _exit(next > STDERR_FILENO && write(STDOUT_FILENO, "x", 1) == 1 ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

// The log: the exact bytes of every form, both ways, and what happens when it can't be written.
#include "core/log.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <sstream>
#include <thread>
#include <vector>

#include "support/installation.h"

static std::string Printed(void (*work)()) {
  testing::internal::CaptureStdout();
  work();
  return testing::internal::GetCapturedStdout();
}

static void SayEverything() {
  LogInit();
  EXPECT_EQ(LogError("x"), 0);
  EXPECT_EQ(LogWarn("%s %n"), 0);
  EXPECT_EQ(LogInfo(""), 1);
  LogInt("Number of Cores:", 4);
  LogVector("at", -1, 0, 10000);
  LogFloat("f", 0.5);
  LogText("a", "b");
  LogLabelFloat("Load:", 1.25);
  LogLabelInt("n", -7);
}

TEST(Log, SaysTheSameWordsInFileAndOutput) {
  UseTemporaryInstallation();
  WriteText("errors.txt", "of an earlier run\n");
  const std::string printed = Printed(SayEverything);
  EXPECT_EQ(printed,
            "info: Error System Initialized \n*ERR: x \nWARN: %s %n \ninfo:  \ninfo: Number of Cores: 4 \n"
            "info: at -1x 0y 10000z\ninfo: f 0.500000 \ninfo: a b \n:Load: 1.250000 \n:n -7 \n");
  EXPECT_EQ(ReadText("errors.txt"), printed);
}

TEST(Log, SurvivesAFileItCannotOpenAndALineItCannotHold) {
  UseTemporaryInstallation();
  std::filesystem::create_directory("errors.txt");
  EXPECT_EQ(Printed([] { LogInit(); LogError("still here"); }), "info: Error System Initialized \n*ERR: still here \n");
  const std::string cut = Printed([] { LogInfo(std::string(100000, 'y').c_str()); });
  EXPECT_LT(cut.size(), 100000u);
  EXPECT_EQ(cut.back(), '\n');
}

TEST(Log, KeepsTheLinesOfManyThreadsWhole) {
  UseTemporaryInstallation();
  testing::internal::CaptureStdout();
  LogInit();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([] { for (int i = 0; i < 200; ++i) LogLabelInt("a line of some length", 12345); });
  for (std::thread &t : threads) t.join();
  testing::internal::GetCapturedStdout();
  std::istringstream lines(ReadText("errors.txt"));
  std::string line;
  int whole = 0;
  while (std::getline(lines, line)) whole += line == ":a line of some length 12345 ";
  EXPECT_EQ(whole, 800);
}

TEST(Log, TheNumberOfCoresCanBeSetFromOutside) {
  UseTemporaryInstallation();
  testing::internal::CaptureStdout();
  unsetenv("TARNVALE_CORES");
  const i8 real = LogSystemInfo();
  EXPECT_GE(real, 1);
  const struct { const char *set; i8 cores; } cases[] = {
      {"0", 0}, {"3", 3}, {"127", 127}, {"128", real}, {"-1", real}, {"", real}, {"2x", real}, {"many", real}};
  for (const auto &c : cases) {
    setenv("TARNVALE_CORES", c.set, 1);
    EXPECT_EQ(LogSystemInfo(), c.cores) << c.set;
  }
  unsetenv("TARNVALE_CORES");
  const std::string printed = testing::internal::GetCapturedStdout();
  for (const char *words : {"info: OS: Linux", "info: OS Major: ", "info: OS Minor: ", "info: RAM: "})
    EXPECT_NE(printed.find(words), std::string::npos) << words;
}

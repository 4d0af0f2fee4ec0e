// The log: the exact bytes of every form, both ways, and what happens when it can't be written.
#include "core/log.h"

#include <gtest/gtest.h>

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
  const std::string cut = Printed([] { LogInfo(std::string(100000, 'y').c_str()); });
  EXPECT_TRUE(cut.size() < 100000 && cut.back() == '\n');
}

TEST(Log, KeepsTheLinesOfManyThreadsWhole) {
  UseTemporaryInstallation();
  Printed([] {
    LogInit();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
      threads.emplace_back([] { for (int i = 0; i < 200; ++i) LogLabelInt("a line of some length", 12345); });
    for (std::thread &t : threads) t.join();
  });
  std::istringstream lines(ReadText("errors.txt"));
  int whole = 0;
  for (std::string line; std::getline(lines, line);) whole += line == ":a line of some length 12345 ";
  EXPECT_EQ(whole, 800);
}

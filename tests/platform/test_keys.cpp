#include "platform/keys.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/window.h"

// Pairs of a key of GLFW 3 and the code that options files and the input know it by, at the ends of each run of the table.
TEST(Keys, KeepTheCodesThatOptionsFilesHold) {
  const int pairs[][2] = {
      {32, 32}, {96, 96}, {256, KeyEsc}, {262, KeyRight}, {269, KeyEnd}, {284, KeyPause}, {314, KeyF25}, {320, 302}, {329, 311},
      {330, 316}, {336, 317}, {341, KeyLeftControl}, {348, KeyMenu}, {-1, -1}, {0, -1}, {64, -1}, {161, -1}, {315, -1}, {349, -1}};
  for (const auto &pair : pairs) EXPECT_EQ(KeyFromGlfw3(pair[0]), pair[1]) << "GLFW key " << pair[0];
  std::set<int> codes;
  int known = 0;
  for (int key = 0; key < 400; key++)
    if (KeyFromGlfw3(key) >= 0) known++, codes.insert(KeyFromGlfw3(key));
  EXPECT_EQ(static_cast<size_t>(known), codes.size()) << "two keys share a code";
}

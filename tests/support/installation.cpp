#include "support/installation.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "content/components.h"
#include "content/materials.h"
#include "world/access.h"

namespace fs = std::filesystem;

void LoadTables() {
  static bool loaded = false;
  if (loaded) return;
  const fs::path here = fs::current_path();
  fs::current_path(TARNVALE_ROOT);
  const bool good = LoadMaterials() != 0 && LoadComponents() != 0 && FindPhaseComponents();
  fs::current_path(here);
  ASSERT_TRUE(good);
  loaded = true;
}

// The folders of this process go when it ends.
static void ForgetFolder(const fs::path &made) {
  static std::vector<fs::path> folders;
  if (folders.empty())
    std::atexit([] {
      std::error_code ignored;
      for (const fs::path &folder : folders) fs::remove_all(folder, ignored);
    });
  folders.push_back(made);
}

std::string UseTemporaryInstallation() {
  std::string pattern = (fs::temp_directory_path() / "tarnvale-test-XXXXXX").string();
  const char *made = mkdtemp(pattern.data());
  EXPECT_NE(made, nullptr);
  const fs::path root = pattern;
  ForgetFolder(root);
  fs::create_directories(root / "saves");
  fs::create_directories(root / "cache");
  fs::create_directories(root / "config");
  fs::copy(fs::path(TARNVALE_ROOT) / "config/text", root / "config/text", fs::copy_options::recursive);
  for (const char *own : {"options", "settings"}) fs::remove(root / "config/text" / own);
  for (const char *part : {"graphics", "shaders", "language", "fonts"})
    fs::create_directory_symlink(fs::path(TARNVALE_ROOT) / "config" / part, root / "config" / part);
  fs::current_path(root);
  return root.string();
}

Ship *NewTestShip() {
  Ship *ship = new Ship;
  InitShip(ship, 0);
  EXPECT_TRUE(AllocShipTable(ship));
  return ship;
}

Block CubeOf(u16 material, u16 component, unsigned rotation, unsigned rotation2) {
  Block b;
  b.state = StateWhole;
  b.rotation = rotation & 7u;
  b.rotation2 = rotation2 & 3u;
  b.material = material;
  b.component = component;
  return b;
}

int PlaceHere(Ship *ship, int x, int y, int z, Block b) {
  return PlaceBlock(b, static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), ship);
}

std::string ReadText(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

int Count(const std::string &text, const std::string &word) {
  int count = 0;
  for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) ++count;
  return count;
}

void WriteText(const std::string &path, const std::string &text) {
  if (fs::path(path).has_parent_path()) fs::create_directories(fs::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << text;
}

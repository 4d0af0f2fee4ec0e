// Writing what the tool makes.
#include "output.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

bool ReadWhole(const std::string &path, std::string *bytes) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return false;
  bytes->assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  return !file.bad();
}

bool WriteIfChanged(const std::string &path, const std::string &bytes) {
  std::string before;
  if (ReadWhole(path, &before) && before == bytes) return true;
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.flush();
  if (!file) {
    std::fprintf(stderr, "%s: can't be written\n", path.c_str());
    return false;
  }
  return true;
}

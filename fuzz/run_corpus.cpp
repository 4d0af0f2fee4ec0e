// Gives a target all files of the folders on the command line, for builds without libFuzzer.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/fuzz.h"

static void RunFile(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const u8 *>(bytes.data()), bytes.size());
}

int main(int argc, char **argv) {
  LLVMFuzzerInitialize(&argc, &argv);
  int count = 0;
  for (int i = 1; i < argc; ++i)
    for (const auto &entry : std::filesystem::directory_iterator(argv[i])) {
      RunFile(entry.path());
      ++count;
    }
  std::fprintf(stderr, "%i inputs\n", count);
  return count == 0;
}

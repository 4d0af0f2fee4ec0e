// Every target runs in an installation of its own, in memory where the system has a folder for that, with a silent log.
#include "fuzz/fuzz.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "persistence/cursor.h"

namespace fs = std::filesystem;

static fs::path Installation;

static void MakeInstallation() {
  const fs::path memory = "/dev/shm";
  std::string pattern = ((fs::exists(memory) ? memory : fs::temp_directory_path()) / "tarnvale-fuzz-XXXXXX").string();
  Demand(mkdtemp(pattern.data()) != nullptr, "a folder can be made");
  Installation = pattern;
  std::atexit([] {
    std::error_code ignored;
    fs::remove_all(Installation, ignored);
  });
  for (const char *folder : {"saves", "cache", "config/text", "config/language", "config/graphics/components"})
    fs::create_directories(Installation / folder);
  for (const char *file : {"config/text/materials", "config/text/components", "config/language/english"})
    fs::copy(fs::path(TARNVALE_ROOT) / file, Installation / file);
  for (const auto &entry : fs::directory_iterator(fs::path(TARNVALE_ROOT) / "config/graphics/components"))
    fs::create_symlink(entry.path(), Installation / "config/graphics/components" / entry.path().filename());
  fs::create_symlink("/dev/null", Installation / "errors.txt");
}

// The words of the command line are from where the program was started.
static void MakeAbsolute(int argc, char **argv) {
  static std::vector<std::string> kept(static_cast<size_t>(argc));
  for (int i = 1; i < argc; ++i) {
    if (argv[i][0] == '-') continue;
    kept[static_cast<size_t>(i)] = fs::absolute(argv[i]).string();
    argv[i] = kept[static_cast<size_t>(i)].data();
  }
}

int LLVMFuzzerInitialize(int *argc, char ***argv) {
  MakeAbsolute(*argc, *argv);
  MakeInstallation();
  fs::current_path(Installation);
  Demand(std::freopen("/dev/null", "w", stdout) != nullptr, "the log can be silenced");
  PrepareTarget();
  return 0;
}

int LLVMFuzzerTestOneInput(const u8 *bytes, size_t size) {
  static LogLimit silence;
  LimitLog(&silence);
  FuzzOne({bytes, size});
  return 0;
}

void LoadGameTables() {
  Demand(LoadMaterials() != 0 && LoadComponents() != 0, "the game's tables load");
}

void WriteInput(const char *path, Bytes bytes) {
  const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
  Demand(file >= 0 && write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), path);
  close(file);
}

void WriteGzipInput(const char *path, Bytes bytes) {
  static std::vector<u8> file;
  file.assign({0x1f, 0x8b, 8, 0, 0, 0, 0, 0, 0, 3});
  Bytes left = bytes;
  for (bool last = false; !last;) {
    const Bytes piece = left.first(std::min<size_t>(left.size(), 65535));
    left = left.subspan(piece.size());
    last = left.empty();
    const unsigned count = static_cast<unsigned>(piece.size());
    PutU8(&file, last ? 1 : 0);
    PutU16(&file, static_cast<u16>(count));
    PutU16(&file, static_cast<u16>(~count));
    PutBytes(&file, piece.data(), piece.size());
  }
  PutU32(&file, static_cast<u32>(crc32(0, bytes.data(), static_cast<uInt>(bytes.size()))));
  PutU32(&file, static_cast<u32>(bytes.size()));
  WriteInput(path, file);
}

void Demand(bool truth, const char *what) {
  if (truth) return;
  std::fprintf(stderr, "Demanded: %s\n", what);
  std::abort();
}

// The daily backups of stream files.
#include "persistence/backup.h"

#include <unistd.h>

#include <algorithm>
#include <ctime>

#include "core/log.h"
#include "platform/files.h"
#include "platform/folders.h"

constexpr std::string_view StreamEnding = ".sts", BackupEnding = ".bak", DateForm = "dddd-dd-dd";

std::string LocalDate() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  char text[32];
  localtime_r(&now, &local);
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d", &local)};
}

static bool IsDate(std::string_view text) {
  return std::equal(text.begin(), text.end(), DateForm.begin(), DateForm.end(),
                    [](char c, char form) { return form == 'd' ? c >= '0' && c <= '9' : c == form; });
}

// Whether a name is a backup of this stem, and not of one that only begins like it.
static bool IsBackupOf(std::string_view name, std::string_view stem) {
  return name.size() == stem.size() + DateForm.size() + BackupEnding.size() && name.starts_with(stem) &&
         name.ends_with(BackupEnding) && IsDate(name.substr(stem.size(), DateForm.size()));
}

std::string KeepBackup(const std::string &path, const std::string &date) {
  if (!path.ends_with(StreamEnding) || access(path.c_str(), F_OK) != 0) return {};
  const std::string name = path.substr(0, path.size() - StreamEnding.size()) + date + std::string(BackupEnding);
  const SecondName made = GiveSecondName(path.c_str(), name.c_str());
  if (made == SecondName::Failed) LogWarn((name + " can't be written. The ship is saved without a backup.").c_str());
  return made == SecondName::Made ? name : std::string();
}

// The names are sorted, and so by age. The one that was just made stays even where the clock went back.
void RemoveOldBackups(const std::string &made) {
  const size_t slash = made.rfind('/') + 1;  // 0 without a folder
  const std::string folder = slash == 0 ? "./" : made.substr(0, slash), own = made.substr(slash);
  const std::string stem = own.substr(0, own.size() - DateForm.size() - BackupEnding.size());
  const int descriptor = OpenFolderHere(folder.c_str());
  if (descriptor < 0) return;
  std::vector<std::string> names;
  FolderEntries(descriptor, &names);
  close(descriptor);
  std::erase_if(names, [&](const std::string &name) { return name == own || !IsBackupOf(name, stem); });
  for (size_t i = 0; i + MostBackups <= names.size(); ++i) RemoveFile((folder + names[i]).c_str());
}

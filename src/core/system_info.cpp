// What the log says of the machine at start-up: the system, its version, the memory and the number of processors.
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "core/log.h"

static constexpr long MaxProcessors = 127;  // the count is one signed byte

// The kernel's release begins "major.minor"; a release of another form gives zeros.
static void LogSystemVersion() {
  utsname system{};
  if (uname(&system) != 0) {
    LogWarn("The system does not say what it is.");
    return;
  }
  char text[sizeof system.sysname + sizeof system.release + 8];
  std::snprintf(text, sizeof text, "OS: %s %s", system.sysname, system.release);
  LogInfo(text);
  char *rest = system.release;
  const long osMajor = std::strtol(rest, &rest, 10);
  const long osMinor = *rest == '.' ? std::strtol(rest + 1, nullptr, 10) : 0;
  LogInt("OS Major:", osMajor);
  LogInt("OS Minor:", osMinor);
}

// Whether TARNVALE_CORES holds a count from 0 to 127, and which.
static bool CoresFromEnvironment(long *count) {
  const char *text = std::getenv("TARNVALE_CORES");
  if (text == nullptr || *text == '\0') return false;
  char *end = nullptr;
  *count = std::strtol(text, &end, 10);
  return *end == '\0' && *count >= 0 && *count <= MaxProcessors;
}

i8 LogSystemInfo() {
  LogSystemVersion();
  const i64 pages = std::max(0L, sysconf(_SC_PHYS_PAGES)), pageSize = std::max(0L, sysconf(_SC_PAGESIZE));
  LogInt("RAM:", static_cast<i32>(pages * pageSize >> 20));
  long processors = 0;
  if (!CoresFromEnvironment(&processors)) processors = std::clamp(sysconf(_SC_NPROCESSORS_ONLN), 0L, MaxProcessors);
  return static_cast<i8>(processors);
}

// Looks for faults in pictures and fonts.
#include "check_parts.h"
#include "gui_pictures.h"
#include "output.h"
#include "picture.h"

#include <algorithm>

constexpr int StarEdge = 1024;
constexpr int StarPictures = 6;
constexpr size_t FontHead = 12;   // bytes before the list of a font's tables
constexpr size_t FontTable = 16;  // bytes of an entry

static void CheckPicture(const std::string &path, int width, int height, int channels) {
  PictureForm form;
  if (!ReadPictureForm(path, &form)) return Fault(path, 0, "isn't a PNG picture");
  if (form.width != width || form.height != height) {
    return Fault(path, 0, "isn't " + std::to_string(width) + " x " + std::to_string(height) + " pixels");
  }
  if (form.depth != 8 || form.channels != channels) {
    return Fault(path, 0, channels == 4 ? "isn't in red, green, blue and opacity of 8 bits"
                                        : "isn't in red, green and blue of 8 bits");
  }
  if (!PictureDecodes(path)) Fault(path, 0, "is damaged");
}

void CheckPictures() {
  for (int i = 1; i <= StarPictures; i++) {
    CheckPicture("config/graphics/stars/stars" + std::to_string(i) + ".png", StarEdge, StarEdge, 3);
  }
  for (const GuiPicture &picture : GuiPictures()) {
    CheckPicture(std::string("config/graphics/") + picture.path, picture.width, picture.height, 4);
  }
}

// A big-endian number of `size` bytes; the caller has checked that they are there.
static size_t NumberAt(const std::string &bytes, size_t at, size_t size) {
  size_t value = 0;
  for (size_t i = 0; i < size; i++) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

// The tags of a font's tables; empty when the list or a table leaves the file.
static std::vector<std::string> FontTables(const std::string &bytes) {
  if (bytes.size() < FontHead) return {};
  const size_t count = NumberAt(bytes, 4, 2);
  if (bytes.size() < FontHead + count * FontTable) return {};
  std::vector<std::string> tags;
  for (size_t at = FontHead; at < FontHead + count * FontTable; at += FontTable) {
    const size_t from = NumberAt(bytes, at + 8, 4);
    if (from > bytes.size() || NumberAt(bytes, at + 12, 4) > bytes.size() - from) return {};
    tags.push_back(bytes.substr(at, 4));
  }
  return tags;
}

static void CheckFont(const std::string &path) {
  std::string bytes;
  if (!ReadWhole(path, &bytes)) return Fault(path, 0, "can't be read");
  const bool outlines = bytes.compare(0, 4, std::string("\0\1\0\0", 4)) == 0 || bytes.compare(0, 4, "OTTO") == 0;
  if (!outlines) return Fault(path, 0, "isn't a TrueType or OpenType font");
  const std::vector<std::string> tags = FontTables(bytes);
  if (tags.empty()) return Fault(path, 0, "is damaged");
  for (const char *needed : {"cmap", "head", "hhea", "hmtx", "maxp"}) {
    if (std::find(tags.begin(), tags.end(), needed) == tags.end()) {
      Fault(path, 0, std::string("has no table \"") + needed + "\"");
    }
  }
}

void CheckFonts() {
  CheckFont("config/fonts/Short_Stack/ShortStack-Regular.ttf");
  CheckFont("config/fonts/VT323/VT323.ttf");
}

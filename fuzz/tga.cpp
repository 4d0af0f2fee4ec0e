// A TGA picture for a place of 16 x 16.
#include "fuzz/fuzz.h"
#include "render/image.h"

void PrepareTarget() {}

void FuzzOne(Bytes input) {
  static u8 buffer[16 * 16 * 4];
  WriteInput("input.tga", input);
  u8 width = 0;
  if (LoadTga(buffer, "input.tga", 16, 16, &width) != 0) Demand(width == 3 || width == 4, "a pixel is 3 or 4 bytes");
}

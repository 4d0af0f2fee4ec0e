// Image files into a buffer of the caller's. The caller says how large the picture must be; another size fails before a
// row is read.
#pragma once

#include "core/types.h"

int LoadPng(u8 *buffer, const char *path, u32 width, u32 height);  // 4 bytes a pixel. 1, or 0 (no message: not a PNG).
// 3 or 4 bytes a pixel as the file has them, told in bytesPerPixel; the buffer must hold 4 a pixel. 1 or 0.
int LoadTga(u8 *buffer, const char *path, u32 width, u32 height, u8 *bytesPerPixel);
bool WritePng(const char *path, const u8 *rgb, u32 width, u32 height);  // 3 bytes a pixel, first row on top.

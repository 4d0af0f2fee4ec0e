// What the fuzz targets share. A target is one file with FuzzOne: what it is given came from outside, and the game has to
// live with it. A fault is whatever a sanitizer finds, or Demand.
#pragma once

#include <span>

#include "core/types.h"

using Bytes = std::span<const u8>;

void PrepareTarget();         // Of the target: once, in the temporary installation.
void FuzzOne(Bytes input);    // Of the target.

void LoadGameTables();        // The game's own materials and components.
void WriteInput(const char *path, Bytes bytes);       // A file of the installation, as it is.
void WriteGzipInput(const char *path, Bytes bytes);   // ... as a gzip stream that stores the bytes.
void Demand(bool truth, const char *what);            // Ends the program when it isn't so.

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const u8 *bytes, size_t size);

// Writing what the tool makes.
#pragma once

#include <string>

// Writes a file whole, and leaves one that holds these bytes already untouched. Missing folders are made.
// False, with a line on the error output, when it can't be written.
bool WriteIfChanged(const std::string &path, const std::string &bytes);

// The bytes of a file; false when it can't be read.
bool ReadWhole(const std::string &path, std::string *bytes);

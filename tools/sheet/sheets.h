// The sheets. Each writes one PNG file; false when it can't.
#pragma once

#include <string>

bool SheetOfComponents(const std::string &path);  // Every component, with id, name and category.
bool SheetOfJoins(const std::string &path);       // Every joining family, built by the rules of placing.
bool SheetOfShip(const std::string &name, const std::string &path);  // A saved ship from outside.

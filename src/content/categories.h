// The block selectors' categories: lists of rows by tag, sorted by display name. Built once, after the language file.
#pragma once

#include <string>
#include <vector>

#include "core/types.h"

struct Category {
  std::string name;
  std::vector<u16> rows;
};

extern std::vector<Category> MaterialCategories, ComponentCategories;  // "debug" and "Common" always stand first

void SortMaterials();
void SortComponents();

// The block selectors' categories: lists of rows by tag, sorted by display name. Built after the language
// file, and sorted anew when the language changes.
#pragma once

#include <string>
#include <vector>

#include "core/types.h"

struct Category {
  std::string name;
  std::vector<u16> rows;
  bool open = false;  // the selector shows its rows
};

// "debug" and "Common" always stand first. Main thread.
extern std::vector<Category> MaterialCategories, ComponentCategories;

void SortMaterials();
void SortComponents();
void SortByNewNames();  // Both, when rows have got other names: what is open stays open.

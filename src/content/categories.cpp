// The block selectors' categories.
#include "content/categories.h"

#include <algorithm>

#include "content/components.h"
#include "content/materials.h"

std::vector<Category> MaterialCategories = {{"debug", {}, false}, {"Common", {}, false}}, ComponentCategories = MaterialCategories;

// Adds a category unless the tag is empty or has one.
static void AddCategory(std::vector<Category> *categories, const std::string &tag) {
  const auto named = [&tag](const Category &c) { return c.name == tag; };
  if (!tag.empty() && std::none_of(categories->begin(), categories->end(), named)) categories->push_back({tag, {}, false});
}

// Puts a row into the category with this name, if there is one.
static void AddRow(std::vector<Category> *categories, const std::string &tag, size_t row) {
  for (Category &c : *categories)
    if (c.name == tag && (c.rows.empty() || c.rows.back() != row)) c.rows.push_back(static_cast<u16>(row));
}

// Orders every list by the bytes of the display names.
template <typename Row>
static void SortRows(std::vector<Category> *categories, const std::vector<Row> &table) {
  for (Category &c : *categories)
    std::stable_sort(c.rows.begin(), c.rows.end(), [&table](u16 a, u16 b) { return table[a].name < table[b].name; });
}

void SortMaterials() {
  std::vector<Category> made = {{"debug", {}, false}, {"Common", {}, false}};
  for (size_t row = 1; Materials[row].id != 0; ++row) AddCategory(&made, Materials[row].tags[0]);
  for (size_t row = 1; Materials[row].id != 0; ++row)
    for (const std::string &tag : Materials[row].tags) AddRow(&made, tag, row);
  SortRows(&made, Materials);
  MaterialCategories = std::move(made);
}

void SortComponents() {
  std::vector<Category> made = {{"debug", {}, false}, {"Common", {}, false}};
  for (size_t row = 1; Components[row].id != 0; ++row) AddCategory(&made, Components[row].primaryTag);
  for (size_t row = 1; Components[row].id != 0; ++row) {
    if (Components[row].familyOffset != 0) continue;
    AddRow(&made, Components[row].primaryTag, row);
    AddRow(&made, Components[row].secondaryTag, row);
  }
  SortRows(&made, Components);
  ComponentCategories = std::move(made);
}

void SortByNewNames() {
  SortRows(&MaterialCategories, Materials);
  SortRows(&ComponentCategories, Components);
}

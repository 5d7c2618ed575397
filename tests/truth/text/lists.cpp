// SPDX-License-Identifier: MIT
// Lists of records, and how many there are of each category.
#include "text/subjects.h"

namespace truth {

void ReadOverview(Lines* lines, std::vector<Json>* said) {
  Json categories = Json::object();
  while (const auto fact = lines->TakeFact()) categories[fact->first] = Number(fact->second);
  if (!categories.empty()) said->push_back({{"categories", categories}});
}

// "Artist 2 > albums (3)", and the records below.
void ReadList(Lines* lines, std::vector<Json>* said) {
  static const std::regex kHeading(".* \\(([0-9]+)\\)");
  static const std::regex kRecord(" +([0-9]+)  (.*)");
  const auto heading = lines->TakeIf(kHeading);
  if (!heading) return;
  said->push_back({{"total", Number(heading->at(1))}});
  while (const auto record = lines->TakeIf(kRecord)) {
    said->push_back({{"index", Number(record->at(1))}, {"name", Named(record->at(2))}});
  }
}

}  // namespace truth

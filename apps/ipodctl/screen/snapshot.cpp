// SPDX-License-Identifier: MIT
// The little that a snapshot works out by itself.
#include "screen/snapshot.h"

#include <algorithm>

#include "library/categories.h"

namespace ipodctl::screen {

unsigned char Place::category() const {
  unsigned char category = top;
  for (std::size_t i = 0; i < steps.size(); ++i) category = CategoryByCode(category).next;
  return category;
}

const std::string* RecordList::NameOf(unsigned long index) const {
  const auto page = pages.find(index / kPage);
  if (page == pages.end() || index % kPage >= page->second->size()) return nullptr;
  return &(*page->second)[index % kPage];
}

int WorkoutSnapshot::Seconds() const {
  if (!clock || !recording) return ended_s;
  return std::min(static_cast<int>(clock->Seconds()), recording->readings.back().seconds);
}

}  // namespace ipodctl::screen

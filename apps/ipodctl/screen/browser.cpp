// SPDX-License-Identifier: MIT
// Moves through lists that may not be read yet.
#include "screen/browser.h"

#include <algorithm>

#include "console/text.h"
#include "library/categories.h"

namespace ipodctl::screen {

namespace {

unsigned long Less(unsigned long number, unsigned long by) { return number - std::min(number, by); }

}  // namespace

std::optional<Browser::Track> Browser::Do(Action action, const LibrarySnapshot& library) {
  const unsigned long at = cursor();
  const unsigned long page = std::max(1UL, Less(rows_, 1));
  switch (action) {
    case Action::kUp:
      Move(Less(at, 1), library);
      break;
    case Action::kDown:
      Move(at + 1, library);
      break;
    case Action::kPageUp:
      Move(Less(at, page), library);
      break;
    case Action::kPageDown:
      Move(at + page, library);
      break;
    case Action::kFirst:
      Move(0, library);
      break;
    case Action::kLast:
      Move(Less(Count(library).value_or(0), 1), library);
      break;
    case Action::kBack:
      if (levels_.size() > 1) levels_.pop_back();
      break;
    case Action::kOpen:
      return Open(library);
    default:
      break;
  }
  return std::nullopt;
}

void Browser::PointAt(unsigned long record, const LibrarySnapshot& library) {
  Move(record, library);
}

void Browser::Move(unsigned long cursor, const LibrarySnapshot& library) {
  levels_.back().cursor = std::min(cursor, Less(Count(library).value_or(0), 1));
}

// A list that has become shorter, on another iPod, takes the cursor along.
void Browser::SetRows(int rows, const LibrarySnapshot& library) {
  rows_ = static_cast<unsigned long>(std::max(1, rows));
  Level& level = levels_.back();
  const std::optional<unsigned long> count = Count(library);
  if (!count) return;
  level.cursor = std::min(level.cursor, Less(*count, 1));
  const unsigned long least = Less(level.cursor + 1, rows_);
  const unsigned long most = std::min(level.cursor, Less(*count, rows_));
  level.first = std::clamp(level.first, std::min(least, most), most);
}

std::optional<Browser::Track> Browser::Open(const LibrarySnapshot& library) {
  if (Count(library).value_or(0) == 0) return std::nullopt;
  if (place().is_overview()) {
    levels_.push_back({Place{AllCategories()[cursor()].code, {}}, 0, 0});
    return std::nullopt;
  }
  if (place().category() == kTracks) return Track{place(), cursor()};
  const std::string* const name = library.lists.at(place())->NameOf(cursor());
  if (name == nullptr) return std::nullopt;
  Place inside = place();
  inside.steps.push_back({cursor(), *name});
  levels_.push_back({inside, 0, 0});
  return std::nullopt;
}

std::string Browser::Title() const {
  if (place().is_overview()) return "Library";
  std::string title;
  for (const Step& step : place().steps) {
    title += (title.empty() ? "" : " › ") + ShownName(step.name);
  }
  if (!title.empty()) return title;
  std::string name = CategoryByCode(place().top).name;
  name.front() = static_cast<char>(name.front() - 'a' + 'A');
  return name;
}

std::optional<unsigned long> Browser::Count(const LibrarySnapshot& library) const {
  if (place().is_overview()) return AllCategories().size();
  const auto list = library.lists.find(place());
  if (list == library.lists.end()) return std::nullopt;
  return list->second->count;
}

}  // namespace ipodctl::screen

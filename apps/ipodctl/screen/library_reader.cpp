// SPDX-License-Identifier: MIT
// Walks to lists, counts them, and reads a page of names.
#include "screen/library_reader.h"

#include <algorithm>
#include <utility>

#include "console/failure.h"
#include "library/categories.h"
#include "playing/control.h"

namespace ipodctl::screen {

namespace {

bool IsParent(const Place& parent, const Place& child) {
  return parent.top == child.top && parent.steps.size() + 1 == child.steps.size() &&
         std::equal(parent.steps.begin(), parent.steps.end(), child.steps.begin());
}

}  // namespace

LibraryReader::LibraryReader(Session& session, unsigned char hierarchy, LibrarySnapshot* library)
    : names_(session), walk_(names_, hierarchy), library_(library) {}

std::optional<std::string> LibraryReader::Lacks(const View& view) {
  if (!(view.place == looked_at_)) {
    looked_at_ = view.place;
    library_->problem.clear();
  }
  if (!library_->problem.empty()) return std::nullopt;
  if (view.place.is_overview()) {
    if (UncountedCategory()) return "how much there is";
    return std::nullopt;
  }
  const bool counted = library_->lists.count(view.place) != 0;
  if (counted && !MissingPage(view)) return std::nullopt;
  return CategoryByCode(view.place.category()).name;
}

void LibraryReader::Read(const View& view) {
  try {
    ReadPart(view);
  } catch (const SessionLost&) {
    throw;
  } catch (const CommandFailure& failure) {
    library_->problem = failure.what();
  }
}

void LibraryReader::ReadPart(const View& view) {
  if (view.place.is_overview()) {
    const unsigned char category = *UncountedCategory();
    EnterTop(category);
    library_->counts[category] = walk_.count();
    return;
  }
  Enter(view.place);
  auto& list = library_->lists[view.place];
  if (list == nullptr) {
    list = std::make_shared<RecordList>(RecordList{walk_.count(), {}});
  } else if (const auto page = MissingPage(view)) {
    ReadPage(view.place, *page);
  }
}

void LibraryReader::ReadPage(const Place& place, unsigned long page) {
  RecordList list = *library_->lists[place];
  const unsigned long from = page * RecordList::kPage;
  std::vector<std::string> read;
  names_.ReadNames(place.category(), from, std::min(RecordList::kPage, list.count - from),
                   [&read](unsigned long /*index*/, const std::optional<std::string>& name) {
                     read.push_back(name.value_or(""));
                     return true;
                   });
  list.pages[page] = std::make_shared<const std::vector<std::string>>(std::move(read));
  library_->lists[place] = std::make_shared<const RecordList>(std::move(list));
}

NowPlaying LibraryReader::Play(Session& session, const Place& place, unsigned long index) {
  Enter(place);
  const ListedRecord track = {index, walk_.NameOf(index)};
  at_.reset();
  return PlayListed(session, track);
}

std::optional<unsigned char> LibraryReader::UncountedCategory() const {
  for (const Category& category : AllCategories()) {
    if (library_->counts.count(category.code) == 0) return category.code;
  }
  return std::nullopt;
}

std::optional<unsigned long> LibraryReader::MissingPage(const View& view) const {
  const RecordList& list = *library_->lists.at(view.place);
  const unsigned long end = std::min(list.count, view.first + view.rows);
  for (unsigned long page = view.first / RecordList::kPage; page * RecordList::kPage < end;
       ++page) {
    if (list.pages.count(page) == 0) return page;
  }
  return std::nullopt;
}

// One step further needs no walk from the top.
void LibraryReader::Enter(const Place& place) {
  if (at_ && *at_ == place) return;
  if (at_ && IsParent(*at_, place)) {
    walk_.EnterRecord(place.steps.back().index, place.category());
    at_ = place;
    return;
  }
  EnterTop(place.top);
  for (std::size_t step = 0; step < place.steps.size(); ++step) EnterStep(place, step);
}

void LibraryReader::EnterTop(unsigned char category) {
  at_.reset();
  walk_.EnterTop(category);
  at_ = Place{category, {}};
}

// The iPod in the dock may be another one by now, or have been filled anew.
void LibraryReader::EnterStep(const Place& place, std::size_t step) {
  const Step& next = place.steps[step];
  Place there = *at_;
  if (next.index >= walk_.count() || walk_.NameOf(next.index) != next.name) {
    throw CommandFailure(kFailed, "this is not in the iPod's library any more; go back");
  }
  there.steps.push_back(next);
  at_.reset();
  walk_.EnterRecord(next.index, there.category());
  at_ = there;
}

}  // namespace ipodctl::screen

// SPDX-License-Identifier: MIT
// Finds and selects records.
#include "library/walk.h"

#include <algorithm>
#include <optional>

#include "console/failure.h"
#include "console/progress.h"
#include "console/text.h"
#include "library/categories.h"
#include "library/record_number.h"

namespace ipodctl {

namespace {

constexpr std::size_t kShownCandidates = 4;
constexpr unsigned long kMostRecords = 50000;  // no iPod held more of anything
constexpr unsigned long kFirstPortion = 16;
constexpr unsigned long kLargestPortion = 512;

std::string Quoted(const std::string& name) { return "'" + Printable(name) + "'"; }

// Records that might be meant: those of the same name but for case, and those it is a part of.
struct Candidates {
  std::vector<ListedRecord> same;
  std::vector<ListedRecord> partial;
  std::string partial_names;
  unsigned long unread = 0;

  void Consider(const ListedRecord& record, const std::string& wanted) {
    if (!record.name) {
      ++unread;
      return;
    }
    if (SameName(*record.name, wanted)) same.push_back(record);
    if (!Contains(*record.name, wanted)) return;
    partial.push_back(record);
    if (partial.size() > kShownCandidates) return;
    partial_names += (partial.size() == 1 ? "" : ", ") + Quoted(*record.name) + " (@" +
                     std::to_string(record.index) + ")";
  }
};

}  // namespace

LibraryWalk::LibraryWalk(MediaLibrary& library, unsigned char hierarchy)
    : library_(library), hierarchy_(hierarchy) {}

void LibraryWalk::EnterTop(unsigned char category) {
  library_.Require(library_.SelectTop(category, hierarchy_, &count_),
                   std::string("list its ") + CategoryByCode(category).name);
  category_ = category;
  if (count_ > kMostRecords) ConfirmCount();
}

void LibraryWalk::EnterRecord(const std::string& step, unsigned char next) {
  EnterRecord(Find(step), next);
}

void LibraryWalk::EnterRecord(unsigned long index, unsigned char next) {
  library_.Require(
      library_.Select(index, next, &count_),
      std::string("select ") + CategoryByCode(category_).singular + " " + std::to_string(index));
  category_ = next;
  // A record with nothing inside is rare.
  if (count_ > kMostRecords || count_ == 0) ConfirmCount();
}

// Believes a doubtful count once it has been told twice running.
void LibraryWalk::ConfirmCount() {
  constexpr int kAttempts = 3;
  const char* const name = CategoryByCode(category_).name;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const unsigned long before = count_;
    library_.Require(library_.Count(category_, &count_), std::string("count its ") + name);
    if (count_ == before) return;
  }
  throw CommandFailure(
      kFailed, std::string("the iPod counts its ") + name + " differently each time it is asked");
}

unsigned long LibraryWalk::Find(const std::string& step) {
  const std::optional<unsigned long> number = RecordNumber(step);
  if (!number) return FindByName(step).index;
  if (*number >= count_) {
    throw CommandFailure(kFailed, std::string("there is no ") + CategoryByCode(category_).singular +
                                      " " + step + " here, only " + Counted(count_, "record") +
                                      " counted from @0");
  }
  return *number;
}

ListedRecord LibraryWalk::FindNamed(const std::string& step) {
  if (!RecordNumber(step)) return FindByName(step);
  const unsigned long index = Find(step);
  return {index, NameOf(index)};
}

// What was asked for together is read to its end, so a search asks for little at first, and then
// for as much again as it has seen.
ListedRecord LibraryWalk::FindByName(const std::string& name) {
  const Category& category = CategoryByCode(category_);
  std::optional<ListedRecord> exact;
  Candidates candidates;
  {
    ProgressBar bar(std::string("Searching ") + category.name, count_);
    unsigned long portion = kFirstPortion;
    for (unsigned long from = 0; from < count_ && !exact; from += portion) {
      if (from != 0) portion = std::min(from, kLargestPortion);
      library_.ReadNames(category_, from, std::min(portion, count_ - from),
                         [&](unsigned long index, const std::optional<std::string>& found) {
                           bar.Update(index + 1);
                           if (found == name) exact = ListedRecord{index, found};
                           candidates.Consider({index, found}, name);
                           return !exact;
                         });
    }
  }
  if (exact) return *exact;
  if (candidates.same.size() == 1) return candidates.same.front();
  if (candidates.partial.size() == 1) return candidates.partial.front();
  if (candidates.partial.empty()) FailToFind(name, candidates.unread);
  throw CommandFailure(
      kFailed,
      Quoted(name) + " could be any of " +
          Counted(static_cast<unsigned long>(candidates.partial.size()), category.singular) + ": " +
          candidates.partial_names + (candidates.partial.size() > kShownCandidates ? " ..." : "") +
          "; name one in full or by its number");
}

void WalkPath(LibraryWalk& walk, const std::vector<std::string>& path,
              const std::string& last_category) {
  walk.EnterTop(CategoryByName(path.front())->code);
  for (std::size_t i = 1; i < path.size(); ++i) {
    const bool last = i + 1 == path.size();
    if (walk.category() == kTracks) {
      throw CommandFailure(kUsage, Quoted(path[i]) +
                                       " is a track or inside one, and a track holds "
                                       "nothing; 'ipodctl play' plays it");
    }
    const unsigned char next = last && !last_category.empty()
                                   ? CategoryByName(last_category)->code
                                   : CategoryByCode(walk.category()).next;
    walk.EnterRecord(path[i], next);
  }
}

void LibraryWalk::FailToFind(const std::string& name, unsigned long unread) const {
  const Category& category = CategoryByCode(category_);
  if (unread != 0) {
    throw CommandFailure(kFailed, "cannot find the " + std::string(category.singular) + " " +
                                      Quoted(name) + " here: " + Counted(unread, "name") +
                                      " could not be read; name it by its number");
  }
  throw CommandFailure(kFailed, std::string("there is no ") + category.singular + " " +
                                    Quoted(name) + " here; 'ipodctl browse' lists what there is");
}

ListedRecord FindTrack(LibraryWalk& walk, const std::vector<std::string>& path) {
  const unsigned char top = CategoryByName(path.front())->code;
  walk.EnterTop(path.size() == 1 ? kTracks : top);
  std::string name_or_number = "@0";
  for (std::size_t i = 1; i < path.size(); ++i) {
    const bool last = i + 1 == path.size();
    if (walk.category() != kTracks) {
      walk.EnterRecord(path[i], last ? kTracks : CategoryByCode(walk.category()).next);
    } else if (last) {
      name_or_number = path[i];
    } else {
      throw CommandFailure(kUsage, Quoted(path[i]) + " is a track, and nothing can follow it");
    }
  }
  if (walk.count() == 0) throw CommandFailure(kFailed, "there are no tracks to play here");
  return walk.FindNamed(name_or_number);
}

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// Finds and selects records.
#include "library/walk.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "console/failure.h"
#include "console/progress.h"
#include "console/text.h"
#include "library/categories.h"

namespace ipodctl {

namespace {

constexpr std::size_t kShownCandidates = 4;

std::optional<unsigned long> NumberOf(const std::string& step) {
  unsigned long number = 0;
  const char* end = step.data() + step.size();
  if (step.size() < 2 || step.front() != '@') return std::nullopt;
  const auto result = std::from_chars(step.data() + 1, end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

std::string Quoted(const std::string& name) { return "'" + Printable(name) + "'"; }

// Records that might be meant: those of the same name but for case, and those it is a part of.
struct Candidates {
  std::vector<unsigned long> same;
  std::vector<unsigned long> partial;
  std::string partial_names;

  void Consider(unsigned long index, const std::string& name, const std::string& wanted) {
    if (SameName(name, wanted)) same.push_back(index);
    if (!Contains(name, wanted)) return;
    partial.push_back(index);
    if (partial.size() > kShownCandidates) return;
    partial_names +=
        (partial.size() == 1 ? "" : ", ") + Quoted(name) + " (@" + std::to_string(index) + ")";
  }
};

}  // namespace

LibraryWalk::LibraryWalk(MediaLibrary& library, unsigned char hierarchy)
    : library_(library), hierarchy_(hierarchy) {}

void LibraryWalk::EnterTop(unsigned char category) {
  library_.Require(library_.SelectTop(category, hierarchy_, &count_),
                   std::string("list its ") + CategoryByCode(category).name);
  category_ = category;
}

void LibraryWalk::EnterRecord(const std::string& step, unsigned char next) {
  EnterRecord(Find(step), next);
}

void LibraryWalk::EnterRecord(unsigned long index, unsigned char next) {
  library_.Require(
      library_.Select(index, next, &count_),
      std::string("select ") + CategoryByCode(category_).singular + " " + std::to_string(index));
  category_ = next;
}

unsigned long LibraryWalk::Find(const std::string& step) {
  const std::optional<unsigned long> number = NumberOf(step);
  if (!number) return FindByName(step);
  if (*number >= count_) {
    throw CommandFailure(kFailed, std::string("there is no ") + CategoryByCode(category_).singular +
                                      " " + step + " here, only " + Counted(count_, "record") +
                                      " counted from @0");
  }
  return *number;
}

unsigned long LibraryWalk::FindByName(const std::string& name) {
  const Category& category = CategoryByCode(category_);
  std::optional<unsigned long> exact;
  Candidates candidates;
  {
    ProgressBar bar(std::string("Searching ") + category.name, count_);
    library_.ReadNames(category_, 0, count_, [&](unsigned long index, const std::string& found) {
      bar.Update(index + 1);
      if (found == name) exact = index;
      candidates.Consider(index, found, name);
      return !exact;
    });
  }
  if (exact) return *exact;
  if (candidates.same.size() == 1) return candidates.same.front();
  if (candidates.partial.size() == 1) return candidates.partial.front();
  if (candidates.partial.empty()) {
    throw CommandFailure(kFailed, std::string("there is no ") + category.singular + " " +
                                      Quoted(name) + " here; 'ipodctl browse' lists what there is");
  }
  throw CommandFailure(
      kFailed,
      Quoted(name) + " could be any of " +
          Counted(static_cast<unsigned long>(candidates.partial.size()), category.singular) + ": " +
          candidates.partial_names + (candidates.partial.size() > kShownCandidates ? " ..." : "") +
          "; name one in full or by its number");
}

void LibraryWalk::PlayTrack(unsigned long index) {
  library_.Require(library_.PlayTrack(index), "play track " + std::to_string(index));
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

void PlayPath(LibraryWalk& walk, const std::vector<std::string>& path) {
  const unsigned char top = CategoryByName(path.front())->code;
  walk.EnterTop(path.size() == 1 ? kTracks : top);
  unsigned long track = 0;
  for (std::size_t i = 1; i < path.size(); ++i) {
    const bool last = i + 1 == path.size();
    if (walk.category() != kTracks) {
      walk.EnterRecord(path[i], last ? kTracks : CategoryByCode(walk.category()).next);
    } else if (last) {
      track = walk.Find(path[i]);
    } else {
      throw CommandFailure(kUsage, Quoted(path[i]) + " is a track, and nothing can follow it");
    }
  }
  if (walk.count() == 0) throw CommandFailure(kFailed, "there are no tracks to play here");
  walk.PlayTrack(track);
}

}  // namespace ipodctl

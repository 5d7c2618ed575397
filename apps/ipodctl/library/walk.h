// SPDX-License-Identifier: MIT
// A walk through the iPod's database, from a category down through named records.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "library/media_library.h"

namespace ipodctl {

/// A record of the list that a walk has led to.
struct ListedRecord {
  unsigned long index = 0;
  std::optional<std::string> name;  // none when the interface cannot read it
};

class LibraryWalk {
 public:
  /// @param hierarchy 0 the iPod's own, 1 audio, 2 video
  LibraryWalk(MediaLibrary& library, unsigned char hierarchy);

  /// Starts at the top of a category.
  void EnterTop(unsigned char category);
  /// Selects the record that `step` names in the current list and moves into `next`.
  /// @param step a name, part of one, or "@N"
  void EnterRecord(const std::string& step, unsigned char next);
  void EnterRecord(unsigned long index, unsigned char next);

  /// The record that `step` names in the current list. Throws a CommandFailure when there is none,
  /// or more than one.
  unsigned long Find(const std::string& step);
  /// The same with its name.
  ListedRecord FindNamed(const std::string& step);

  /// The name of a record of the current list.
  std::optional<std::string> NameOf(unsigned long index) {
    return library_.ReadName(category_, index);
  }

  unsigned char category() const { return category_; }
  unsigned long count() const { return count_; }

 private:
  void ConfirmCount();
  ListedRecord FindByName(const std::string& name);
  [[noreturn]] void FailToFind(const std::string& name, unsigned long unread) const;

  MediaLibrary& library_;
  unsigned char hierarchy_;
  unsigned char category_ = 0;
  unsigned long count_ = 0;
};

/// Walks a whole path: a category's name, then records.
/// @param last_category lists this category inside the last record; empty for the record's own
void WalkPath(LibraryWalk& walk, const std::vector<std::string>& path,
              const std::string& last_category);

/// Walks to the list of tracks that a path leads to. @return the track to play there: the one that
/// the path names, or the list's first one
ListedRecord FindTrack(LibraryWalk& walk, const std::vector<std::string>& path);

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// Lists as the session's thread has read them.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "screen/snapshot.h"

namespace ipodctl::screen {

/// A list whose names, a page of them at most, are all read.
inline std::shared_ptr<const RecordList> ListOf(std::vector<std::string> names) {
  RecordList list;
  list.count = static_cast<unsigned long>(names.size());
  list.pages[0] = std::make_shared<const std::vector<std::string>>(std::move(names));
  return std::make_shared<const RecordList>(std::move(list));
}

/// `count` tracks at the top, of which the first `read` are known by name: "Track 0" ...
inline LibrarySnapshot TracksNamed(unsigned long count, unsigned long read) {
  constexpr unsigned char kAllTracks = 5;
  std::vector<std::string> names;
  for (unsigned long i = 0; i < read; ++i) names.push_back("Track " + std::to_string(i));
  RecordList list = *ListOf(std::move(names));
  list.count = count;
  LibrarySnapshot library;
  library.lists[{kAllTracks, {}}] = std::make_shared<const RecordList>(std::move(list));
  return library;
}

}  // namespace ipodctl::screen

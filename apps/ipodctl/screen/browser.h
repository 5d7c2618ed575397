// SPDX-License-Identifier: MIT
// Where the user is in the library: the list that is open, the line that is pointed at, and the way
// back. It moves at once, whatever the iPod does.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "screen/action.h"
#include "screen/library_reader.h"
#include "screen/snapshot.h"

namespace ipodctl::screen {

class Browser {
 public:
  /// What opening a record of a list of tracks comes to.
  struct Track {
    Place place;
    unsigned long index;
  };

  Browser() : levels_(1) {}

  /// Moves, opens or goes back. @return the track to play, when one was opened
  std::optional<Track> Do(Action action, const LibrarySnapshot& library);
  void PointAt(unsigned long record, const LibrarySnapshot& library);
  /// Fits the list into so many lines; to be called before it is drawn.
  void SetRows(int rows, const LibrarySnapshot& library);

  const Place& place() const { return levels_.back().place; }
  unsigned long cursor() const { return levels_.back().cursor; }
  /// The part that is shown, from its first line on.
  View view() const { return {place(), levels_.back().first, rows_}; }
  /// "Ada Marsh › Light", and "Library" for the overview.
  std::string Title() const;
  /// None while the list's length is not known.
  std::optional<unsigned long> Count(const LibrarySnapshot& library) const;

 private:
  struct Level {
    Place place;
    unsigned long cursor = 0;
    unsigned long first = 0;
  };

  void Move(unsigned long cursor, const LibrarySnapshot& library);
  std::optional<Track> Open(const LibrarySnapshot& library);

  std::vector<Level> levels_;  // the overview, and what was opened from it
  unsigned long rows_ = 1;
};

}  // namespace ipodctl::screen

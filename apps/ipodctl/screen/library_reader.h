// SPDX-License-Identifier: MIT
// Reads of the library what is looked at, a little at a time, so that wishes find their turn.
#pragma once

#include <optional>
#include <string>

#include "library/session_library.h"
#include "library/walk.h"
#include "screen/snapshot.h"

namespace ipodctl::screen {

/// The part of the library that stands on the screen.
struct View {
  Place place;
  unsigned long first = 0;
  unsigned long rows = 0;
};

class LibraryReader {
 public:
  LibraryReader(Session& session, unsigned char hierarchy, LibrarySnapshot* library);

  /// What `view` lacks, the rest of "reading ..."; none when it is complete, or cannot be read.
  std::optional<std::string> Lacks(const View& view);
  /// Reads a part of what it lacks. What goes wrong is the list's problem until another one is
  /// looked at; throws a SessionLost when the iPod is gone.
  void Read(const View& view);
  /// Walks to a list and plays one of its tracks.
  NowPlaying Play(Session& session, const Place& place, unsigned long index);

 private:
  void ReadPart(const View& view);
  void ReadPage(const Place& place, unsigned long page);
  std::optional<unsigned char> UncountedCategory() const;
  std::optional<unsigned long> MissingPage(const View& view) const;
  void Enter(const Place& place);
  void EnterTop(unsigned char category);
  void EnterStep(const Place& place, std::size_t step);

  SessionLibrary names_;
  LibraryWalk walk_;
  LibrarySnapshot* library_;
  std::optional<Place> at_;  // where the iPod's selection is
  Place looked_at_;
};

}  // namespace ipodctl::screen

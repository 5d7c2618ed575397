// SPDX-License-Identifier: MIT
// The iPod's database, whichever of the library's interfaces reaches it.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace ipodctl {

/// Gets a record's index and name, none when the interface cannot read it; false ends the reading.
using TakeName = std::function<bool(unsigned long index, const std::optional<std::string>& name)>;

class MediaLibrary {
 public:
  virtual ~MediaLibrary() = default;

  /// Enters a category at the database's top and counts its records.
  /// @param hierarchy 0 the iPod's own, 1 audio, 2 video
  virtual bool SelectTop(unsigned char category, unsigned char hierarchy, unsigned long* count) = 0;
  /// Selects a record of the category entered last and goes on to `next`.
  virtual bool Select(unsigned long index, unsigned char next, unsigned long* count) = 0;
  /// Counts a category's records inside what was selected last.
  virtual bool Count(unsigned char category, unsigned long* count) = 0;
  /// Reads the name of one record of the category entered last.
  virtual std::optional<std::string> ReadName(unsigned char category, unsigned long index) = 0;
  /// Reads the names of `count` records from `from` on, asked for together where the interface can,
  /// and passes each on as soon as it is read. Throws a CommandFailure when interrupted, or when
  /// the iPod refuses or no longer answers. When `take` ends the reading, the rest of what was
  /// asked for together is still read.
  virtual void ReadNames(unsigned char category, unsigned long from, unsigned long count,
                         const TakeName& take) = 0;

  /// Throws a CommandFailure unless `succeeded`.
  /// @param what the rest of "the iPod refused to ..."
  virtual void Require(bool succeeded, const std::string& what) = 0;
};

}  // namespace ipodctl

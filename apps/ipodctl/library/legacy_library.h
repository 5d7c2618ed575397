// SPDX-License-Identifier: MIT
// The iPod's database through the legacy interface.
#pragma once

#include "ipod/legacy_session.h"
#include "library/media_library.h"

namespace ipodctl {

class LegacyLibrary : public MediaLibrary {
 public:
  explicit LegacyLibrary(LegacySession& session) : session_(session) {}

  bool SelectTop(unsigned char category, unsigned char hierarchy, unsigned long* count) override;
  bool Select(unsigned long index, unsigned char next, unsigned long* count) override;
  /// Selects a record of the list entered last and stays there; a track plays.
  bool SelectRecord(unsigned long index);
  /// Whether the iPod refused what was asked last.
  bool refused() const { return last_.refused(); }
  bool Count(unsigned char category, unsigned long* count) override;
  std::optional<std::string> ReadName(unsigned char category, unsigned long index) override;
  void ReadNames(unsigned char category, unsigned long from, unsigned long count,
                 const TakeName& take) override;
  void Require(bool succeeded, const std::string& what) override;

 private:
  LegacySession& session_;
  LegacyAnswer last_;
};

}  // namespace ipodctl

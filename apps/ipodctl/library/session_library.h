// SPDX-License-Identifier: MIT
// The iPod's database through a session.
#pragma once

#include "ipod/session.h"
#include "library/media_library.h"

namespace ipodctl {

class SessionLibrary : public MediaLibrary {
 public:
  explicit SessionLibrary(Session& session) : session_(session) {}

  bool SelectTop(unsigned char category, unsigned char hierarchy, unsigned long* count) override;
  bool Select(unsigned long index, unsigned char next, unsigned long* count) override;
  bool PlayTrack(unsigned long index) override;
  /// The line is slow (some 30 names a second), so the names come in portions and a caller that has
  /// found what it wants stops after the current one.
  void ReadNames(unsigned char category, unsigned long from, unsigned long count,
                 const std::function<bool(unsigned long, const std::string&)>& take) override;
  void Require(bool succeeded, const std::string& what) override;

 private:
  Session& session_;
};

}  // namespace ipodctl

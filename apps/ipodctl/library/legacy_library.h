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
  bool PlayTrack(unsigned long index);
  std::string ReadName(unsigned char category, unsigned long index) override;
  /// A name that is too long for the interface comes out empty.
  void ReadNames(unsigned char category, unsigned long from, unsigned long count,
                 const std::function<bool(unsigned long, const std::string&)>& take) override;
  void Require(bool succeeded, const std::string& what) override;

 private:
  LegacySession& session_;
};

}  // namespace ipodctl

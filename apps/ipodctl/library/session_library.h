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
  bool Count(unsigned char category, unsigned long* count) override;
  std::optional<std::string> ReadName(unsigned char category, unsigned long index) override;
  void ReadNames(unsigned char category, unsigned long from, unsigned long count,
                 const TakeName& take) override;
  void Require(bool succeeded, const std::string& what) override;

 private:
  Session& session_;
};

}  // namespace ipodctl

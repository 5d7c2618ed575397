// SPDX-License-Identifier: MIT
// Hands on to the session.
#include "library/session_library.h"

#include "library/categories.h"
#include "library/name_list.h"

namespace ipodctl {

bool SessionLibrary::SelectTop(unsigned char category, unsigned char hierarchy,
                               unsigned long* count) {
  return session_.ipod().SelectTop(category, count, hierarchy) != 0;
}

bool SessionLibrary::Select(unsigned long index, unsigned char next, unsigned long* count) {
  return session_.ipod().Select(next, count, index) != 0;
}

bool SessionLibrary::PlayTrack(unsigned long index) {
  return session_.ipod().Select(kTracks, index) != 0;
}

void SessionLibrary::ReadNames(unsigned char category, unsigned long from, unsigned long count,
                               const std::function<bool(unsigned long, const std::string&)>& take) {
  ipodctl::ReadNames(session_, category, from, count, take);
}

void SessionLibrary::Require(bool succeeded, const std::string& what) {
  session_.Require(succeeded, what);
}

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// Selects records and reads their names one by one.
#include "library/legacy_library.h"

#include <limits>

#include "console/interrupt.h"
#include "ipod/display_text.h"
#include "library/categories.h"

namespace ipodctl {

bool LegacyLibrary::SelectTop(unsigned char category, unsigned char hierarchy,
                              unsigned long* count) {
  return session_.interface().selecttop(category, count, hierarchy) != 0;
}

bool LegacyLibrary::Select(unsigned long index, unsigned char next, unsigned long* count) {
  // The interface counts records in 16 bits.
  if (index > std::numeric_limits<unsigned short>::max()) return false;
  return session_.interface().select(next, static_cast<unsigned short>(index), count) != 0;
}

bool LegacyLibrary::PlayTrack(unsigned long index) {
  unsigned long ignored_count = 0;
  return Select(index, kTracks, &ignored_count);
}

std::string LegacyLibrary::ReadName(unsigned char category, unsigned long index) {
  session_.interface().setcategory(category);
  DisplayText name;
  if (session_.interface().getnextcategorizeddbrecord(name.buffer(), DisplayText::kCapacity,
                                                      index) == 0) {
    session_.RequireAnswers();
  }
  return name.text();
}

void LegacyLibrary::ReadNames(unsigned char category, unsigned long from, unsigned long count,
                              const std::function<bool(unsigned long, const std::string&)>& take) {
  for (unsigned long index = from; index < from + count; ++index) {
    StopIfInterrupted();
    if (!take(index, ReadName(category, index))) return;
  }
}

void LegacyLibrary::Require(bool succeeded, const std::string& what) {
  session_.Require(succeeded, what);
}

}  // namespace ipodctl

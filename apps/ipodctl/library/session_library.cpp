// SPDX-License-Identifier: MIT
// Selects records; streams their names, and reads again one by one what got lost on the way.
#include "library/session_library.h"

#include <algorithm>
#include <vector>

#include "console/interrupt.h"
#include "console/text.h"
#include "console/verbose_log.h"
#include "library/categories.h"

namespace ipodctl {

namespace {

// All names of a request must be read before the next request, so this is also how much is read
// after a hit or an interrupt: about half a second.
constexpr unsigned long kPortion = 16;
constexpr std::size_t kNameCapacity = 512;

std::vector<std::string> StreamPortion(Session& session, unsigned char category, unsigned long from,
                                       unsigned long count) {
  std::vector<std::string> names;
  CIpodComm& ipod = session.ipod();
  ipod.Command_RetrieveCategorizedDatabaseRecords(from, count, category);
  wchar_t name[kNameCapacity] = {};
  while (names.size() < count && ipod.GetNextCategorizedRecord(name, kNameCapacity) != 0) {
    names.push_back(Utf8(name));
  }
  return names;
}

// Streamed names come without their index: when one is missing, none of them can be trusted.
std::vector<std::string> ReadOneByOne(Session& session, unsigned char category, unsigned long from,
                                      unsigned long count) {
  std::vector<std::string> names;
  for (unsigned long index = from; index < from + count; ++index) {
    StopIfInterrupted();
    wchar_t name[kNameCapacity] = {};
    const bool read = session.ipod().Command_RetrieveCategorizedDatabaseRecord(
                          name, kNameCapacity, index, category) != 0;
    session.Require(read, "name " + std::string(CategoryByCode(category).singular) + " " +
                              std::to_string(index));
    names.push_back(Utf8(name));
  }
  return names;
}

}  // namespace

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
  for (unsigned long done = 0; done < count;) {
    StopIfInterrupted();
    const unsigned long portion = std::min(kPortion, count - done);
    std::vector<std::string> names = StreamPortion(session_, category, from + done, portion);
    if (names.size() < portion) {
      Note("names got lost on the line; reading them again one by one");
      names = ReadOneByOne(session_, category, from + done, portion);
    }
    for (const std::string& name : names) {
      if (!take(from + done++, name)) return;
    }
  }
}

void SessionLibrary::Require(bool succeeded, const std::string& what) {
  session_.Require(succeeded, what);
}

}  // namespace ipodctl

// SPDX-License-Identifier: MIT
// Selects records, counts them, and streams their names.
#include "library/session_library.h"

#include "console/interrupt.h"
#include "console/text.h"
#include "console/verbose_log.h"
#include "library/categories.h"

namespace ipodctl {

namespace {

constexpr std::size_t kNameCapacity = 1024;  // no frame carries a longer one

// The names of one request, as they come.
class NameStream {
 public:
  NameStream(Session& session, unsigned char category, unsigned long from, unsigned long count)
      : ipod_(session.ipod()), next_(from), end_(from + count) {
    ipod_.Command_RetrieveCategorizedDatabaseRecords(from, count, category);
  }

  /// False at the end, and when the next record does not come.
  bool Read(std::string* name) {
    wchar_t text[kNameCapacity] = {};
    unsigned long index = 0;
    if (next_ == end_ || ipod_.GetNextCategorizedRecord(&index, text, kNameCapacity) == 0) {
      return false;
    }
    if (index != next_) {
      Note("names got lost on the line; asking for them again");
      while (ipod_.GetNextCategorizedRecord(&index, text, kNameCapacity) != 0) StopIfInterrupted();
      return false;
    }
    ++next_;
    *name = Utf8(text);
    return true;
  }

  unsigned long next() const { return next_; }

 private:
  CIpodComm& ipod_;
  unsigned long next_;
  unsigned long end_;
};

}  // namespace

bool SessionLibrary::SelectTop(unsigned char category, unsigned char hierarchy,
                               unsigned long* count) {
  return session_.ipod().SelectTop(category, count, hierarchy) != 0;
}

bool SessionLibrary::Select(unsigned long index, unsigned char next, unsigned long* count) {
  return session_.ipod().Select(next, count, index) != 0;
}

bool SessionLibrary::Count(unsigned char category, unsigned long* count) {
  return session_.ipod().Command_GetNumberCategorizedDBRecords(category, count) != 0;
}

std::optional<std::string> SessionLibrary::ReadName(unsigned char category, unsigned long index) {
  wchar_t name[kNameCapacity] = {};
  const bool read = session_.ipod().Command_RetrieveCategorizedDatabaseRecord(name, kNameCapacity,
                                                                              index, category) != 0;
  session_.Require(
      read, "name " + std::string(CategoryByCode(category).singular) + " " + std::to_string(index));
  return Utf8(name);
}

void SessionLibrary::ReadNames(unsigned char category, unsigned long from, unsigned long count,
                               const TakeName& take) {
  const unsigned long end = from + count;
  bool wanted = true;
  for (unsigned long next = from; wanted && next < end;) {
    NameStream stream(session_, category, next, end - next);
    const unsigned long first = next;
    for (std::string name; stream.Read(&name); next = stream.next()) {
      StopIfInterrupted();
      // The rest of what was asked for has to come before anything else is asked.
      if (wanted) wanted = take(next, name);
    }
    // One that does not come in a stream may come alone, or tell why it does not.
    if (wanted && next == first) {
      wanted = take(next, ReadName(category, next));
      ++next;
    }
  }
}

void SessionLibrary::Require(bool succeeded, const std::string& what) {
  session_.Require(succeeded, what);
}

}  // namespace ipodctl

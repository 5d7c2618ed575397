// SPDX-License-Identifier: MIT
// From the artists to the tracks of one, with every name read.
#include <cwchar>

#include "scenario.h"

namespace reliability {
namespace {

void ExpectNames(Stage& stage, unsigned char category,
                 std::initializer_list<const wchar_t*> names) {
  stage.session().Command_RetrieveCategorizedDatabaseRecords(0, names.size(), category);
  for (const wchar_t* expected : names) {
    // Room for the name and its terminator, and no more.
    std::wstring name;
    {
      const EnoughMemory enough;
      name.assign(std::wcslen(expected) + 1, L'?');
    }
    const int read = stage.session().GetNextCategorizedRecord(name.data(), name.size());
    name.pop_back();
    stage.Expect(read == 1 && name == expected, "a record has its name");
  }
}

void Browse(Stage& stage) {
  stage.DockIdentified();
  stage.session().Command_EnterRemoteUIMode();
  unsigned long count = 0;
  stage.Expect(stage.session().SelectTop(ipod::IPOD_CATEGORY_ARTIST, &count, 0) == 1 && count == 2,
               "two artists");
  ExpectNames(stage, ipod::IPOD_CATEGORY_ARTIST, {L"Ann", L"Bob"});
  stage.Expect(stage.session().Select(ipod::IPOD_CATEGORY_TRACK, &count, 1) == 1 && count == 3,
               "three tracks of the second");
  ExpectNames(stage, ipod::IPOD_CATEGORY_TRACK, {L"Track 3", L"Track 4", L"Track 5"});
}

}  // namespace

const Scenario kBrowse = {"browse", "artists, and the tracks of one", SmallIpod, Browse};

}  // namespace reliability

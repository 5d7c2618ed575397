// SPDX-License-Identifier: MIT
// Records: reading their names one by one, and releasing lists of them.
#include <algorithm>
#include <cstdint>
#include <iterator>

#include "support/legacy_test.h"

namespace {

using test::kMillisecond;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kRetrieve = "FF 55 0C 04 00 1A 02 00 00 01 02 00 00 00 01 D0";
constexpr const char* kZoe = "FF 55 0C 04 00 1B 00 00 01 02 5A 6F C3 AB 00 9B";
constexpr const char* kNameless = "FF 55 08 04 00 1B 00 00 01 02 00 D6";

class Records : public LegacyTest {
 protected:
  Records() {
    std::fill(std::begin(name_), std::end(name_), L'x');
    legacy_.setcategory(2);
  }
  int Read(int capacity) { return legacy_.getnextcategorizeddbrecord(name_, capacity, 258); }

  wchar_t name_[256];
};

TEST_F(Records, NameStandsBehindTheIndexAndIsConverted) {
  Answer(kRetrieve, kZoe);
  EXPECT_EQ(Read(256), 1);
  EXPECT_STREQ(name_, L"Zo\u00EB");
  EXPECT_THAT(DrainSent(), ElementsAre(kRetrieve));
}

TEST_F(Records, LargestIndexAndAnyCategoryAreAskedFor) {
  legacy_.setcategory(8);
  Answer("FF 55 0C 04 00 1A 08 FE DC BA 98 00 00 00 01 A1", kZoe);
  EXPECT_EQ(legacy_.getnextcategorizeddbrecord(name_, 256, 0xFEDCBA98), 1);
  EXPECT_STREQ(name_, L"Zo\u00EB");
}

TEST_F(Records, NameIsCutToItsCapacity) {
  Answer(kRetrieve, "FF 55 0C 04 00 1B 00 00 01 02 41 42 43 44 00 C8");
  EXPECT_EQ(Read(4), 1);
  EXPECT_STREQ(name_, L"ABC");
  EXPECT_EQ(name_[4], L'x');
}

TEST_F(Records, NameIsCutBetweenTwoCharacters) {
  Answer(kRetrieve, kZoe);
  EXPECT_EQ(Read(4), 1);
  EXPECT_STREQ(name_, L"Zo");
  EXPECT_EQ(name_[4], L'x');
}

TEST_F(Records, NameWhoseCharactersFillItsCapacityIsWhole) {
  Answer(kRetrieve, kZoe);
  EXPECT_EQ(Read(5), 1);
  EXPECT_STREQ(name_, L"Zo\u00EB");
}

TEST_F(Records, NameCutInsideItsFirstCharacterIsEmptyAndFails) {
  Answer(kRetrieve, "FF 55 0B 04 00 1B 00 00 01 02 E2 82 AC 00 C3");
  EXPECT_EQ(Read(3), 0);
  EXPECT_STREQ(name_, L"");
}

TEST_F(Records, NameWithoutATerminatorIsFollowedByItsChecksum) {
  Answer(kRetrieve, "FF 55 09 04 00 1B 00 00 01 02 41 42 52");  // the checksum is 52, "R"
  EXPECT_EQ(Read(256), 1);
  EXPECT_STREQ(name_, L"ABR");
}

TEST_F(Records, LongestNameHas245Characters) {
  // 249 bytes of payload make the longest frame that is read whole.
  std::string reply = "FF 55 FC 04 00 1B 00 00 01 02";
  for (int i = 0; i < 245; ++i) reply += " 41";
  Answer(kRetrieve, reply + " AD");
  EXPECT_EQ(Read(256), 1);
  EXPECT_EQ(std::wstring(name_), std::wstring(245, L'A'));
}

TEST_F(Records, EmptyNameIsReadAgain) {
  Send(kNameless);  // comes before the answers do
  Answer(kRetrieve, kZoe);
  EXPECT_EQ(Read(256), 1);
  EXPECT_STREQ(name_, L"Zo\u00EB");
}

TEST_F(Records, TwoEmptyNamesFail) {
  Answer(kRetrieve, kNameless);
  EXPECT_EQ(Read(256), 0);
  EXPECT_EQ(test::Units(name_, 2), "0 78");
  EXPECT_THAT(DrainSent(), ElementsAre(kRetrieve, kRetrieve));
}

TEST_F(Records, TwoUnansweredRequestsFailInTwiceTheTime) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(Read(256), 0); }), 6010 * kMillisecond);
  EXPECT_STREQ(name_, L"");
  EXPECT_THAT(DrainSent(), ElementsAre(kRetrieve, kRetrieve));
}

TEST_F(Records, SecondAttemptTakesAnAnswerThatCameTooLateForTheFirst) {
  Answer(kRetrieve, kZoe, 3100 * kMillisecond);
  EXPECT_EQ(Read(256), 1);
  EXPECT_STREQ(name_, L"Zo\u00EB");
  EXPECT_THAT(DrainSent(), ElementsAre(kRetrieve, kRetrieve));
}

TEST_F(Records, SecondAttemptFollowsARequestThatCouldNotBeSent) {
  Answer(kRetrieve, kZoe);
  world_.FailOnce("WriteFile", 2, 31);
  EXPECT_EQ(Read(256), 1);
  EXPECT_STREQ(name_, L"Zo\u00EB");
}

TEST_F(Records, RequestsThatCannotBeSentFailAtOnce) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(Read(256), 0); }), 10 * kMillisecond);
  EXPECT_STREQ(name_, L"");
}

TEST_F(Records, NameOfCapacity1StaysEmptyAndFails) {
  Answer(kRetrieve, kZoe);
  EXPECT_EQ(Read(1), 0);
  EXPECT_EQ(test::Units(name_, 2), "0 78");
  EXPECT_THAT(DrainSent(), ElementsAre(kRetrieve, kRetrieve));
}

TEST_F(Records, NameOfNoCapacityIsNotTouched) {
  Answer(kRetrieve, kZoe);
  EXPECT_EQ(Read(0), 0);
  EXPECT_EQ(Read(-1), 0);
  EXPECT_EQ(name_[0], L'x');
}

TEST_F(Records, NameWithoutAPlaceFails) {
  Answer(kRetrieve, kZoe);
  EXPECT_EQ(legacy_.getnextcategorizeddbrecord(nullptr, 256, 258), 0);
}

// Lists as a host makes them: an array whose first element is its number of elements, and values.
class RecordLists : public LegacyTest {
 protected:
  wchar_t** MakeNames(std::uintptr_t count) {
    auto** names = static_cast<wchar_t**>(LocalAlloc(LPTR, (count + 1) * sizeof(wchar_t*)));
    names[0] = reinterpret_cast<wchar_t*>(count);
    for (std::uintptr_t i = 1; i < count; ++i) {
      names[i] = static_cast<wchar_t*>(LocalAlloc(LPTR, 16));
    }
    return names;
  }
  static unsigned long* MakeValues() {
    return static_cast<unsigned long*>(LocalAlloc(LPTR, 8 * sizeof(unsigned long)));
  }
};

TEST_F(RecordLists, AreReleasedElementByElementTheFirstIncluded) {
  wchar_t** names = MakeNames(3);
  unsigned long* values = MakeValues();
  world_.Record({"LocalFree"});
  legacy_.deleterecords(&names, &values);
  EXPECT_THAT(world_.DrainCalls().text_with_results(),
              ElementsAre("LocalFree(unknown) = failed 6", "LocalFree(block2) = null",
                          "LocalFree(block3) = null", "LocalFree(block1) = null",
                          "LocalFree(block4) = null"));
}

TEST_F(RecordLists, KeepTheirPointers) {
  wchar_t** names = MakeNames(2);
  unsigned long* values = MakeValues();
  wchar_t** const names_before = names;
  unsigned long* const values_before = values;
  legacy_.deleterecords(&names, &values);
  EXPECT_EQ(names, names_before);
  EXPECT_EQ(values, values_before);
}

TEST_F(RecordLists, OfNoElementsReleaseTheArray) {
  wchar_t** names = MakeNames(0);
  world_.Record({"LocalFree"});
  legacy_.deleterecords(&names, nullptr);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("LocalFree(block1)"));
}

TEST_F(RecordLists, MayBeMissing) {
  wchar_t** no_names = nullptr;
  unsigned long* no_values = nullptr;
  world_.Record({"LocalFree"});
  legacy_.deleterecords(nullptr, nullptr);
  legacy_.deleterecords(&no_names, &no_values);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(RecordLists, MayBeValuesOnly) {
  unsigned long* values = MakeValues();
  world_.Record({"LocalFree"});
  legacy_.deleterecords(nullptr, &values);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("LocalFree(block1)"));
}

}  // namespace

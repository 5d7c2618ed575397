// SPDX-License-Identifier: MIT
// Browsing the database: what goes out for each operation, what is made of the answer, and where
// the session stands afterwards. The scripted iPod answers each literal frame with a literal frame.
#include <algorithm>
#include <array>

#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Browsing : public SessionTest {
 protected:
  unsigned char current_category() { return CIpodCommPeer::Browsing(session_).current_category; }
  unsigned char selection_category() {
    return CIpodCommPeer::Browsing(session_).selection_category;
  }
  void Enter(unsigned char category) {
    CIpodCommPeer::Browsing(session_).current_category = category;
    CIpodCommPeer::Browsing(session_).selection_category = category;
  }

  static constexpr const char* kResetFrame = "FF 55 03 04 00 16 E3";
  static constexpr const char* kResetAck = "FF 55 06 04 00 01 00 00 16 DF";
};

// ---- Resetting ----------------------------------------------------------------------------------

TEST_F(Browsing, ResetSucceedsOnStatusZero) {
  Answer(kResetFrame, kResetAck);
  EXPECT_EQ(session_.Command_ResetDBSelection(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kResetFrame));
}

TEST_F(Browsing, ResetFailsSilentlyOnAnotherStatus) {
  Answer(kResetFrame, "FF 55 06 04 00 01 01 00 16 DE");
  EXPECT_EQ(session_.Command_ResetDBSelection(), 0);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Browsing, ResetFailsAfterThreeAttemptsOfASecondEach) {
  int result = 1;
  const std::int64_t elapsed_us = Elapsed([&] { result = session_.Command_ResetDBSelection(); });
  EXPECT_EQ(result, 0);
  EXPECT_GE(elapsed_us, 3 * (20 + 1000) * test::kMillisecond);
  // Each write may first wait for the read thread to leave the port, 2 ms at the most.
  EXPECT_LE(elapsed_us, 3 * (2 + 20 + 1000) * test::kMillisecond);
  EXPECT_THAT(DrainSent(), ElementsAre(kResetFrame, kResetFrame, kResetFrame));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Browsing, HierarchyResetNamesTheHierarchy) {
  Answer("FF 55 04 04 00 3B 02 BB", "FF 55 06 04 00 01 00 00 3B BA");
  EXPECT_EQ(session_.Command_ResetDBSelectionHeirarchy(2), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 3B 02 BB"));
}

TEST_F(Browsing, HierarchyResetFailsSilentlyWhenItIsNotAnswered) {
  constexpr const char* kReset = "FF 55 04 04 00 3B 01 BC";
  EXPECT_EQ(session_.Command_ResetDBSelectionHeirarchy(1), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kReset, kReset, kReset));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Browsing, HierarchyResetFailsSilentlyOnAnotherStatus) {
  Answer("FF 55 04 04 00 3B 01 BC", "FF 55 06 04 00 01 04 00 3B B6");
  EXPECT_EQ(session_.Command_ResetDBSelectionHeirarchy(1), 0);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

// ---- Counting -----------------------------------------------------------------------------------

TEST_F(Browsing, CountIsReadBigEndian) {
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 07 04 00 19 00 00 07 D0 05");
  unsigned long count = 0;
  EXPECT_EQ(session_.Command_GetNumberCategorizedDBRecords(5, &count), 1);
  EXPECT_EQ(count, 2000U);
}

TEST_F(Browsing, FailedCountLeavesTheOutputUntouched) {
  unsigned long count = 77;
  EXPECT_EQ(session_.Command_GetNumberCategorizedDBRecords(5, &count), 0);
  EXPECT_EQ(count, 77U);
}

// ---- Records ------------------------------------------------------------------------------------

TEST_F(Browsing, RecordRequestIsOnlyWrittenAndReturnsTheIdentifierBeforeTheWrite) {
  TurnOnTransactionIds(0x0102);
  unsigned long identifier = 0;
  const std::int64_t elapsed_us =
      Elapsed([&] { identifier = session_.Command_RetrieveCategorizedDatabaseRecords(100, 2, 5); });
  EXPECT_EQ(identifier, 0x0102U);
  EXPECT_GE(elapsed_us, 20 * test::kMillisecond);
  EXPECT_LE(elapsed_us, 22 * test::kMillisecond);  // the read thread may have the port first
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 0E 04 00 1A 01 02 05 00 00 00 64 00 00 00 02 66"));
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0x0103);
}

TEST_F(Browsing, RecordRequestThatCannotBeWrittenReturnsZero) {
  TurnOnTransactionIds(0x0102);
  session_.Close();
  EXPECT_EQ(session_.Command_RetrieveCategorizedDatabaseRecords(100, 2, 5), 0U);
}

TEST_F(Browsing, RecordRequestWithCategory255CarriesTheCurrentCategory) {
  Enter(2);
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 1, 255);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 0C 04 00 1A 02 00 00 00 00 00 00 00 01 D3"));
}

TEST_F(Browsing, StreamedRecordsAreHandedOutOneByOne) {
  Answer("FF 55 0C 04 00 1A 05 00 00 00 64 00 00 00 02 6B",
         "FF 55 09 04 00 1B 00 00 00 64 41 00 33"
         "FF 55 0A 04 00 1B 00 00 00 65 C3 A9 00 06");
  session_.Command_RetrieveCategorizedDatabaseRecords(100, 2, 5);
  wchar_t name[64] = {};
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 64), 1);
  EXPECT_STREQ(name, L"A");
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 64), 1);
  EXPECT_STREQ(name, L"\u00E9");
}

TEST_F(Browsing, NextRecordClearsTheBufferWhenNoneComes) {
  wchar_t name[] = L"old text";
  const std::int64_t elapsed_us =
      Elapsed([&] { EXPECT_EQ(session_.GetNextCategorizedRecord(name, 8), 0); });
  EXPECT_EQ(elapsed_us, test::kSecond);
  EXPECT_EQ(std::wstring(name, 8), std::wstring(8, L'\0'));
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Browsing, NextRecordClearsTheWholeBufferBehindAShortName) {
  Arrive("FF 55 09 04 00 1B 00 00 00 64 41 00 33");
  std::array<wchar_t, 2000> name = {};
  name.fill(L'x');
  EXPECT_EQ(session_.GetNextCategorizedRecord(name.data(), name.size()), 1);
  EXPECT_EQ(name[0], L'A');
  EXPECT_TRUE(std::all_of(name.begin() + 1, name.end(), [](wchar_t c) { return c == L'\0'; }));
}

TEST_F(Browsing, LongerNameIsCutAndStillASuccess) {
  Arrive("FF 55 0B 04 00 1B 00 00 00 07 41 62 62 00 CA");
  wchar_t name[3] = {L'x', L'x', L'x'};
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 3), 1);
  EXPECT_STREQ(name, L"Ab");
}

TEST_F(Browsing, NameCutInsideACharacterByTheIpodEndsCleanly) {
  // C3 is the first half of a two-byte character.
  Arrive("FF 55 0A 04 00 1B 00 00 00 07 41 C3 00 CC");
  wchar_t name[8] = {};
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 8), 1);
  EXPECT_STREQ(name, L"A\uFFFD");
}

TEST_F(Browsing, NextRecordDropsOtherAnswers) {
  Arrive("FF 55 06 04 00 01 00 00 16 DF");
  Arrive("FF 55 09 04 00 1B 00 00 00 64 41 00 33");
  wchar_t name[8] = {};
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 8), 1);
  EXPECT_STREQ(name, L"A");
}

TEST_F(Browsing, SingleRecordIsOneExchange) {
  Answer("FF 55 0C 04 00 1A 02 00 00 00 07 00 00 00 01 CC",
         "FF 55 0B 04 00 1B 00 00 00 07 41 62 62 00 CA");
  wchar_t name[64] = {};
  EXPECT_EQ(session_.Command_RetrieveCategorizedDatabaseRecord(name, 64, 7, 2), 1);
  EXPECT_STREQ(name, L"Abb");
}

TEST_F(Browsing, SingleRecordWithCategory255CarriesTheCurrentCategory) {
  Enter(2);
  wchar_t name[64] = {};
  session_.Command_RetrieveCategorizedDatabaseRecord(name, 64, 0, 255);
  EXPECT_EQ(test::First(DrainSent()), "FF 55 0C 04 00 1A 02 00 00 00 00 00 00 00 01 D3");
}

TEST_F(Browsing, FailedSingleRecordDoesNotClearTheBuffer) {
  wchar_t name[] = L"old";
  EXPECT_EQ(session_.Command_RetrieveCategorizedDatabaseRecord(name, 4, 7, 2), 0);
  EXPECT_STREQ(name, L"old");
}

// ---- Selecting ----------------------------------------------------------------------------------

TEST_F(Browsing, SelectRecordSucceedsOnStatusZero) {
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 00 00 17 DE");
  EXPECT_EQ(session_.Command_SelectDBRecord(2, 3), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 08 04 00 17 02 00 00 00 03 D8"));
}

TEST_F(Browsing, RefusedSelectRecordIsLogged) {
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 04 00 17 DA");
  EXPECT_EQ(session_.Command_SelectDBRecord(2, 3), 0);
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodComm::Command_SelectDBRecord: Failed to select! Ack = 0x04"));
}

TEST_F(Browsing, UnansweredSelectRecordFailsWithoutALog) {
  EXPECT_EQ(session_.Command_SelectDBRecord(2, 3), 0);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Browsing, SelectSortRecordCarriesTheSortOrder) {
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 00 00 38 BD");
  EXPECT_EQ(session_.Command_SelectSortDBRecord(2, 3, 4), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 09 04 00 38 02 00 00 00 03 04 B2"));
}

TEST_F(Browsing, RefusedSelectSortRecordIsLogged) {
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 02 00 38 BB");
  EXPECT_EQ(session_.Command_SelectSortDBRecord(2, 3, 4), 0);
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodComm::Command_SelectSortDBRecord: Failed to select! Ack = 0x02"));
}

// ---- SelectTop ----------------------------------------------------------------------------------

TEST_F(Browsing, SelectTopResetsCountsAndMoves) {
  Answer(kResetFrame, kResetAck);
  Answer("FF 55 04 04 00 18 02 DE", "FF 55 07 04 00 19 00 00 00 03 D9");
  unsigned long count = 77;
  EXPECT_EQ(session_.SelectTop(2, &count, 0), 1);
  EXPECT_EQ(count, 3U);
  EXPECT_EQ(current_category(), 2);
  EXPECT_EQ(selection_category(), 2);
  EXPECT_THAT(DrainSent(), ElementsAre(kResetFrame, "FF 55 04 04 00 18 02 DE"));
}

TEST_F(Browsing, SelectTopOfAHierarchyResetsThatOne) {
  Answer("FF 55 04 04 00 3B 01 BC", "FF 55 06 04 00 01 00 00 3B BA");
  EXPECT_EQ(session_.SelectTop(2, nullptr, 1), 1);
  Answer("FF 55 04 04 00 3B 02 BB", "FF 55 06 04 00 01 00 00 3B BA");
  EXPECT_EQ(session_.SelectTop(2, nullptr, 2), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 3B 01 BC", "FF 55 04 04 00 3B 02 BB"));
}

TEST_F(Browsing, SelectTopOfAnUnknownHierarchySendsNothing) {
  Enter(5);
  for (int hierarchy = 3; hierarchy <= 255; ++hierarchy) {
    unsigned long count = 77;
    EXPECT_EQ(session_.SelectTop(2, &count, static_cast<unsigned char>(hierarchy)), 0);
    EXPECT_EQ(count, 0U);
  }
  EXPECT_EQ(current_category(), 5);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Browsing, SelectTopWithoutCountSendsOnlyTheResetAndMoves) {
  Answer(kResetFrame, kResetAck);
  EXPECT_EQ(session_.SelectTop(3, nullptr, 0), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kResetFrame));
  EXPECT_EQ(current_category(), 3);
  EXPECT_EQ(selection_category(), 3);
}

TEST_F(Browsing, SelectTopStaysWhenTheResetIsRefused) {
  Enter(5);
  Answer(kResetFrame, "FF 55 06 04 00 01 01 00 16 DE");
  unsigned long count = 77;
  EXPECT_EQ(session_.SelectTop(2, &count, 0), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(current_category(), 5);
  EXPECT_THAT(DrainSent(), ElementsAre(kResetFrame));
}

TEST_F(Browsing, SelectTopStaysWhenTheCountFails) {
  Enter(5);
  Answer(kResetFrame, kResetAck);
  unsigned long count = 77;
  EXPECT_EQ(session_.SelectTop(2, &count, 0), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(current_category(), 5);
  EXPECT_EQ(selection_category(), 5);
}

// ---- Select, moving -----------------------------------------------------------------------------

TEST_F(Browsing, SelectMovesIntoTheCategoryAndCountsIt) {
  Enter(2);
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 00 00 17 DE");
  Answer("FF 55 04 04 00 18 03 DD", "FF 55 07 04 00 19 00 00 00 09 D3");
  unsigned long count = 77;
  EXPECT_EQ(session_.Select(3, &count, 3), 1);
  EXPECT_EQ(count, 9U);
  EXPECT_EQ(current_category(), 3);
  EXPECT_EQ(selection_category(), 3);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 04 04 00 18 03 DD"));
}

TEST_F(Browsing, SelectMovesEvenWhenTheCountThenFails) {
  Enter(2);
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 00 00 17 DE");
  unsigned long count = 77;
  EXPECT_EQ(session_.Select(3, &count, 3), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(current_category(), 3);
  EXPECT_EQ(selection_category(), 3);
}

TEST_F(Browsing, RefusedSelectIsRetriedSortedByName) {
  Enter(2);
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 04 00 17 DA");
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 00 00 38 BD");
  Answer("FF 55 04 04 00 18 03 DD", "FF 55 07 04 00 19 00 00 00 09 D3");
  unsigned long count = 0;
  EXPECT_EQ(session_.Select(3, &count, 3), 1);
  EXPECT_EQ(count, 9U);
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodComm::Command_SelectDBRecord: Failed to select! Ack = 0x04"));
}

TEST_F(Browsing, UnansweredSelectIsRetriedSortedByNameByDefault) {
  session_.SetConduct(&IPOD_CONDUCT_FIELD);
  constexpr const char* plain = "FF 55 08 04 00 17 02 00 00 00 03 D8";
  constexpr const char* sorted = "FF 55 09 04 00 38 02 00 00 00 03 04 B2";
  Enter(2);
  Answer(sorted, "FF 55 06 04 00 01 00 00 38 BD");
  Answer("FF 55 04 04 00 18 03 DD", "FF 55 07 04 00 19 00 00 00 09 D3");
  unsigned long count = 0;
  EXPECT_EQ(session_.Select(3, &count, 3), 1);
  EXPECT_EQ(count, 9U);
  EXPECT_THAT(DrainSent(), ElementsAre(plain, plain, plain, sorted, "FF 55 04 04 00 18 03 DD"));
}

// It may have been selected, and its answer lost.
TEST_F(Browsing, UnansweredSelectIsNotRetriedSortedUnderRobustConduct) {
  session_.SetConduct(&IPOD_CONDUCT_ROBUST);
  Enter(2);
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 00 00 38 BD");
  unsigned long count = 77;
  EXPECT_EQ(session_.Select(3, &count, 3), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(current_category(), 2);
  EXPECT_THAT(DrainSent(), Each("FF 55 08 04 00 17 02 00 00 00 03 D8"));
}

TEST_F(Browsing, RefusedSelectIsRetriedSortedUnderRobustConduct) {
  session_.SetConduct(&IPOD_CONDUCT_ROBUST);
  Enter(2);
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 04 00 17 DA");
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 00 00 38 BD");
  Answer("FF 55 04 04 00 18 03 DD", "FF 55 07 04 00 19 00 00 00 09 D3");
  unsigned long count = 0;
  EXPECT_EQ(session_.Select(3, &count, 3), 1);
  EXPECT_EQ(count, 9U);
}

TEST_F(Browsing, SelectStaysWhenBothSelectionsFail) {
  Enter(2);
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 04 00 17 DA");
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 02 00 38 BB");
  unsigned long count = 77;
  EXPECT_EQ(session_.Select(3, &count, 3), 0);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(current_category(), 2);
  EXPECT_EQ(selection_category(), 2);
}

TEST_F(Browsing, SortSelectOnlySkipsThePlainSelection) {
  Enter(2);
  CIpodCommPeer::Browsing(session_).sort_select_only = 1;
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 00 00 38 BD");
  Answer("FF 55 04 04 00 18 03 DD", "FF 55 07 04 00 19 00 00 00 09 D3");
  unsigned long count = 0;
  EXPECT_EQ(session_.Select(3, &count, 3), 1);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 04 04 00 18 03 DD"));
}

TEST_F(Browsing, SelectOfATrackFromATrackListStopsFirstAndStays) {
  Enter(5);
  Answer("FF 55 04 04 00 29 02 CD", "FF 55 06 04 00 01 00 00 29 CC");
  Answer("FF 55 08 04 00 17 05 00 00 00 01 D7", "FF 55 06 04 00 01 00 00 17 DE");
  unsigned long count = 77;
  EXPECT_EQ(session_.Select(5, &count, 1), 1);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(current_category(), 5);
  EXPECT_EQ(selection_category(), 5);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 04 04 00 29 02 CD", "FF 55 08 04 00 17 05 00 00 00 01 D7"));
}

TEST_F(Browsing, SelectOfATrackFailsWhenStopIsRefused) {
  Enter(5);
  Answer("FF 55 04 04 00 29 02 CD", "FF 55 06 04 00 01 05 00 29 C7");
  unsigned long count = 77;
  EXPECT_EQ(session_.Select(5, &count, 1), 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 29 02 CD"));
}

TEST_F(Browsing, SelectFromATrackListIntoAnotherCategoryNeitherStopsNorMoves) {
  Enter(5);
  Answer("FF 55 08 04 00 17 05 00 00 00 01 D7", "FF 55 06 04 00 01 00 00 17 DE");
  unsigned long count = 77;
  EXPECT_EQ(session_.Select(3, &count, 1), 1);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(current_category(), 5);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 08 04 00 17 05 00 00 00 01 D7"));
}

TEST_F(Browsing, SelectIntoTheTracksOfAnAlbumDoesNotStop) {
  Enter(3);
  Answer("FF 55 08 04 00 17 03 00 00 00 00 DA", "FF 55 06 04 00 01 00 00 17 DE");
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 07 04 00 19 00 00 07 D0 05");
  unsigned long count = 0;
  EXPECT_EQ(session_.Select(5, &count, 0), 1);
  EXPECT_EQ(count, 2000U);
  EXPECT_EQ(selection_category(), 5);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 08 04 00 17 03 00 00 00 00 DA", "FF 55 04 04 00 18 05 DB"));
}

// ---- Select, staying ----------------------------------------------------------------------------

class SelectInPlace : public Browsing {
 protected:
  int Select(unsigned char category, unsigned long index) {
    testing::internal::CaptureStdout();
    const int result = session_.Select(category, index);
    printed_ = testing::internal::GetCapturedStdout();
    return result;
  }
  std::string printed_;
};

TEST_F(SelectInPlace, TracesSelectsAndStays) {
  Enter(2);
  Answer("FF 55 08 04 00 17 05 00 00 00 01 D7", "FF 55 06 04 00 01 00 00 17 DE");
  EXPECT_EQ(Select(5, 1), 1);
  EXPECT_EQ(printed_, "Select iPod track category 5, index 1\n");
  EXPECT_EQ(current_category(), 2);
  EXPECT_EQ(selection_category(), 2);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 08 04 00 17 05 00 00 00 01 D7"));
}

TEST_F(SelectInPlace, IsRetriedSortedByName) {
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 04 00 17 DA");
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 00 00 38 BD");
  EXPECT_EQ(Select(2, 3), 1);
}

TEST_F(SelectInPlace, FailsWhenBothSelectionsFail) {
  Answer("FF 55 08 04 00 17 02 00 00 00 03 D8", "FF 55 06 04 00 01 04 00 17 DA");
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 02 00 38 BB");
  EXPECT_EQ(Select(2, 3), 0);
}

TEST_F(SelectInPlace, SkipsThePlainSelectionWhenOnlySortedIsToBeUsed) {
  CIpodCommPeer::Browsing(session_).sort_select_only = 1;
  Answer("FF 55 09 04 00 38 02 00 00 00 03 04 B2", "FF 55 06 04 00 01 00 00 38 BD");
  EXPECT_EQ(Select(2, 3), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 09 04 00 38 02 00 00 00 03 04 B2"));
}

TEST_F(Browsing, ConstructionSelectsPlainlyFirst) {
  EXPECT_EQ(CIpodCommPeer::Browsing(session_).sort_select_only, 0);
  EXPECT_EQ(current_category(), 0);
  EXPECT_EQ(selection_category(), 0);
}

}  // namespace

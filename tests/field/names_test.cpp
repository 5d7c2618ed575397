// SPDX-License-Identifier: MIT
// Names of a list under faults: which name stands for which track.
#include <algorithm>

#include "field/docked.h"

namespace {

using ipodsim::Fault;
using test::Docked;
using test::kTracks;
using test::TrackNames;

constexpr std::uint64_t kSeeds = 12;
constexpr unsigned kCount = 60;
constexpr std::uint32_t kOneAnswerInEight = 8;

std::string NameOf(std::size_t index) {
  return TrackNames(static_cast<unsigned>(index), 1).front();
}

bool GoToTracks(Docked* docked) {
  return docked->Identify() && docked->session.Command_EnterRemoteUIMode() == 1 &&
         docked->session.SelectTop(kTracks, nullptr, 0) == 1;
}

// ---- Faults of every kind, by the dice

struct Tally {
  unsigned complete = 0;  // with every name at its place
  unsigned right = 0;     // names
  unsigned wrong = 0;     // names at a place of another, the blank ones included
};

// A host that counts the names as they come, which is how hosts have always done it.
void CountAsTheyCome(Docked* docked, Tally* tally) {
  const std::vector<std::string> names = docked->Names(0, kCount);
  for (std::size_t i = 0; i < names.size(); ++i) tally->wrong += names[i] != NameOf(i) ? 1U : 0U;
  if (names == TrackNames(0, kCount)) ++tally->complete;
}

// A host that goes by the indexes.
void CountByIndex(Docked* docked, Tally* tally) {
  const auto rows = docked->Rows(0, kCount);
  for (const auto& row : rows) {
    ++(row.second == NameOf(row.first) ? tally->right : tally->wrong);
  }
  if (rows.size() == kCount) ++tally->complete;
}

template <class Count>
Tally ReadLists(Fault fault, std::uint32_t one_in, const tagIPOD_CONDUCT& conduct, Count count) {
  Tally tally;
  for (std::uint64_t seed = 1; seed <= kSeeds; ++seed) {
    ipodsim::Settings settings = test::SixtySongs();
    settings.seed = seed;
    settings.faults.Enable(fault);
    settings.faults.one_in = one_in;
    Docked docked(settings, conduct, seed);
    if (!GoToTracks(&docked)) continue;
    count(&docked, &tally);
  }
  return tally;
}

std::string NameOfFault(const ::testing::TestParamInfo<Fault>& tested) {
  std::string name = ipodsim::Faults::All()[static_cast<std::size_t>(tested.param)].name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

class NamesThatShift : public ::testing::TestWithParam<Fault> {};

TEST_P(NamesThatShift, UnderFieldStandForOtherTracks) {
  EXPECT_GT(ReadLists(GetParam(), kOneAnswerInEight, IPOD_CONDUCT_FIELD, CountAsTheyCome).wrong,
            0U);
}

INSTANTIATE_TEST_SUITE_P(Faults, NamesThatShift,
                         ::testing::Values(Fault::kDroppedBytes, Fault::kShortReplies,
                                           Fault::kDoubledAnswers, Fault::kShuffledAnswers,
                                           Fault::kMissingAnswers),
                         NameOfFault);

class NamesUnderFaults : public ::testing::TestWithParam<Fault> {};

TEST_P(NamesUnderFaults, UnderRobustStandForTheirOwnTracksOrDoNotCome) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    const Tally tally = ReadLists(GetParam(), kOneAnswerInEight, conduct, CountByIndex);
    EXPECT_EQ(tally.wrong, 0U);
    EXPECT_GT(tally.right, 0U);
  }
}

TEST_P(NamesUnderFaults, UnderRobustAllComeWhereOneInAListIsSpoilt) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    const Tally tally = ReadLists(GetParam(), kCount, conduct, CountByIndex);
    EXPECT_EQ(tally.wrong, 0U);
    EXPECT_EQ(tally.complete, kSeeds);
  }
}

INSTANTIATE_TEST_SUITE_P(Faults, NamesUnderFaults,
                         ::testing::Values(Fault::kLateBytes, Fault::kDroppedBytes,
                                           Fault::kDoubledBytes, Fault::kFlippedBits,
                                           Fault::kShortReplies, Fault::kUnaskedRequests,
                                           Fault::kLateAnswers, Fault::kDoubledAnswers,
                                           Fault::kShuffledAnswers, Fault::kMissingAnswers),
                         NameOfFault);

// ---- One fault, at a record in the middle

class OneFault : public ::testing::TestWithParam<Fault> {};

TEST_P(OneFault, UnderRobustLeavesTheListWhole) {
  for (const ipodsim::Profile profile : {ipodsim::Profile::kNano, ipodsim::Profile::kClassic}) {
    for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
      ipodsim::Settings settings = test::SixtySongs(profile);
      settings.faults.Plan({GetParam(), ipodsim::kExtended,
                            ipodsim::extended::kRetrieveCategorizedDatabaseRecords, 1, 30});
      Docked docked(settings, conduct);
      ASSERT_TRUE(GoToTracks(&docked));
      EXPECT_EQ(docked.Names(0, kCount), TrackNames(0, kCount));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Faults, OneFault,
                         ::testing::Values(Fault::kShortReplies, Fault::kLongReplies,
                                           Fault::kUnaskedRequests, Fault::kLateAnswers,
                                           Fault::kDoubledAnswers, Fault::kShuffledAnswers,
                                           Fault::kMissingAnswers),
                         NameOfFault);

// Each byte of the first five records once.
TEST(OneLostByte, UnderRobustLeavesTheListWhole) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    for (unsigned nth = 1; nth <= 85; ++nth) {
      Docked docked(test::SixtySongs(), conduct);
      ASSERT_TRUE(GoToTracks(&docked));
      docked.world.line().to_host().DropByte(nth);
      EXPECT_EQ(docked.Names(0, kCount), TrackNames(0, kCount)) << "byte " << nth;
    }
  }
}

// ---- A title of 480 bytes

// One name as a host reads it that shows one row after the other.
std::string OneName(Docked* docked, unsigned long index) {
  wchar_t name[512] = {};
  EXPECT_EQ(docked->session.Command_RetrieveCategorizedDatabaseRecord(name, 512, index, kTracks),
            1);
  std::string narrow;
  for (const wchar_t* letter = name; *letter != L'\0'; ++letter) {
    narrow += static_cast<char>(*letter);
  }
  return narrow;
}

// Read a byte at a time with 2 ms between them, the record takes longer than its time-out; from the
// second attempt on each answer is the one before.
TEST(LongTitle, UnderFieldBlanksTheNamesBehindIt) {
  Docked docked(test::SixtySongsWith("long-title"), IPOD_CONDUCT_FIELD);
  ASSERT_TRUE(GoToTracks(&docked));
  EXPECT_EQ(OneName(&docked, 29), "T029");
  EXPECT_EQ(OneName(&docked, 30), "");
  EXPECT_EQ(OneName(&docked, 31), "");
}

TEST(LongTitle, UnderRobustIsReadWholeAndDisturbsNoOther) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    Docked docked(test::SixtySongsWith("long-title"), conduct);
    ASSERT_TRUE(GoToTracks(&docked));
    EXPECT_EQ(OneName(&docked, 29), "T029");
    EXPECT_EQ(OneName(&docked, 30).substr(0, 18), "T030 and on and on");
    EXPECT_EQ(OneName(&docked, 31), "T031");
    std::vector<std::string> names = docked.Names(0, kCount);
    ASSERT_EQ(names.size(), kCount);
    EXPECT_EQ(names[30].substr(0, 18), "T030 and on and on");
    names[30] = "T030";
    EXPECT_EQ(names, TrackNames(0, kCount));
  }
}

}  // namespace

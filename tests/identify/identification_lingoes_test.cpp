// SPDX-License-Identifier: MIT
// The identification by IdentifyDeviceLingoes: the first announcement, the survey of lingo versions
// with its minimums, the second announcement, and the preferences. Tokens are disabled here.
#include "identify/identification.h"
#include "platform/services.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using Peer = CIpodCommPeer;

constexpr const char* kTooOld = "iPod version too old!\r\n";

class Lingoes : public Identification {
 protected:
  Lingoes() { session_.SetIDPSEnable(0); }

  void ExpectIdentified() {
    AcceptLingoes();
    EXPECT_EQ(Identify(), 1);
    EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
    EXPECT_EQ(Peer::Identity(session_).idps_done, 0);
  }
  void ExpectTooOld() {
    AcceptLingoes();
    EXPECT_EQ(Identify(), 0);
    EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
    EXPECT_EQ(test::Last(DrainDebugOutput()), kTooOld);
    EXPECT_EQ(DrainSentOf("00 13").size(), 1U) << "the lingoes are not announced";
  }
};

// ---- First announcement -------------------------------------------------------------------------

TEST_F(Lingoes, UnansweredFirstAnnouncementEndsTheSequence) {
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF", Frame(test::kIdentifyGeneralOnly),
                          Frame(test::kIdentifyGeneralOnly), Frame(test::kIdentifyGeneralOnly)));
}

TEST_F(Lingoes, StatusOfTheFirstAnnouncementDoesNotMatter) {
  Reply(test::kIdentifyGeneralOnly, "00 02 04 13");
  ExpectIdentified();
}

TEST_F(Lingoes, ModelNumberIsAwaitedForASecondEachTime) {
  ExpectIdentified();
  std::vector<std::string> calls = DrainHostCalls();
  std::vector<std::size_t> double_waits;
  for (std::size_t i = 1; i < calls.size(); ++i) {
    // A wait for the ACK, then one for the model number's request.
    if (calls[i] == "WaitForSingleObject(1000)" && calls[i - 1] == calls[i]) {
      double_waits.push_back(i);
    }
  }
  ASSERT_EQ(double_waits.size(), 2U);
  EXPECT_THAT(calls[double_waits[0] - 2], HasSubstr("WriteFile(55 0E 00 13 00 00 00 01 "));
  EXPECT_THAT(calls[double_waits[1] - 2], HasSubstr("WriteFile(55 0E 00 13 00 00 12 19 "));
}

TEST_F(Lingoes, RequestForTheModelNumberEndsTheWaits) {
  const std::int64_t without_us = Elapsed([&] { ExpectIdentified(); });
  world_.Advance(test::kSecond);
  // Sent by the iPod on its own, 100 ms behind each announcement.
  on_step_ = [this](int step) {
    const bool announced = step == 2 || step == 4;
    if (announced) ipod_.SendAt(world_.now_us() + 100000, test::Hex("FF 55 03 00 27 07 CF"));
  };
  const std::int64_t with_us = Elapsed([&] { EXPECT_EQ(Identify(), 1); });
  EXPECT_LT(with_us, without_us - 1500 * test::kMillisecond);
}

TEST_F(Lingoes, OtherAccessoryRequestsDoNotEndTheWaits) {
  const std::int64_t without_us = Elapsed([&] { ExpectIdentified(); });
  world_.Advance(test::kSecond);
  on_step_ = [this](int step) {
    const bool announced = step == 2 || step == 4;
    if (announced) ipod_.SendAt(world_.now_us() + 100000, test::Hex("FF 55 03 00 27 01 D5"));
  };
  const std::int64_t with_us = Elapsed([&] { EXPECT_EQ(Identify(), 1); });
  EXPECT_GT(with_us, without_us - 100 * test::kMillisecond);
}

// ---- Survey -------------------------------------------------------------------------------------

TEST_F(Lingoes, VersionsAreAskedInOrderAndKept) {
  ExpectIdentified();
  EXPECT_THAT(DrainSentOf("00 0F"),
              ElementsAre("FF 55 03 00 0F 00 EE", "FF 55 03 00 0F 03 EB", "FF 55 03 00 0F 04 EA",
                          "FF 55 03 00 0F 09 E5", "FF 55 03 00 0F 0C E2"));
  const auto& identity = Peer::Identity(session_);
  EXPECT_EQ(identity.general.minor, 9);
  EXPECT_EQ(identity.display_remote.minor, 5);
  EXPECT_EQ(identity.extended.minor, 14);
  EXPECT_EQ(identity.sports.minor, 1);
  EXPECT_EQ(identity.storage.minor, 2);
}

TEST_F(Lingoes, MinorVersionsArePrintedWithTwoDigits) {
  AnswerVersion("00", "02 00");
  AnswerVersion("03", "FF 63");
  AnswerVersion("04", "01 FF");
  ExpectIdentified();
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Lingo Version - General = 2.00\r\n",
                                              "Lingo Version - Display Remote = 255.99\r\n",
                                              "Lingo Version - Extended = 1.255\r\n",
                                              "Lingo Version - Sports = 1.01\r\n",
                                              "Lingo Version - Storage = 1.02\r\n"));
}

TEST_F(Lingoes, UnansweredVersionsAreNotSupported) {
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Lingo Version - General = not supported\r\n",
                          "Lingo Version - Display Remote = not supported\r\n",
                          "Lingo Version - Extended = not supported\r\n",
                          "Lingo Version - Sports = not supported\r\n",
                          "Lingo Version - Storage = not supported\r\n", kTooOld));
  EXPECT_EQ(DrainSentOf("00 0F").size(), 15U);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Lingoes, RefusedVersionsAreNotSupported) {
  Reply("00 0F 09", "00 02 04 0F");
  Reply("00 0F 0C", "00 02 04 10");
  ExpectIdentified();
  EXPECT_EQ(session_.SupportsSports(), 0);
  const std::vector<std::string> printed = DrainDebugOutput();
  EXPECT_EQ(printed[3], "Lingo Version - Sports = not supported\r\n");
  EXPECT_EQ(printed[4], "Lingo Version - Storage = not supported\r\n");
}

struct Minimum {
  std::string name;
  const char* lingo;
  const char* version;
  bool suffices;
};

void PrintTo(const Minimum& minimum, std::ostream* stream) { *stream << minimum.name; }

class Minimums : public Lingoes, public ::testing::WithParamInterface<Minimum> {};

TEST_P(Minimums, DecideWhetherTheIpodIsTooOld) {
  AnswerVersion(GetParam().lingo, GetParam().version);
  if (GetParam().suffices) {
    ExpectIdentified();
    EXPECT_THAT(DrainDebugOutput(), Not(Contains(kTooOld)));
  } else {
    ExpectTooOld();
  }
}

INSTANTIATE_TEST_SUITE_P(
    General, Minimums,
    ::testing::Values(Minimum{"V000", "00", "00 00", false}, Minimum{"V099", "00", "00 63", false},
                      Minimum{"V101", "00", "01 01", false}, Minimum{"V102", "00", "01 02", true},
                      Minimum{"V103", "00", "01 03", true}, Minimum{"V200", "00", "02 00", true}),
    test::RowName());
INSTANTIATE_TEST_SUITE_P(DisplayRemote, Minimums,
                         ::testing::Values(Minimum{"V099", "03", "00 63", false},
                                           Minimum{"V100", "03", "01 00", false},
                                           Minimum{"V101", "03", "01 01", true},
                                           Minimum{"V200", "03", "02 00", true}),
                         test::RowName());
INSTANTIATE_TEST_SUITE_P(Extended, Minimums,
                         ::testing::Values(Minimum{"V099", "04", "00 63", false},
                                           Minimum{"V107", "04", "01 07", false},
                                           Minimum{"V108", "04", "01 08", true},
                                           Minimum{"V200", "04", "02 00", true}),
                         test::RowName());

TEST_F(Lingoes, UnansweredVersionLeavesTheRecordOfAnEarlierCall) {
  Ignore("00 0F 00");
  Peer::Identity(session_).general = {1, 2};
  ExpectIdentified();
  EXPECT_EQ(test::First(DrainDebugOutput()), "Lingo Version - General = not supported\r\n");
}

// ---- Sports -------------------------------------------------------------------------------------

struct Pair {
  std::string name;
  const char* sports;
  const char* storage;
  int supported;
};

void PrintTo(const Pair& pair, std::ostream* stream) { *stream << pair.name; }

class SportsByVersion : public Lingoes, public ::testing::WithParamInterface<Pair> {};

TEST_P(SportsByVersion, NeedsBothLingoes) {
  AnswerVersion("09", GetParam().sports);
  AnswerVersion("0C", GetParam().storage);
  ExpectIdentified();
  EXPECT_EQ(session_.SupportsSports(), GetParam().supported);
  EXPECT_THAT(DrainSentOf("00 13"),
              ElementsAre(Frame(test::kIdentifyGeneralOnly),
                          Frame(GetParam().supported == 1 ? test::kIdentifyLingoesWithSports
                                                          : test::kIdentifyLingoes)));
}

INSTANTIATE_TEST_SUITE_P(Versions, SportsByVersion,
                         ::testing::Values(Pair{"AtTheMinimum", "01 01", "01 02", 1},
                                           Pair{"StorageBelow", "01 01", "01 01", 0},
                                           Pair{"SportsBelow", "01 00", "01 02", 0},
                                           Pair{"BothBelow", "01 00", "01 01", 0},
                                           Pair{"Above", "02 00", "02 00", 1},
                                           Pair{"OldMajorOfSports", "00 FF", "01 02", 0},
                                           Pair{"OldMajorOfStorage", "01 01", "00 FF", 0}),
                         test::RowName());

TEST_F(Lingoes, SurveyDoesNotTakeSportsBack) {
  // The iPod supported Sports by its options before its tokens failed; the survey only adds.
  session_.SetIDPSEnable(1);
  Reply(test::kStart, test::kStartTaken);
  AnswerOptions();
  AcceptTokens();
  EndWith("01");
  AnswerVersion("09", "01 00");
  ExpectIdentified();
  EXPECT_EQ(session_.SupportsSports(), 1);
  EXPECT_EQ(test::Last(DrainSentOf("00 13")), Frame(test::kIdentifyLingoesWithSports));
}

// ---- Second announcement ------------------------------------------------------------------------

TEST_F(Lingoes, UnansweredSecondAnnouncementEndsTheSequence) {
  Ignore(test::kIdentifyLingoesWithSports);
  AcceptLingoes();
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_EQ(DrainSentOf("00 13").size(), 4U);
  EXPECT_THAT(DrainSentOf("00 2B"), IsEmpty());
}

class RefusedLingoes : public Lingoes, public ::testing::WithParamInterface<const char*> {};

TEST_P(RefusedLingoes, EndTheSequenceAfterTheWait) {
  Reply(test::kIdentifyLingoesWithSports, std::string("00 02 ") + GetParam() + " 13");
  AcceptLingoes();
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_EQ(steps_, 3) << "the host is not asked any more";
  const std::vector<std::string> calls = DrainHostCalls();
  EXPECT_EQ(calls[calls.size() - 1], "WaitForSingleObject(1000)");
  EXPECT_EQ(calls[calls.size() - 2], "WaitForSingleObject(1000)");
  EXPECT_THAT(test::Last(DrainSent()), Frame(test::kIdentifyLingoesWithSports));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(WithStatus, RefusedLingoes, ::testing::Values("01", "02", "04", "FF"),
                         [](const auto& tested) { return std::string(tested.param); });

// ---- Preferences --------------------------------------------------------------------------------

// From the accepted announcement on, while the iPod is still being configured.
TEST_F(Lingoes, HostIsToldThatTheIpodIsIdentifiedBeforeTheLastQuestions) {
  AcceptLingoes();
  std::vector<tagIPOD_IDENTIFY_RESULT> results;
  on_step_ = [&](int) { results.push_back(result_); };
  EXPECT_EQ(Identify(), 1);
  EXPECT_THAT(results, ElementsAre(IPOD_IDENTIFY_RESULT_NONE, IPOD_IDENTIFY_RESULT_NONE,
                                   IPOD_IDENTIFY_RESULT_NONE, IPOD_IDENTIFY_RESULT_LINGOS,
                                   IPOD_IDENTIFY_RESULT_LINGOS));
}

TEST_F(Lingoes, PreferencesAreSetInOrder) {
  ExpectIdentified();
  EXPECT_THAT(DrainSentOf("00 2B"),
              ElementsAre("FF 55 05 00 2B 03 01 01 CB", "FF 55 05 00 2B 01 00 01 CE",
                          "FF 55 05 00 2B 02 00 01 CD", "FF 55 05 00 2B 08 01 01 C6",
                          "FF 55 05 00 2B 09 00 01 C6", "FF 55 05 00 2B 0A 01 01 C4",
                          "FF 55 05 00 2B 0F 01 01 BF", "FF 55 05 00 2B 00 01 01 CE"));
}

TEST_F(Lingoes, PreferencesAreLeftOutBelowGeneral105) {
  AnswerVersion("00", "01 04");
  ExpectIdentified();
  const std::vector<std::string> sent = DrainSent();
  EXPECT_THAT(sent, Not(Contains(HasSubstr(" 00 2B "))));
  EXPECT_EQ(sent[sent.size() - 2], "FF 55 02 00 4F AF");
}

TEST_F(Lingoes, PreferencesAreSetFromGeneral105On) {
  AnswerVersion("00", "01 05");
  ExpectIdentified();
  EXPECT_EQ(DrainSentOf("00 2B").size(), 8U);
}

TEST_F(Lingoes, RefusedAndUnansweredPreferencesDoNotMatter) {
  Reply("00 2B 03 01 01", "00 02 02 2B");
  Ignore("00 2B 01 00 01");
  ExpectIdentified();
  EXPECT_EQ(DrainSentOf("00 2B").size(), 10U) << "one of them was tried three times";
}

}  // namespace

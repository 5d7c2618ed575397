// SPDX-License-Identifier: MIT
// What the robust conduct changes in identification: an iPod that wants an identifier on StartIDPS,
// and a verdict that needs evidence.
#include <algorithm>

#include "identify/identification.h"
#include "support/answering_ipod.h"
#include "support/echoing_line.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

constexpr const char* kStartFrame = "FF 55 02 00 38 C6";
constexpr const char* kStartWithIdFrame = "FF 55 04 00 38 00 00 C4";
constexpr const char* kStartWithIdTaken = "FF 55 06 00 02 00 00 00 38 C0";

class UnderRobustConduct : public Identification {
 protected:
  UnderRobustConduct() { session_.SetConduct(&IPOD_CONDUCT_ROBUST); }
};

TEST_F(UnderRobustConduct, TokensIdentifyAsByDefault) {
  DockTokenIpod();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_THAT(DrainSent(), Not(Contains(kStartWithIdFrame)));
}

TEST_F(UnderRobustConduct, LingoesIdentifyAsByDefault) {
  DockLingoIpod();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
}

TEST_F(UnderRobustConduct, SilentStartIsTriedOnceMoreWithAnIdentifierEachTime) {
  EXPECT_EQ(Identify(), 0);
  const std::vector<std::string> sent = DrainSent();
  ASSERT_GE(sent.size(), 9U);
  EXPECT_THAT(std::vector<std::string>(sent.begin(), sent.begin() + 9),
              ElementsAre("FF", kStartFrame, kStartWithIdFrame, "FF", kStartFrame,
                          kStartWithIdFrame, "FF", kStartFrame, kStartWithIdFrame));
}

TEST_F(UnderRobustConduct, ARefusedStartIsNotTriedWithAnIdentifier) {
  Reply(test::kStart, test::kStartRefused);
  DockLingoIpod();
  Identify();
  EXPECT_THAT(DrainSent(), Not(Contains(kStartWithIdFrame)));
}

TEST_F(UnderRobustConduct, WhatAnsweredHoldsForTheSession) {
  Answer(kStartWithIdFrame, kStartWithIdTaken);
  Identify();
  session_.SetIDPSEnable(1);
  DrainSent();
  Identify();
  const std::vector<std::string> sent = DrainSent();
  EXPECT_THAT(sent, Contains(kStartWithIdFrame));
  EXPECT_THAT(sent, Not(Contains(kStartFrame)));
}

TEST_F(UnderRobustConduct, ARefusalUnderAnIdentifierNobodyAskedForIsARefusal) {
  Reply(test::kStart, "00 02 00 05 04 38");
  DockLingoIpod();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  EXPECT_THAT(DrainSentOf("00 38"), ElementsAre(kStartFrame));
}

TEST_F(UnderRobustConduct, VersionsRefusedUnderIdentifiersNobodyAskedForAreNoVerdictAndNoWait) {
  session_.SetIDPSEnable(0);
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  for (const char* lingo : {"00", "03", "04", "09", "0C"}) {
    Reply(std::string("00 0F ") + lingo, "00 02 00 05 04 0F");
  }
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Identify(), 0); }), 2 * test::kSecond);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
}

TEST_F(UnderRobustConduct, TokensWhoseEndStaysUnansweredAreNotTriedAgain) {
  IgnoreWithId("00 3B 00");
  DockTokenIpod();
  AcceptLingoes();
  Identify();
  EXPECT_THAT(DrainSentOf("00 38"), ElementsAre(kStartFrame));
}

TEST_F(UnderRobustConduct, AStopWhileTheEndOfTheTokensAwaitsItsAnswerEndsTheSequence) {
  IgnoreWithId("00 3B 00");
  DockTokenIpod();
  AcceptLingoes();
  const test::Bytes end = {0x05, 0x00, 0x3B};
  on_step_ = [&](int step) {
    const test::Bytes& sent = ipod_.received();
    const bool ended = std::search(sent.begin(), sent.end(), end.begin(), end.end()) != sent.end();
    if (ended && stop_at_ == 0) stop_at_ = step;
  };
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_EQ(steps_, stop_at_);
  EXPECT_THAT(DrainSentOf("00 38"), ElementsAre(kStartFrame));
}

TEST_F(UnderRobustConduct, ADamagedAnswerToTheStartIsAskedForAgainAsItWas) {
  Answer(kStartFrame, "FF 55 03 00 02 00 FB");  // the command is missing
  Identify();
  EXPECT_THAT(DrainSentOf("00 38"), ElementsAre(kStartFrame, kStartFrame, kStartFrame));
}

TEST_F(UnderRobustConduct, ALateAnswerToTheStartDoesNotAskForIdentifiersFromThenOn) {
  Answer(kStartFrame, Frame(test::kStartTaken), 1100 * test::kMillisecond);
  DockTokenIpod();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(CIpodCommPeer::Identity(session_).start_carries_id, 0);
}

class AnIpodThatTellsNoVersion : public Identification {
 protected:
  AnIpodThatTellsNoVersion() {
    session_.SetIDPSEnable(0);
    Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  }
};

TEST_F(AnIpodThatTellsNoVersion, IsNotCalledTooOldUnderRobustConduct) {
  session_.SetConduct(&IPOD_CONDUCT_ROBUST);
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_EQ(test::Last(DrainDebugOutput()), "iPod told too few versions!\r\n");
}

TEST_F(AnIpodThatTellsNoVersion, IsAskedForOneOnlyUnderRobustConduct) {
  session_.SetConduct(&IPOD_CONDUCT_ROBUST);
  EXPECT_LT(Elapsed([&] { Identify(); }), 5 * test::kSecond);
  EXPECT_THAT(DrainSentOf("00 0F"),
              ElementsAre("FF 55 03 00 0F 00 EE", "FF 55 03 00 0F 00 EE", "FF 55 03 00 0F 00 EE"));
}

TEST_F(AnIpodThatTellsNoVersion, IsCalledTooOldByDefault) {
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
}

TEST_F(UnderRobustConduct, ASilentLingoIsNoVerdict) {
  session_.SetIDPSEnable(0);
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  Reply("00 0F 00", "00 10 00 01 09");
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
}

TEST_F(UnderRobustConduct, ARefusedLingoIsTooOldWhereOthersWereTold) {
  session_.SetIDPSEnable(0);
  Reply("00 0F 04", "00 02 04 0F");
  AcceptLingoes();
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
  EXPECT_THAT(DrainSentOf("00 0F 04"), ElementsAre("FF 55 03 00 0F 04 EA", "FF 55 03 00 0F 04 EA"));
}

TEST_F(UnderRobustConduct, ARefusedLingoThatTheAccessoryCanDoWithoutIsAskedForOnce) {
  session_.SetIDPSEnable(0);
  Reply("00 0F 09", "00 02 04 0F");
  AcceptLingoes();
  EXPECT_NE(Identify(), 0);
  EXPECT_THAT(DrainSentOf("00 0F 09"), ElementsAre("FF 55 03 00 0F 09 E5"));
}

TEST_F(UnderRobustConduct, ALingoThatIsABadParameterIsTooOldWhereOthersWereTold) {
  session_.SetIDPSEnable(0);
  Reply("00 0F 04", "00 02 03 0F");
  AcceptLingoes();
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
}

TEST_F(UnderRobustConduct, ALingoWhoseVersionFailsToBeToldIsAskedForTwiceAndNoVerdict) {
  session_.SetIDPSEnable(0);
  Reply("00 0F 04", "00 02 01 0F");
  AcceptLingoes();
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_THAT(DrainSentOf("00 0F"), ElementsAre("FF 55 03 00 0F 00 EE", "FF 55 03 00 0F 03 EB",
                                                "FF 55 03 00 0F 04 EA", "FF 55 03 00 0F 04 EA"));
}

TEST_F(UnderRobustConduct, VersionsOfAnotherIpodDoNotCount) {
  CIpodCommPeer::Identity(session_).display_remote = {1, 5};
  Reply(test::kStart, test::kStartRefused);
  Ignore("00 0F 03");
  AcceptLingoes();
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
}

TEST_F(UnderRobustConduct, AnOldIpodIsTooOldOnceItHasToldAVersion) {
  session_.SetIDPSEnable(0);
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  Reply("00 0F 00", "00 10 00 01 01");
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
}

class AVersionBelowItsMinimum : public UnderRobustConduct,
                                public ::testing::WithParamInterface<const char*> {};

// The General version; the next one stays unanswered.
TEST_P(AVersionBelowItsMinimum, IsEnoughToCallTheIpodTooOld) {
  session_.SetIDPSEnable(0);
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  AnswerVersion("00", GetParam());
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
}

INSTANTIATE_TEST_SUITE_P(Versions, AVersionBelowItsMinimum,
                         ::testing::Values("00 01", "01 00", "01 01"), [](const auto& tested) {
                           return "V" + std::string(tested.param).replace(2, 1, "_");
                         });

// ---- Tokens that fail ---------------------------------------------------------------------------

TEST_F(UnderRobustConduct, TokensThatAreRefusedAreTriedOnceMoreFromTheStart) {
  EndWith("01");
  DockTokenIpod();
  AcceptLingoes();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  EXPECT_THAT(DrainSentOf("00 38"), ElementsAre(kStartFrame, kStartFrame));
}

TEST_F(UnderRobustConduct, TokensThatFailForGoodAreNotTriedAgain) {
  EndWith("05");
  DockTokenIpod();
  AcceptLingoes();
  EXPECT_NE(Identify(), 0);
  EXPECT_THAT(DrainSentOf("00 38"), ElementsAre(kStartFrame));
}

TEST_F(UnderRobustConduct, TokensThatStayUnansweredAreNotTriedAgain) {
  IgnoreWithId("00 3B 00");
  DockTokenIpod();
  AcceptLingoes();
  EXPECT_NE(Identify(), 0);
  EXPECT_THAT(DrainSentOf("00 38"), ElementsAre(kStartFrame));
}

// The answer to the first EndIDPS is cut short; the iPod has accepted the tokens all the same.
TEST_F(UnderRobustConduct, TokensWhoseEndWasLostAreTakenAtTheSecondTime) {
  test::AnsweringIpod ipod;
  world_.line().Unplug();
  world_.line().Plug(ipod);
  ipod.Answer("00 38", Frame(test::kStartTaken));
  for (std::uint8_t id = 0; id < 32; ++id) {
    const std::string number = " 00 " + test::ToHex({id});
    ipod.Answer("00 11" + number, Frame("00 12", id, "01 F8"));
    ipod.Answer("00 4B" + number, Frame("00 02", id, "04 4B"));
    ipod.Answer("00 39" + number, Frame("00 3A", id, "01 03 00 01 00"));
    ipod.Answer("00 4F" + number, Frame("00 02", id, "04 4F"));
  }
  ipod.Answer("00 3B 00 07", Frame("00 3C 00 07"));
  ipod.Answer("00 3B 00 08", Frame("00 3C 00 08 01"));
  ipod.Answer("00 3B 00 0F", Frame("00 3C 00 0F 00"));
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  world_.line().Unplug();
}

// ---- A line that is wired to itself -------------------------------------------------------------

class OwnBytesBack : public Identification {
 protected:
  OwnBytesBack() {
    world_.line().Unplug();
    world_.line().Plug(line_);
  }
  ~OwnBytesBack() override { world_.line().Unplug(); }

  test::EchoingLine line_;
};

TEST_F(OwnBytesBack, AreNoticedUnderRobustConduct) {
  session_.SetConduct(&IPOD_CONDUCT_ROBUST);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Identify(), 0); }), 3 * test::kSecond);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_ECHO);
  EXPECT_EQ(test::Last(DrainDebugOutput()), "Own bytes came back, and no answer!\r\n");
}

TEST_F(OwnBytesBack, AreNoticedWithoutTokensToo) {
  session_.SetConduct(&IPOD_CONDUCT_ROBUST);
  session_.SetIDPSEnable(0);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(Identify(), 0); }), 4 * test::kSecond);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_ECHO);
}

TEST_F(OwnBytesBack, AreCalledAnIpodByDefault) {
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
}

TEST_F(UnderRobustConduct, AnIpodBehindABridgedLineIsIdentified) {
  Answer(kStartFrame, std::string(kStartFrame) + " " + Frame(test::kStartTaken));
  DockTokenIpod();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
}

// ---- A host that stops --------------------------------------------------------------------------

class StoppedAnyTime : public UnderRobustConduct {
 protected:
  // Identifies again and again, each time with a host that wants to stop a little later, until one
  // comes too late.
  void ExpectStopsWithinTenthOfASecond() {
    constexpr std::int64_t kLater = 37 * test::kMillisecond;
    constexpr std::int64_t kAtOnce = 100 * test::kMillisecond;
    std::int64_t after_us = 0;
    int identified = 0;
    bool stopped = true;
    while (stopped) {
      after_us += kLater;
      session_.SetIDPSEnable(1);
      stop_us_ = world_.now_us() + after_us;
      identified =
          session_.Command_IdentifyDeviceLingos(0, &result_, NotYet, static_cast<void*>(this));
      const std::int64_t late_us = world_.now_us() - stop_us_;
      ASSERT_LE(late_us, kAtOnce) << "after " << after_us;
      stopped = late_us >= 0 && identified == 0;
      if (stopped) {
        ASSERT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE) << "after " << after_us;
      }
      world_.Advance(500 * test::kMillisecond);
    }
    EXPECT_GT(after_us, 1500 * test::kMillisecond) << "every phase was met";
  }

 private:
  static bool NotYet(void* context) {
    const auto* test = static_cast<StoppedAnyTime*>(context);
    return test->world_.now_us() < test->stop_us_;
  }

  std::int64_t stop_us_ = 0;
};

TEST_F(StoppedAnyTime, EndsAtOnceOnASilentLine) { ExpectStopsWithinTenthOfASecond(); }

TEST_F(StoppedAnyTime, EndsTokensAtOnce) {
  DockTokenIpod();
  ExpectStopsWithinTenthOfASecond();
}

TEST_F(StoppedAnyTime, EndsLingoesAtOnce) {
  DockLingoIpod();
  ExpectStopsWithinTenthOfASecond();
}

TEST_F(UnderRobustConduct, AStoppedStartIsNotLogged) {
  stop_at_ = 5;  // in the wait for the answer
  EXPECT_EQ(Identify(), 0);
  EXPECT_THAT(test::DrainTraceLog(), ::testing::IsEmpty());
  EXPECT_EQ(CIpodCommPeer::TransactionIdMode(session_), 0);
}

}  // namespace

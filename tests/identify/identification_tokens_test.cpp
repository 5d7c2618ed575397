// SPDX-License-Identifier: MIT
// The tokens on the line and the end of the token identification: every place where it can fail,
// what is logged and printed there, and that the iPod is then identified by lingoes.
#include "identify/identification.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;

using Peer = CIpodCommPeer;

constexpr const char* kLastPacketFailed =
    "CIpodComm::Command_IdentifyDeviceLingos: Error setting FID tokens.";
constexpr const char* kDoesNotFit =
    "CIpodComm::Command_IdentifyDeviceLingos: Error adding caps token";
constexpr const char* kRefused =
    "CIpodComm::Command_SetFIDTokenValue: Set FID Token Failed =  0\r\n";

class TokenIdentification : public Identification {
 protected:
  // A token iPod that also takes lingoes.
  void Dock() {
    DockTokenIpod();
    AcceptLingoes();
  }
  void ExpectFallBackToLingoes() {
    EXPECT_EQ(Identify(), 1);
    EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
    EXPECT_EQ(Peer::Identity(session_).idps_done, 0);
    EXPECT_EQ(Peer::TransactionIdMode(session_), 0);
  }
};

TEST_F(TokenIdentification, SkipsTheLingoesWhenItSucceeds) {
  Dock();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(Peer::Identity(session_).idps_done, 1);
  EXPECT_EQ(Peer::TransactionIdMode(session_), 1);
  EXPECT_EQ(session_.GetIDPSEnable(), 1);
  const std::vector<std::string> sent = DrainSent();
  EXPECT_THAT(sent, Not(Contains(HasSubstr("FF 55 0E 00 13"))));
  EXPECT_THAT(sent, Not(Contains(HasSubstr(" 00 0F "))));
}

TEST_F(TokenIdentification, UnansweredAnnouncementFallsBackWithoutALog) {
  IgnoreWithId(std::string("00 39 ") + test::kAnnounceWithSports);
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_EQ(session_.GetIDPSEnable(), 1);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  const std::vector<std::string> sent = DrainSent();
  EXPECT_THAT(sent, Not(Contains(HasSubstr(" 00 3B "))));
  EXPECT_THAT(sent, Contains(Frame("00 39", 6, test::kAnnounceWithSports)));
}

TEST_F(TokenIdentification, RefusedAnnouncementIsLoggedAsSuchOnly) {
  ReplyWithId(std::string("00 39 ") + test::kAnnounceWithSports, "00 02 04 3A");
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kRefused));
}

TEST_F(TokenIdentification, UnansweredTokensAreLoggedAndFallBack) {
  IgnoreWithId("00 39 " + test::Tokens(""));
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_EQ(session_.GetIDPSEnable(), 1);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kLastPacketFailed));
  EXPECT_THAT(DrainSent(), Not(Contains(HasSubstr(" 00 3B "))));
}

TEST_F(TokenIdentification, RefusedTokensAreLoggedTwice) {
  ReplyWithId("00 39 " + test::Tokens(""), "00 02 04 3A");
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kRefused, kLastPacketFailed));
}

TEST_F(TokenIdentification, UnreadableHostVersionIsAnnouncedAsZero) {
  world_.SetFileVersion(L"qz104.exe", L"");
  DockTokenIpod();
  Identify();
  const std::vector<std::string> sent = DrainSentOf("00 39");
  ASSERT_GE(sent.size(), 2U);
  EXPECT_THAT(sent[1], HasSubstr(" 06 00 02 04 00 00 00 06 00 02 05 00 00 00 "));
}

TEST_F(TokenIdentification, AnswersContentsDoNotMatter) {
  ReplyWithId("00 39 " + test::Tokens(""), "00 3A FF FF FF FF FF");
  Dock();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
}

// ---- Long model numbers -------------------------------------------------------------------------

TEST_F(TokenIdentification, ModelNumberOf123FillsTheFrame) {
  session_.SetModel(std::string(123, 'M'));
  const std::string model = test::Repeated("4D", 123);
  AcceptTokens(model);
  Dock();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  const std::vector<std::string> sent = DrainSentOf("00 39");
  ASSERT_EQ(sent.size(), 2U);
  EXPECT_EQ(sent[1], Frame("00 39", 5, test::Tokens(model)));
  EXPECT_EQ(sent[1].substr(0, 8), "FF 55 FF");
}

TEST_F(TokenIdentification, ModelNumberOf124IsNotSent) {
  session_.SetModel(std::string(124, 'M'));
  Dock();
  on_step_ = [this](int step) {
    // The step behind the tokens: the announcement took the fifth identifier, nothing the sixth.
    if (step == 4) {
      EXPECT_EQ(Peer::OwnTransactionId(session_), 5);
    }
  };
  ExpectFallBackToLingoes();
  EXPECT_EQ(DrainSentOf("00 39").size(), 1U);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kLastPacketFailed));
}

constexpr const char* kTokensBeforeTheModel =
    "05 0A 00 01 00 00 00 00 00 00 00 05 10 00 02 01 4F 72 76 69 61 6E 20 54 6F 75 63 68 00 "
    "06 00 02 04 02 05 00 06 00 02 05 02 05 00 "
    "12 00 02 06 4F 72 76 69 61 6E 20 46 69 74 6E 65 73 73 00";

struct LongModel {
  std::size_t length;
  std::vector<std::string> logged;
};

void PrintTo(const LongModel& model, std::ostream* stream) { *stream << model.length; }

class LongModels : public TokenIdentification, public ::testing::WithParamInterface<LongModel> {};

TEST_P(LongModels, SendTheTokensBeforeThemAndFallBack) {
  session_.SetModel(std::string(GetParam().length, 'M'));
  ReplyWithId(std::string("00 39 ") + kTokensBeforeTheModel, "00 3A 00");
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_THAT(DrainSentOf("00 39"), ElementsAre(Frame("00 39", 4, test::kAnnounceWithSports),
                                                Frame("00 39", 5, kTokensBeforeTheModel)));
  EXPECT_THAT(test::DrainTraceLog(), ::testing::ElementsAreArray(GetParam().logged));
}

// 453 needs a fresh packet, 513 fills it, 514 fits none. What a longer packet than the line's frame
// holds is not sent.
INSTANTIATE_TEST_SUITE_P(Lengths, LongModels,
                         ::testing::Values(LongModel{453, {}}, LongModel{513, {}},
                                           LongModel{514, {kDoesNotFit}},
                                           LongModel{5000, {kDoesNotFit}}),
                         [](const auto& tested) { return std::to_string(tested.param.length); });

TEST_F(TokenIdentification, ModelNumberThatFillsTheFirstPacketIsNotSent) {
  session_.SetModel(std::string(452, 'M'));
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_EQ(DrainSentOf("00 39").size(), 1U);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(TokenIdentification, TokensBeforeALongModelNumberMayBeRefused) {
  session_.SetModel(std::string(514, 'M'));
  ReplyWithId(std::string("00 39 ") + kTokensBeforeTheModel, "00 02 04 3A");
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kRefused));
}

// ---- EndIDPS ------------------------------------------------------------------------------------

TEST_F(TokenIdentification, UnansweredEndFallsBackWithoutAWord) {
  IgnoreWithId("00 3B 00");
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_EQ(session_.GetIDPSEnable(), 1);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), Not(Contains(HasSubstr("IDPS"))));
}

TEST_F(TokenIdentification, AckOfTheAwaitedStatusIsAFailedEnd) {
  ReplyWithId("00 3B 00", "00 02 04 3C");
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_THAT(DrainDebugOutput(), Not(Contains(HasSubstr("IDPS"))));
}

TEST_F(TokenIdentification, AckOfTheEndPassesForStatusZeroAfterTheSilence) {
  ReplyWithId("00 3B 00", "00 02 04 3B");
  Dock();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
}

struct EndStatus {
  std::string status;
  int enabled_after;
  std::string logged;
  std::vector<std::string> printed;
};

void PrintTo(const EndStatus& status, std::ostream* stream) { *stream << status.status; }

class FailedEnd : public TokenIdentification, public ::testing::WithParamInterface<EndStatus> {};

TEST_P(FailedEnd, IsLoggedAndFallsBack) {
  EndWith(GetParam().status);
  Dock();
  ExpectFallBackToLingoes();
  EXPECT_EQ(session_.GetIDPSEnable(), GetParam().enabled_after);
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodComm::Command_IdentifyDeviceLingos: " + GetParam().logged));
  std::vector<std::string> printed;
  for (const std::string& line : DrainDebugOutput()) {
    if (line.compare(0, 4, "IDPS") == 0) printed.push_back(line);
  }
  EXPECT_EQ(printed, GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(
    WithStatus, FailedEnd,
    ::testing::Values(EndStatus{"01", 1, "IDPS failed with code 01", {"IDPS Failed =  1\r\n"}},
                      EndStatus{"02", 1, "IDPS failed with code 02", {"IDPS Failed =  2\r\n"}},
                      EndStatus{"04", 1, "IDPS failed with code 04", {"IDPS Failed =  4\r\n"}},
                      EndStatus{"05", 0, "IDPS failed with code 05", {}},
                      EndStatus{"06", 1, "IDPS failed with code 06", {"IDPS Failed =  6\r\n"}},
                      EndStatus{"AB", 1, "IDPS failed with code ab", {"IDPS Failed = ab\r\n"}}),
    [](const auto& tested) { return tested.param.status; });

class EndTime : public TokenIdentification, public ::testing::WithParamInterface<std::string> {
 protected:
  // Milliseconds between the two looks at the tick count, which wraps around.
  std::string ExpectedText() {
    std::vector<std::uint32_t> ticks;
    const auto calls = world_.DrainCalls().Of("host");
    for (const auto& call : calls.all()) {
      if (call.service == "GetTickCount") {
        ticks.push_back(static_cast<std::uint32_t>(std::stoul(call.result)));
      }
    }
    if (ticks.size() < 2) return "too few looks";
    return "Time to do IDPS " +
           std::to_string(static_cast<std::uint32_t>(ticks.back() - ticks[ticks.size() - 2])) +
           "\n";
  }
};

TEST_P(EndTime, IsPrintedFromTheLastAttemptOn) {
  EndWith(GetParam());
  on_step_ = [this](int step) {
    if (step == 1) world_.SetTickCount(0xFFFFFF00);  // wraps around on the way
    if (step == 1) world_.Record({"GetTickCount"});
    if (step == 2) Dock();
  };
  EXPECT_EQ(Identify(), 1);
  EXPECT_THAT(DrainDebugOutput(), Contains(ExpectedText()));
}

INSTANTIATE_TEST_SUITE_P(WithStatus, EndTime, ::testing::Values("00", "05", "01"),
                         [](const auto& tested) { return tested.param; });

TEST_F(TokenIdentification, PrintedTimeHoldsThePausesAndTheLine) {
  Dock();
  const std::int64_t start_us = world_.now_us();
  std::int64_t end_us = 0;
  on_step_ = [&](int step) {
    if (step == 4) end_us = world_.now_us();
  };
  Identify();
  const std::vector<std::string> printed = DrainDebugOutput();
  ASSERT_EQ(printed.size(), 2U);
  ASSERT_THAT(printed[1], MatchesRegex("Time to do IDPS [0-9]+\n"));
  const long told_ms = std::stol(printed[1].substr(16));
  // From behind the first pause; EndIDPS itself takes between 20 and 60 ms more.
  const std::int64_t to_end_ms = (end_us - start_us) / test::kMillisecond - 100;
  EXPECT_GE(told_ms, to_end_ms + 20);
  EXPECT_LE(told_ms, to_end_ms + 60);
}

// ---- Behind the end -----------------------------------------------------------------------------

TEST_F(TokenIdentification, WaitsASecondForAGeneral03ThatNeedNotCome) {
  Dock();
  EXPECT_EQ(Identify(), 1);
  const std::vector<std::string> calls = DrainHostCalls();
  EXPECT_EQ(calls[calls.size() - 1], "WaitForSingleObject(1000)");
  EXPECT_EQ(calls[calls.size() - 2], "WaitForSingleObject(1000)");
}

TEST_F(TokenIdentification, GeneralThreeEndsTheWaitEarly) {
  // It comes right behind the acknowledged event notifications.
  for (std::uint16_t id = 0; id < 12; ++id) {
    Answer(Frame("00 49", id, "00 00 00 00 00 00 02 04"),
           Frame("00 02", id, "00 49") + " " + Frame("00 03", 0, ""));
  }
  Dock();
  const std::int64_t elapsed_us = Elapsed([&] { EXPECT_EQ(Identify(), 1); });
  EXPECT_LT(elapsed_us, test::kSecond + 100 * test::kMillisecond);
  EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF) << "nothing is left over";
}

TEST_F(TokenIdentification, OtherPacketsInThatWaitAreDropped) {
  for (std::uint16_t id = 0; id < 12; ++id) {
    Answer(Frame("00 49", id, "00 00 00 00 00 00 02 04"),
           Frame("00 02", id, "00 49") + " " + Frame("00 08", 0, "41 00"));
  }
  Dock();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF);
}

}  // namespace

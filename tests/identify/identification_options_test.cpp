// SPDX-License-Identifier: MIT
// What the session asks before it sends tokens, what it makes of the answers, and the lingoes and
// options that it announces in consequence.
#include "identify/identification.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::Contains;
using ::testing::ElementsAre;

using Peer = CIpodCommPeer;

class Options : public Identification {
 protected:
  Options() { Reply(test::kStart, test::kStartTaken); }
  // Identifies with the answers that the test has scripted and the healthy ones for the rest.
  void IdentifyByTokens() {
    DockTokenIpod();
    EXPECT_EQ(Identify(), 1);
    EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  }
  // The announcement, with its identifier, that has been sent.
  std::string PopAnnouncement() {
    const std::vector<std::string> sent = DrainSentOf("00 39");
    return sent.empty() ? "" : sent.front();
  }
};

// ---- Maximum payload ----------------------------------------------------------------------------

TEST_F(Options, MaximumPayloadIsKept) {
  ReplyWithId("00 11", "00 12 12 34");
  IdentifyByTokens();
  EXPECT_EQ(session_.GetMaxPayloadSize(), 0x1234);
}

TEST_F(Options, UnansweredMaximumPayloadDoesNotMatter) {
  IgnoreWithId("00 11");
  IdentifyByTokens();
  EXPECT_EQ(session_.GetMaxPayloadSize(), 0);
  EXPECT_THAT(DrainSentOf("00 11"),
              ElementsAre(Frame("00 11", 0, ""), Frame("00 11", 1, ""), Frame("00 11", 2, "")));
}

// ---- General lingo ------------------------------------------------------------------------------

struct Flag {
  std::string name;
  std::string options;
  int expected;
};

void PrintTo(const Flag& flag, std::ostream* stream) { *stream << flag.name; }

class GeneralOption : public Options, public ::testing::WithParamInterface<Flag> {};

TEST_P(GeneralOption, IsSetWhileTheUpperBitsOfByteSixAreClear) {
  ReplyWithId("00 4B 00", "00 4C 00 " + GetParam().options);
  Peer::Identity(session_).general_option = 1 - GetParam().expected;
  IdentifyByTokens();
  EXPECT_EQ(Peer::Identity(session_).general_option, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Answers, GeneralOption,
                         ::testing::Values(Flag{"Zero", "00 00 00 00 00 00 00 00", 1},
                                           Flag{"LowerBits", "00 00 00 00 00 0F 00 00", 1},
                                           Flag{"OtherBytes", "FF FF FF FF FF 0F FF FF", 1},
                                           Flag{"Bit4", "00 00 00 00 00 10 00 00", 0},
                                           Flag{"Bit5", "00 00 00 00 00 20 00 00", 0},
                                           Flag{"Bit6", "00 00 00 00 00 40 00 00", 0},
                                           Flag{"Bit7", "00 00 00 00 00 80 00 00", 0},
                                           Flag{"UpperBits", "00 00 00 00 00 F0 00 00", 0}),
                         test::RowName());

TEST_F(Options, UnansweredGeneralOptionsKeepTheFlag) {
  IgnoreWithId("00 4B 00");
  Peer::Identity(session_).general_option = 1;
  IdentifyByTokens();
  EXPECT_EQ(Peer::Identity(session_).general_option, 1);
}

// ---- Sports -------------------------------------------------------------------------------------

class SportsOption : public Options, public ::testing::WithParamInterface<Flag> {};

TEST_P(SportsOption, IsBitOneOfTheLastByte) {
  ReplyWithId("00 4B 09", "00 4C 09 " + GetParam().options);
  IdentifyByTokens();
  EXPECT_EQ(session_.SupportsSports(), GetParam().expected);
  EXPECT_EQ(test::First(DrainDebugOutput()),
            "Supports Sports " + std::to_string(GetParam().expected) + "\n");
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 4,
                                     GetParam().expected == 1 ? test::kAnnounceWithSports
                                                              : test::kAnnounceWithoutSports));
}

INSTANTIATE_TEST_SUITE_P(Answers, SportsOption,
                         ::testing::Values(Flag{"Bit1", "00 00 00 00 00 00 00 02", 1},
                                           Flag{"AllBits", "FF FF FF FF FF FF FF FF", 1},
                                           Flag{"Zero", "00 00 00 00 00 00 00 00", 0},
                                           Flag{"Bit0", "00 00 00 00 00 00 00 01", 0},
                                           Flag{"AllButBit1", "FF FF FF FF FF FF FF FD", 0},
                                           Flag{"CutShort", "FF FF FF FF FF FF FF", 0}),
                         test::RowName());

TEST_F(Options, UnansweredSportsOptionsMeanNone) {
  IgnoreWithId("00 4B 09");
  IdentifyByTokens();
  EXPECT_EQ(session_.SupportsSports(), 0);
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 6, test::kAnnounceWithoutSports));
}

TEST_F(Options, SportsOptionsRefusedByTheSentCommandMeanNone) {
  // The exchange succeeds after the silence; the ACK-received flag tells.
  ReplyWithId("00 4B 09", "00 02 04 4B");
  IdentifyByTokens();
  EXPECT_EQ(session_.SupportsSports(), 0);
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 4, test::kAnnounceWithoutSports));
}

TEST_F(Options, SportsOptionsRefusedByTheAwaitedCommandMeanNone) {
  ReplyWithId("00 4B 09", "00 02 04 4C");
  IdentifyByTokens();
  EXPECT_EQ(session_.SupportsSports(), 0);
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 6, test::kAnnounceWithoutSports));
}

TEST_F(Options, SportsOptionsBehindAnAckMeanNone) {
  // Something was acknowledged in between, so what follows is not trusted.
  for (std::uint16_t id = 0; id < 4; ++id) {
    Answer(Frame("00 4B", id, "09"),
           Frame("00 02", id, "00 39") + " " + Frame("00 4C", id, "09 00 00 00 00 00 00 00 02"));
  }
  IdentifyByTokens();
  EXPECT_EQ(session_.SupportsSports(), 0);
}

// ---- Extended Interface -------------------------------------------------------------------------

class ExtendedOption : public Options, public ::testing::WithParamInterface<Flag> {};

TEST_P(ExtendedOption, IsBitOneOfTheLastByte) {
  ReplyWithId("00 4B 04", "00 4C 04 " + GetParam().options);
  IdentifyByTokens();
  EXPECT_EQ(Peer::Identity(session_).database_track_info, GetParam().expected);
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 4, test::kAnnounceWithSports));
}

INSTANTIATE_TEST_SUITE_P(Answers, ExtendedOption,
                         ::testing::Values(Flag{"Bit1", "00 00 00 00 00 00 00 02", 1},
                                           Flag{"AllBits", "FF FF FF FF FF FF FF FF", 1},
                                           Flag{"Zero", "00 00 00 00 00 00 00 00", 0},
                                           Flag{"AllButBit1", "FF FF FF FF FF FF FF FD", 0}),
                         test::RowName());

TEST_F(Options, UnansweredExtendedOptionsAnnounceTheGeneralLingoThrice) {
  IgnoreWithId("00 4B 04");
  IdentifyByTokens();
  EXPECT_EQ(Peer::Identity(session_).database_track_info, 0);
  // Lingoes 0, 3, 9, 12, 4, 0, 0.
  EXPECT_EQ(PopAnnouncement(),
            "FF 55 18 00 39 00 06 01 12 00 00 07 00 03 09 0C 04 00 00 "
            "00 00 00 00 00 00 00 00 73");
}

TEST_F(Options, GeneralLingoIsAnnouncedThriceAlsoWithoutSports) {
  IgnoreWithId("00 4B 09");
  IgnoreWithId("00 4B 04");
  IdentifyByTokens();
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 8, test::kAnnounceGeneralThriceWithoutSports));
}

TEST_F(Options, ExtendedOptionsRefusedByTheSentCommandPassForAnswered) {
  ReplyWithId("00 4B 04", "00 02 04 4B");
  IdentifyByTokens();
  EXPECT_EQ(Peer::Identity(session_).database_track_info, 0);
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 4, test::kAnnounceWithSports));
}

TEST_F(Options, ExtendedOptionsRefusedByTheAwaitedCommandAnnounceTheGeneralLingoThrice) {
  ReplyWithId("00 4B 04", "00 02 04 4C");
  IdentifyByTokens();
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 6, test::kAnnounceGeneralThrice));
}

TEST_F(Options, EverythingUnansweredStillIdentifies) {
  for (const char* request : {"00 11", "00 4B 00", "00 4B 09", "00 4B 04"}) IgnoreWithId(request);
  IdentifyByTokens();
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 12, test::kAnnounceGeneralThriceWithoutSports));
}

// ---- The options word ---------------------------------------------------------------------------

struct Power {
  std::string name;
  int flag;
  std::string options;
};

void PrintTo(const Power& power, std::ostream* stream) { *stream << power.name; }

class OptionsWord : public Options, public ::testing::WithParamInterface<Power> {};

TEST_P(OptionsWord, IsAnnouncedWithTheTokens) {
  const std::string announcement =
      "01 10 00 00 05 00 03 09 0C 04 " + GetParam().options + " 00 00 00 00";
  ReplyWithId("00 39 " + announcement, "00 3A 01 03 00 00 00");
  DockTokenIpod();
  EXPECT_EQ(Identify(GetParam().flag), 1);
  EXPECT_EQ(PopAnnouncement(), Frame("00 39", 4, announcement));
}

TEST_P(OptionsWord, IsAnnouncedWithTheLingoes) {
  session_.SetIDPSEnable(0);
  const std::string options = GetParam().options + " 00 00 00 00";
  Reply("00 13 00 00 00 01 " + options, test::kIdentified);
  Reply("00 13 00 00 12 19 " + options, test::kIdentified);
  AcceptLingoes();
  EXPECT_EQ(Identify(GetParam().flag), 1);
  EXPECT_THAT(DrainSentOf("00 13"), ElementsAre(Frame("00 13 00 00 00 01 " + options),
                                                Frame("00 13 00 00 12 19 " + options)));
}

INSTANTIATE_TEST_SUITE_P(Flags, OptionsWord,
                         ::testing::Values(Power{"Low", 0, "00 00 00 00"},
                                           Power{"One", 1, "00 00 00 04"},
                                           Power{"Two", 2, "00 00 00 04"},
                                           Power{"Large", 0x100, "00 00 00 04"},
                                           Power{"Negative", -1, "00 00 00 04"}),
                         test::RowName());

}  // namespace

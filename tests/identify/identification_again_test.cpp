// SPDX-License-Identifier: MIT
// What an identification leaves to the next one: the token switch, identifiers and flags.
#include "identify/identification.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

using Peer = CIpodCommPeer;

class Again : public Identification {
 protected:
  void ExpectLingoesOnly() {
    EXPECT_EQ(Identify(), 1);
    EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
    EXPECT_THAT(DrainSent(), Not(Contains(HasSubstr(" 00 38 "))));
  }
};

TEST_F(Again, RefusedStartIsNotTriedAgainUntilTheHostEnablesIt) {
  DockLingoIpod();
  EXPECT_EQ(Identify(), 1);
  DrainSent();
  ExpectLingoesOnly();
  session_.SetIDPSEnable(1);
  EXPECT_EQ(Identify(), 1);
  EXPECT_THAT(DrainSent(), Contains("FF 55 02 00 38 C6"));
}

TEST_F(Again, UnansweredStartIsNotTriedAgain) {
  Ignore(test::kStart);
  DockLingoIpod();
  EXPECT_EQ(Identify(), 1);
  DrainSent();
  ExpectLingoesOnly();
}

TEST_F(Again, EndWithStatusFiveIsNotTriedAgain) {
  EndWith("05");
  DockTokenIpod();
  AcceptLingoes();
  EXPECT_EQ(Identify(), 1);
  DrainSent();
  ExpectLingoesOnly();
}

TEST_F(Again, EndWithAnotherStatusIsTriedAgain) {
  EndWith("01");
  DockTokenIpod();
  AcceptLingoes();
  EXPECT_EQ(Identify(), 1);
  DrainSent();
  EXPECT_EQ(Identify(), 1);
  EXPECT_THAT(DrainSent(), Contains("FF 55 02 00 38 C6"));
}

TEST_F(Again, SecondTokenIdentificationGoesOnCounting) {
  Answer(Frame("00 38", 9, ""), Frame("00 02", 9, "00 38"));
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  DrainSent();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  const std::vector<std::string> sent = DrainSent();
  EXPECT_EQ(sent[1], "FF 55 04 00 38 00 09 BB");
  EXPECT_EQ(sent[2], "FF 55 04 00 11 00 0A E1");
}

TEST_F(Again, IdentifiersStayOnWhenTokensAreDisabledAfterwards) {
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  session_.SetIDPSEnable(0);
  DrainSent();
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Peer::TransactionIdMode(session_), 1);
  EXPECT_EQ(Peer::Identity(session_).idps_done, 0);
  const std::vector<std::string> sent = DrainSent();
  EXPECT_EQ(sent[1], Frame(test::kIdentifyGeneralOnly)) << "never with an identifier";
  EXPECT_EQ(sent[2], "FF 55 05 00 0F 00 09 00 E3");
}

TEST_F(Again, FailedTokensGoBackToFramesWithoutIdentifiers) {
  IgnoreWithId("00 3B 00");
  DockTokenIpod();
  AcceptLingoes();
  EXPECT_EQ(Identify(), 1);
  const std::vector<std::string> sent = DrainSent();
  EXPECT_THAT(sent, Contains("FF 55 03 00 0F 00 EE"));
  EXPECT_EQ(test::Last(sent), "FF 55 0A 00 49 00 00 00 00 00 00 02 04 A7");
}

TEST_F(Again, ReopenedSessionCountsFromZeroWithIdentifiersStillOn) {
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  session_.Close();
  EXPECT_EQ(session_.SupportsSports(), 0);
  world_.Advance(2 * test::kSecond);
  EXPECT_EQ(session_.Open(), 0);
  DrainSent();
  ReplyWithId("00 38", "00 02 00 38");
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(DrainSent()[1], "FF 55 04 00 38 00 00 C4");
}

TEST_F(Again, IpodThatLostSportsIsNoticed) {
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(session_.SupportsSports(), 1);
  stop_at_ = 1;
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(session_.SupportsSports(), 0);
  EXPECT_EQ(Peer::Identity(session_).database_track_info, 0);
}

TEST_F(Again, PreferencesOpenOnceTheVersionIsAskedForBehindTokens) {
  // The token identification surveys no versions, so the gate is closed until the host asks.
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  ReplyWithId("00 0F 00", "00 10 00 01 09");
  ReplyWithId("00 2B 03 01 01", "00 02 00 2B");
  EXPECT_EQ(session_.Command_SetPreference(3, 1), 0);
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(0, nullptr, nullptr), 1);
  EXPECT_EQ(session_.Command_SetPreference(3, 1), 1);
}

}  // namespace

// SPDX-License-Identifier: MIT
// The beginning of an identification: the wake-up byte, the attempts at StartIDPS and what the iPod
// makes of them, and what is cleared before each.
#include "identify/identification.h"

namespace {

using test::Frame;
using test::Identification;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using Peer = CIpodCommPeer;

constexpr const char* kStartFrame = "FF 55 02 00 38 C6";
constexpr const char* kGeneralOnlyFrame = "FF 55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE";
constexpr const char* kNoAck =
    "CIpodComm::Command_IdentifyDeviceLingos: Did not receive ack of start IDPS message";

class Start : public Identification {};

TEST_F(Start, TokensAreOffAfterConstruction) {
  test::ChosenSession session;
  EXPECT_EQ(session.GetIDPSEnable(), 0);
  EXPECT_EQ(session.SupportsSports(), 0);
}

TEST(Outcomes, HaveTheirNumbers) {
  EXPECT_EQ(int{IPOD_IDENTIFY_RESULT_NONE}, 0);
  EXPECT_EQ(int{IPOD_IDENTIFY_RESULT_TOOOLD}, 1);
  EXPECT_EQ(int{IPOD_IDENTIFY_RESULT_IDPS}, 2);
  EXPECT_EQ(int{IPOD_IDENTIFY_RESULT_LINGOS}, 3);
}

TEST_F(Start, TokenSwitchKeepsAnyValue) {
  session_.SetIDPSEnable(7);
  EXPECT_EQ(session_.GetIDPSEnable(), 7);
  session_.SetIDPSEnable(0);
  EXPECT_EQ(session_.GetIDPSEnable(), 0);
}

TEST_F(Start, SilentIpodIsAskedThreeTimesThenTheLingoesAreTried) {
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_EQ(session_.GetIDPSEnable(), 0);
  EXPECT_EQ(steps_, 4);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kNoAck, kNoAck, kNoAck));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF", kStartFrame, "FF", kStartFrame, "FF", kStartFrame, "FF",
                          kGeneralOnlyFrame, kGeneralOnlyFrame, kGeneralOnlyFrame));
}

TEST_F(Start, SilentIpodCostsThePausesAndTheWaits) {
  const std::int64_t elapsed_us = Elapsed([&] { Identify(); });
  const char* pause = "Sleep(100)";
  const char* sync = "WriteFile(FF)";
  const char* sync_pause = "Sleep(20)";
  const char* start = "WriteFile(55 02 00 38 C6)";
  const char* wait = "WaitForSingleObject(1000)";
  const char* general = "WriteFile(55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE)";
  EXPECT_THAT(DrainHostCalls(),
              ElementsAre(pause, sync, sync_pause, sync, sync_pause, start, wait,  //
                          pause, sync, sync_pause, sync, sync_pause, start, wait,  //
                          pause, sync, sync_pause, sync, sync_pause, start, wait,  //
                          pause, sync, sync_pause,                                 //
                          sync, sync_pause, general, wait,                         //
                          sync, sync_pause, general, wait,                         //
                          sync, sync_pause, general, wait));
  // Ten writes may each find the read thread at the port, for a read's 2 ms at most.
  const std::int64_t least_ms = 3 * (100 + 20 + 20 + 1000) + 100 + 20 + 3 * (20 + 1000);
  EXPECT_GE(elapsed_us, least_ms * test::kMillisecond);
  EXPECT_LE(elapsed_us, (least_ms + 10 * 2) * test::kMillisecond);
}

TEST_F(Start, IpodThatKeepsSilentOnStartIsIdentifiedByLingoes) {
  Ignore(test::kStart);
  DockLingoIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  EXPECT_EQ(session_.GetIDPSEnable(), 0);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kNoAck, kNoAck, kNoAck));
}

class LateStart : public Start, public ::testing::WithParamInterface<int> {};

TEST_P(LateStart, IsTaken) {
  on_step_ = [this](int step) {
    if (step == GetParam()) DockTokenIpod();
  };
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(session_.GetIDPSEnable(), 1);
  EXPECT_EQ(test::DrainTraceLog().size(), static_cast<std::size_t>(GetParam() - 1));
  EXPECT_EQ(DrainSentOf("00 38").size(), static_cast<std::size_t>(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(AtAttempt, LateStart, ::testing::Values(1, 2, 3),
                         ::testing::PrintToStringParamName());

class RefusedStart : public Start, public ::testing::WithParamInterface<const char*> {};

TEST_P(RefusedStart, TurnsTokensOffAndGoesOnWithLingoes) {
  Reply(test::kStart, std::string("00 02 ") + GetParam() + " 38");
  AcceptLingoes();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  EXPECT_EQ(session_.GetIDPSEnable(), 0);
  EXPECT_EQ(Peer::TransactionIdMode(session_), 0);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), Not(Contains(::testing::HasSubstr("IDPS"))));
  EXPECT_EQ(DrainSentOf("00 38").size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(WithStatus, RefusedStart,
                         ::testing::Values("01", "02", "03", "04", "05", "06", "0A", "FF"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(Start, PendingStartIsTakenWithTheNextAck) {
  // Status 06 with 500 ms first, and status 00 after 400 ms.
  Answer(kStartFrame, "FF 55 08 00 02 06 38 00 00 01 F4 C3");
  on_step_ = [this](int step) {
    if (step == 1) ipod_.SendAt(world_.now_us() + 400000, test::Hex("FF 55 04 00 02 00 38 C2"));
  };
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(DrainSentOf("00 38").size(), 1U);
}

TEST_F(Start, PendingStartIsRefusedWithTheNextAck) {
  Answer(kStartFrame, "FF 55 08 00 02 06 38 00 00 01 F4 C3");
  on_step_ = [this](int step) {
    if (step == 1) ipod_.SendAt(world_.now_us() + 400000, test::Hex("FF 55 04 00 02 04 38 BE"));
  };
  DockLingoIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  EXPECT_EQ(session_.GetIDPSEnable(), 0);
}

TEST_F(Start, DisabledTokensAreNotTried) {
  session_.SetIDPSEnable(0);
  DockTokenIpod();
  AcceptLingoes();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  const std::vector<std::string> sent = DrainSent();
  ASSERT_GE(sent.size(), 2U);
  EXPECT_EQ(sent[0], "FF");
  EXPECT_EQ(sent[1], kGeneralOnlyFrame);
  EXPECT_THAT(sent, Not(Contains(kStartFrame)));
  EXPECT_EQ(DrainHostCalls()[0], "Sleep(100)");
}

// ---- The wake-up byte ---------------------------------------------------------------------------

TEST_F(Start, WakeUpThatCannotBeWrittenEndsTheSequenceAtOnce) {
  DockTokenIpod();
  world_.FailOnce("WriteFile", 1, 31);
  result_ = IPOD_IDENTIFY_RESULT_IDPS;
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_THAT(DrainHostCalls(), ElementsAre("Sleep(100)", "WriteFile(FF)"));
  EXPECT_EQ(steps_, 0);
  EXPECT_EQ(session_.GetIDPSEnable(), 1);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Start, ClosedPortEndsTheSequenceAtOnce) {
  session_.Close();
  std::int64_t elapsed_us = Elapsed([&] { EXPECT_EQ(Identify(), 0); });
  EXPECT_EQ(elapsed_us, 100 * test::kMillisecond);
  EXPECT_EQ(steps_, 0);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Start, LaterWakeUpThatCannotBeWrittenEndsTheSequence) {
  // Three writes belong to the first attempt: the wake-up and the two parts of the frame.
  world_.FailOnce("WriteFile", 4, 31);
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(steps_, 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF", kStartFrame));
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kNoAck));
}

TEST_F(Start, StartThatCannotBeWrittenIsAnAttempt) {
  DockTokenIpod();
  world_.FailOnce("WriteFile", 3, 31);
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(steps_, 5);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kNoAck));
}

// ---- What is cleared ----------------------------------------------------------------------------

TEST_F(Start, EveryAttemptClearsWhatTheLastIdentificationFound) {
  on_step_ = [this](int) {
    auto& identity = Peer::Identity(session_);
    EXPECT_EQ(identity.sports_supported, 0);
    EXPECT_EQ(identity.database_track_info, 0);
    EXPECT_EQ(identity.idps_done, 0);
    EXPECT_EQ(Peer::Browsing(session_).sort_select_only, 0);
    EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_NONE);
    identity.sports_supported = 1;
    identity.database_track_info = 1;
    identity.idps_done = 1;
    Peer::Browsing(session_).sort_select_only = 1;
    if (steps_ == 4) on_step_ = nullptr;
  };
  result_ = IPOD_IDENTIFY_RESULT_IDPS;
  auto& identity = Peer::Identity(session_);
  identity.sports_supported = 1;
  identity.database_track_info = 1;
  identity.idps_done = 1;
  Peer::Browsing(session_).sort_select_only = 1;
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(steps_, 4);
}

TEST_F(Start, GeneralOptionAndVersionsAreNotCleared) {
  auto& identity = Peer::Identity(session_);
  identity.general_option = 1;
  identity.general = {1, 9};
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(identity.general_option, 1);
  EXPECT_EQ(identity.general.minor, 9);
}

TEST_F(Start, ResultAndCallbackMayBeMissing) {
  DockTokenIpod();
  EXPECT_EQ(session_.Command_IdentifyDeviceLingos(0, nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(Peer::Identity(session_).idps_done, 1);
}

TEST_F(Start, HostVersionIsReadOnceWhateverHappens) {
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(world_.call_count("VerQueryValueW"), 1U);
}

// ---- Transaction identifiers --------------------------------------------------------------------

TEST_F(Start, AcknowledgedStartTurnsIdentifiersOn) {
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(Peer::TransactionIdMode(session_), 1);
}

TEST_F(Start, AckThatCarriesAnIdentifierAlreadyIsTakenForItsFirstByte) {
  // Identifiers are still off, so the ACK's identifier 0000 is read as status and command.
  Answer(kStartFrame, "FF 55 06 00 02 00 00 00 38 C0");
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
}

TEST_F(Start, IdentifiersLeftOnGoWithTheStart) {
  TurnOnTransactionIds(0x10);
  Answer("FF 55 04 00 38 00 10 B4", "FF 55 04 00 02 00 38 C2");  // an ACK without one
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(DrainSent()[1], "FF 55 04 00 38 00 10 B4");
}

TEST_F(Start, IdentifiersLeftOnAreSkippedInTheAck) {
  TurnOnTransactionIds(0x02);
  Answer("FF 55 04 00 38 00 02 C2", "FF 55 06 00 02 00 02 00 38 BE");
  DockTokenIpod();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
}

TEST_F(Start, UnansweredStartTurnsIdentifiersOff) {
  TurnOnTransactionIds(0x10);
  DockTokenIpod();  // answers a start without an identifier only
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_IDPS);
  const std::vector<std::string> sent = DrainSent();
  EXPECT_EQ(sent[1], "FF 55 04 00 38 00 10 B4");
  EXPECT_EQ(sent[3], kStartFrame);
}

TEST_F(Start, RefusedStartTurnsIdentifiersOff) {
  TurnOnTransactionIds(0x02);
  Answer("FF 55 04 00 38 00 02 C2", "FF 55 06 00 02 00 02 04 38 BA");
  AcceptLingoes();
  EXPECT_EQ(Identify(), 1);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_LINGOS);
  EXPECT_EQ(Peer::TransactionIdMode(session_), 0);
}

TEST_F(Start, DisabledTokensKeepIdentifiersOn) {
  TurnOnTransactionIds(0x02);
  session_.SetIDPSEnable(0);
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  ReplyWithId("00 0F 00", "00 10 00 01 01");
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(result_, IPOD_IDENTIFY_RESULT_TOOOLD);
  EXPECT_EQ(Peer::TransactionIdMode(session_), 1);
  const std::vector<std::string> sent = DrainSent();
  EXPECT_EQ(sent[1], kGeneralOnlyFrame);
  EXPECT_EQ(sent[2], Frame("00 0F", 2, "00"));
}

}  // namespace

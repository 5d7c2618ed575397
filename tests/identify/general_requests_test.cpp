// SPDX-License-Identifier: MIT
// Single General requests: the frame of each, what counts as success, what is made of the answer,
// and what stays untouched on failure. None of them ever logs.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Three attempts, each 20 ms of writing and a second of silence.
constexpr std::int64_t kThreeAttemptsUs = 3 * 1020 * kMillisecond;

class GeneralRequests : public SessionTest {
 protected:
  ~GeneralRequests() override {
    EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
    EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  }
  void Queue(const char* packet) {
    CIpodCommPeer::Responses(session_).Append(test::Packet(packet));
  }
};

// ---- Every request's frame, with and without identifier

struct FrameRow {
  const char* name;
  void (*request)(CIpodComm& session);
  std::vector<std::string> frames;
  std::vector<std::string> frames_with_identifiers;  // from 0x0010
};

class GeneralRequest : public GeneralRequests, public ::testing::WithParamInterface<FrameRow> {
 protected:
  std::vector<std::string> DistinctFrames() {
    std::vector<std::string> frames = DrainSent();
    frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
    return frames;
  }
};

TEST_P(GeneralRequest, SendsItsFrame) {
  GetParam().request(session_);
  EXPECT_EQ(DistinctFrames(), GetParam().frames);
}

TEST_P(GeneralRequest, SendsItsFrameWithIdentifiers) {
  TurnOnTransactionIds(0x0010);
  GetParam().request(session_);
  EXPECT_EQ(DistinctFrames(), GetParam().frames_with_identifiers);
}

INSTANTIATE_TEST_SUITE_P(
    Of, GeneralRequest,
    ::testing::Values(FrameRow{"RemoteUiMode",
                               [](CIpodComm& session) { session.Command_RequestRemoteUIMode(); },
                               {"FF 55 02 00 03 FB"},
                               {"FF 55 02 00 03 FB"}},
                      FrameRow{"EnteringRemoteUiMode",
                               [](CIpodComm& session) { session.Command_EnterRemoteUIMode(); },
                               {"FF 55 03 00 37 01 C5", "FF 55 02 00 05 F9"},
                               {"FF 55 05 00 37 00 10 01 B3", "FF 55 05 00 37 00 11 01 B2",
                                "FF 55 05 00 37 00 12 01 B1", "FF 55 04 00 05 00 13 E4",
                                "FF 55 04 00 05 00 14 E3", "FF 55 04 00 05 00 15 E2"}},
                      FrameRow{"CancelledCommand",
                               [](CIpodComm& session) { session.Command_CancelCommand(0x1234); },
                               {"FF 55 02 00 50 AE"},
                               {"FF 55 04 00 50 12 34 66"}}),
    test::RowName());

// ---- Remote user interface

TEST_F(GeneralRequests, RemoteUiModeIsGrantedByAnAckForIt) {
  Answer("FF 55 02 00 03 FB", "FF 55 04 00 02 00 03 F7");
  EXPECT_EQ(session_.Command_RequestRemoteUIMode(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 03 FB"));
}

TEST_F(GeneralRequests, RemoteUiModeIsRefusedByEveryOtherStatus) {
  for (unsigned status = 1; status <= 0xFF; ++status) {
    if (status == 6) continue;  // not yet decided: the next test
    tagSERIAL_PACKET ack = test::Packet("FF 55 04 00 02 00 03 F7");
    ack.data[5] = static_cast<unsigned char>(status);
    CIpodCommPeer::Responses(session_).Append(ack);
    ASSERT_EQ(session_.Command_RequestRemoteUIMode(), 0) << status;
  }
}

TEST_F(GeneralRequests, RemoteUiModeMayBeGrantedAfterAPendingAck) {
  Answer("FF 55 02 00 03 FB",
         "FF 55 08 00 02 06 03 00 00 00 64 89"
         "FF 55 04 00 02 00 03 F7");
  EXPECT_EQ(session_.Command_RequestRemoteUIMode(), 1);
}

TEST_F(GeneralRequests, AckForAnotherCommandDoesNotGrantRemoteUiMode) {
  Answer("FF 55 02 00 03 FB", "FF 55 04 00 02 00 04 F6");
  EXPECT_EQ(session_.Command_RequestRemoteUIMode(), 0);
}

TEST_F(GeneralRequests, SilenceDoesNotGrantRemoteUiModeAndTakesThreeAttempts) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.Command_RequestRemoteUIMode(), 0); }),
            kThreeAttemptsUs);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 02 00 03 FB", "FF 55 02 00 03 FB", "FF 55 02 00 03 FB"));
}

TEST_F(GeneralRequests, AcceptedNewerCommandEntersRemoteUiModeAlone) {
  Answer("FF 55 03 00 37 01 C5", "FF 55 04 00 02 00 37 C3");
  EXPECT_EQ(session_.Command_EnterRemoteUIMode(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 00 37 01 C5"));
}

TEST_F(GeneralRequests, RefusedNewerCommandIsFollowedByTheOlder) {
  Answer("FF 55 03 00 37 01 C5", "FF 55 04 00 02 04 37 BF");
  Answer("FF 55 02 00 05 F9", "FF 55 04 00 02 00 05 F5");
  EXPECT_EQ(session_.Command_EnterRemoteUIMode(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 00 37 01 C5", "FF 55 02 00 05 F9"));
}

TEST_F(GeneralRequests, UnansweredNewerCommandIsFollowedByTheOlder) {
  Answer("FF 55 02 00 05 F9", "FF 55 04 00 02 00 05 F5");
  EXPECT_EQ(session_.Command_EnterRemoteUIMode(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 00 37 01 C5", "FF 55 03 00 37 01 C5",
                                       "FF 55 03 00 37 01 C5", "FF 55 02 00 05 F9"));
}

TEST_F(GeneralRequests, NewerCommandAcknowledgedUnderAnotherIsFollowedByTheOlder) {
  Answer("FF 55 03 00 37 01 C5", "FF 55 04 00 02 00 03 F7");
  Answer("FF 55 02 00 05 F9", "FF 55 04 00 02 00 05 F5");
  EXPECT_EQ(session_.Command_EnterRemoteUIMode(), 1);
}

TEST_F(GeneralRequests, RemoteUiModeIsNotEnteredWhenBothFail) {
  Answer("FF 55 03 00 37 01 C5", "FF 55 04 00 02 04 37 BF");
  Answer("FF 55 02 00 05 F9", "FF 55 04 00 02 00 37 C3");  // status 0, but for the other command
  EXPECT_EQ(session_.Command_EnterRemoteUIMode(), 0);
}

// ---- Event notifications

class EventNotifications : public GeneralRequests {
 protected:
  int Set() { return session_.Command_SetEventNotification(mask_); }
  unsigned char mask_[8] = {0, 0, 0, 0, 0, 0, 0, 0x0D};
};

TEST_F(EventNotifications, CleanExchangeOfASetReturnsZero) {
  Answer("FF 55 0A 00 49 00 00 00 00 00 00 00 0D A0", "FF 55 04 00 02 00 49 B1");
  EXPECT_EQ(Set(), 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 0A 00 49 00 00 00 00 00 00 00 0D A0"));
}

TEST_F(EventNotifications, RefusedSetReturnsZero) {
  Answer("FF 55 0A 00 49 00 00 00 00 00 00 00 0D A0", "FF 55 04 00 02 04 49 AD");
  EXPECT_EQ(Set(), 0);
}

TEST_F(EventNotifications, UnansweredSetReturnsOne) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Set(), 1); }), kThreeAttemptsUs);
}

TEST_F(EventNotifications, SetOnAClosedPortReturnsOne) {
  session_.Close();
  EXPECT_EQ(Set(), 1);
}

TEST_F(EventNotifications, SupportedOnesAreStored) {
  Answer("FF 55 02 00 4F AF", "FF 55 0A 00 51 01 02 03 04 05 06 07 08 81");
  EXPECT_EQ(session_.Command_GetEventNotification(mask_), 1);
  EXPECT_EQ(test::ToHex(mask_, 8), "01 02 03 04 05 06 07 08");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 4F AF"));
}

TEST_F(EventNotifications, ShortAnswerStoresItsBytesOnly) {
  Answer("FF 55 02 00 4F AF", "FF 55 05 00 51 01 02 03 A4");
  EXPECT_EQ(session_.Command_GetEventNotification(mask_), 1);
  EXPECT_EQ(test::ToHex(mask_, 8), "01 02 03 00 00 00 00 0D");
}

TEST_F(EventNotifications, RejectedGetFailsAndStoresNothing) {
  Answer("FF 55 02 00 4F AF", "FF 55 04 00 02 04 4F A7");
  EXPECT_EQ(session_.Command_GetEventNotification(mask_), 0);
  EXPECT_EQ(test::ToHex(mask_, 8), "00 00 00 00 00 00 00 0D");
}

TEST_F(EventNotifications, UnansweredGetFailsAndStoresNothing) {
  EXPECT_EQ(session_.Command_GetEventNotification(mask_), 0);
  EXPECT_EQ(test::ToHex(mask_, 8), "00 00 00 00 00 00 00 0D");
}

// ---- Maximum payload

TEST_F(GeneralRequests, MaximumPayloadIsKeptInTheSession) {
  EXPECT_EQ(session_.GetMaxPayloadSize(), 0);
  Answer("FF 55 02 00 11 ED", "FF 55 04 00 12 03 F8 EF");
  EXPECT_EQ(session_.Command_RequestMaxPayloadSize(), 1);
  EXPECT_EQ(session_.GetMaxPayloadSize(), 1016);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 11 ED"));
}

TEST_F(GeneralRequests, UnansweredMaximumPayloadLeavesTheOneBefore) {
  Queue("FF 55 04 00 12 03 F8 EF");
  EXPECT_EQ(session_.Command_RequestMaxPayloadSize(), 1);
  EXPECT_EQ(session_.Command_RequestMaxPayloadSize(), 0);
  EXPECT_EQ(session_.GetMaxPayloadSize(), 1016);
}

// A reply buffer that started zeroed: what is missing of the answer is 0.
TEST_F(GeneralRequests, ShortMaximumPayloadIsCompletedByZeros) {
  Answer("FF 55 02 00 11 ED", "FF 55 03 00 12 01 EA");
  EXPECT_EQ(session_.Command_RequestMaxPayloadSize(), 1);
  EXPECT_EQ(session_.GetMaxPayloadSize(), 0x0100);
}

TEST_F(GeneralRequests, MaximumPayloadRejectedBeforeSilenceCountsAsZero) {
  Answer("FF 55 02 00 11 ED", "FF 55 04 00 02 04 11 E5");
  EXPECT_EQ(session_.Command_RequestMaxPayloadSize(), 1);
  EXPECT_EQ(session_.GetMaxPayloadSize(), 0);
}

// ---- Cancelling

class Cancelling : public GeneralRequests {
 protected:
  int OwnIdentifier() { return CIpodCommPeer::OwnTransactionId(session_); }
  // Commands that are left in the response queue.
  std::vector<int> Left() {
    std::vector<int> commands;
    for (int command = 0; (command = session_.PeekNextReadPacket()) != 0xFFFF;) {
      commands.push_back(command);
      tagSERIAL_PACKET packet = {};
      session_.GetNextReadPacket(&packet);
    }
    return commands;
  }
};

TEST_F(Cancelling, TakesTheGivenIdentifierAsTheSessionsOwn) {
  EXPECT_EQ(session_.Command_CancelCommand(0x1234), 1);
  EXPECT_EQ(OwnIdentifier(), 0x1234);
}

TEST_F(Cancelling, SendsItAndStepsWhileIdentifiersAreOn) {
  TurnOnTransactionIds(0x0010);
  EXPECT_EQ(session_.Command_CancelCommand(0x1234), 1);
  EXPECT_EQ(OwnIdentifier(), 0x1235);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 00 50 12 34 66"));
}

TEST_F(Cancelling, StopsAtTheFirstLookAtAnEmptyQueue) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.Command_CancelCommand(1), 1); }),
            20 * kMillisecond + kSecond);
}

TEST_F(Cancelling, DropsAnswersUpToAndWithTheFirstAck) {
  Queue("FF 55 03 00 08 41 B4");
  Queue("FF 55 03 00 08 41 B4");
  Queue("FF 55 04 00 02 00 50 AA");
  Queue("FF 55 04 00 12 03 F8 EF");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.Command_CancelCommand(1), 1); }), 20 * kMillisecond);
  EXPECT_THAT(Left(), ElementsAre(0x12));
}

TEST_F(Cancelling, AckOfAnyCommandAndStatusEndsIt) {
  Queue("FF 55 04 00 02 04 07 EF");
  Queue("FF 55 04 00 02 00 50 AA");
  session_.Command_CancelCommand(1);
  EXPECT_THAT(Left(), ElementsAre(0x02));
}

TEST_F(Cancelling, LooksTenTimes) {
  for (int i = 0; i < 12; ++i) Queue("FF 55 03 00 08 41 B4");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.Command_CancelCommand(1), 1); }), 20 * kMillisecond);
  EXPECT_THAT(Left(), ElementsAre(0x08, 0x08));
}

TEST_F(Cancelling, WaitsForTheAckThatIsOnItsWay) {
  Answer("FF 55 02 00 50 AE", "FF 55 04 00 02 00 50 AA", 300 * kMillisecond);
  const std::int64_t elapsed_us = Elapsed([&] { session_.Command_CancelCommand(1); });
  EXPECT_GT(elapsed_us, 300 * kMillisecond);
  EXPECT_LT(elapsed_us, 400 * kMillisecond);
  EXPECT_THAT(Left(), IsEmpty());
}

TEST_F(Cancelling, SucceedsAlsoWhenTheWriteFailsAndThenDropsNothing) {
  session_.Close();
  Queue("FF 55 04 00 02 00 50 AA");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.Command_CancelCommand(0x1234), 1); }), 0);
  EXPECT_EQ(OwnIdentifier(), 0x1234);
  EXPECT_THAT(Left(), ElementsAre(0x02));
}

}  // namespace

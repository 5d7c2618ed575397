// SPDX-License-Identifier: MIT
// What play-status notifications change in the session, and what they leave alone. Packets are put
// into the notification queue, so each is dealt with at a known tick.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::Packet;
using test::SessionTest;
using ::testing::ElementsAre;

class PlayStatus : public SessionTest {
 protected:
  PlayStatus() {
    // Every field gets a value of its own, so that a change to any of them shows.
    Notify("FF 55 05 04 00 27 06 0B BF");
    Notify("FF 55 08 04 00 27 01 00 00 00 2A A2");
    Notify("FF 55 08 04 00 27 07 00 00 00 4D 79");
    world_.SetTickCount(0xFFFFFFF0);
  }
  void Notify(const char* frame) { Notify(Packet(frame)); }
  void Notify(const tagSERIAL_PACKET& packet) {
    CIpodCommPeer::Notifications(session_).Append(packet);
    world_.Settle();
  }
  // State, position, track index and tick.
  std::vector<std::uint32_t> Status() {
    tagIPOD_PLAY_STATUS status = {};
    EXPECT_EQ(session_.GetPlayStatus(&status), 1);
    return {status.state, status.position, status.track_index, status.tick};
  }
};

TEST_F(PlayStatus, IsWhatTheNotificationsTold) {
  Notify("FF 55 04 04 00 27 55 7C");
  EXPECT_THAT(Status(), ElementsAre(2, 77, 42, 0xFFFFFFF0));
}

TEST_F(PlayStatus, TickIsThatOfTheLastNotification) {
  Notify("FF 55 04 04 00 27 55 7C");
  world_.Advance(20 * kMillisecond);
  EXPECT_THAT(Status(), ElementsAre(2, 77, 42, 0xFFFFFFF0));
  Notify("FF 55 04 04 00 27 55 7C");
  EXPECT_THAT(Status(), ElementsAre(2, 77, 42, 4));
}

TEST_F(PlayStatus, IsWrittenUnderItsLock) {
  world_.Record({"EnterCriticalSection", "GetTickCount", "LeaveCriticalSection"});
  Notify("FF 55 08 04 00 27 04 00 01 00 00 C8");
  EXPECT_THAT(world_.DrainCalls().Of("notification").text(),
              ElementsAre("EnterCriticalSection(section6)", "LeaveCriticalSection(section6)",
                          "EnterCriticalSection(section1)", "GetTickCount()",
                          "LeaveCriticalSection(section1)", "EnterCriticalSection(section6)",
                          "LeaveCriticalSection(section6)"));
}

TEST_F(PlayStatus, IsReadUnderItsLockWithoutWaiting) {
  world_.Record();
  Status();
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section1)", "LeaveCriticalSection(section1)"));
}

struct Row {
  const char* name;
  const char* frame;
  std::uint32_t state;
  std::uint32_t position;
  std::uint32_t track;
};

class Notification : public PlayStatus, public ::testing::WithParamInterface<Row> {};

TEST_P(Notification, ChangesItsFieldAndTheTick) {
  Notify(GetParam().frame);
  EXPECT_THAT(Status(),
              ElementsAre(GetParam().state, GetParam().position, GetParam().track, 0xFFFFFFF0));
}

INSTANTIATE_TEST_SUITE_P(
    WithoutIdentifiers, Notification,
    ::testing::Values(
        Row{"PlaybackStopped", "FF 55 04 04 00 27 00 D1", 0, 77, 42},
        Row{"TrackChanged", "FF 55 08 04 00 27 01 01 02 03 04 C2", 2, 77, 0x01020304},
        Row{"FastForward", "FF 55 04 04 00 27 02 CF", 2, 77, 42},
        Row{"Rewind", "FF 55 04 04 00 27 03 CE", 2, 77, 42},
        Row{"PositionOf65536Milliseconds", "FF 55 08 04 00 27 04 00 01 00 00 C8", 2, 65, 42},
        Row{"PositionOf999Milliseconds", "FF 55 08 04 00 27 04 00 00 03 E7 DF", 2, 0, 42},
        Row{"PositionOf1000Milliseconds", "FF 55 08 04 00 27 04 00 00 03 E8 DE", 2, 1, 42},
        Row{"LargestPosition", "FF 55 08 04 00 27 04 FF FF FF FF CD", 2, 4294967, 42},
        Row{"ChapterChanged", "FF 55 08 04 00 27 05 00 00 00 01 C7", 2, 77, 42},
        Row{"StatusStopped", "FF 55 05 04 00 27 06 02 C8", 0, 77, 42},
        Row{"StatusPlaying", "FF 55 05 04 00 27 06 0A C0", 1, 77, 42},
        Row{"StatusPaused", "FF 55 05 04 00 27 06 0B BF", 2, 77, 42},
        Row{"StatusThree", "FF 55 05 04 00 27 06 03 C7", 2, 77, 42},
        Row{"PositionInSeconds", "FF 55 08 04 00 27 07 00 01 00 02 C3", 2, 0x00010002, 42},
        Row{"UnknownType", "FF 55 08 04 00 27 08 00 00 00 01 C4", 2, 77, 42}),
    test::RowName());

class NotificationWithIdentifier : public Notification {};

TEST_P(NotificationWithIdentifier, IsReadBehindIt) {
  TurnOnTransactionIds(1);
  Notify(GetParam().frame);
  EXPECT_THAT(Status(),
              ElementsAre(GetParam().state, GetParam().position, GetParam().track, 0xFFFFFFF0));
}

INSTANTIATE_TEST_SUITE_P(
    WithIdentifiers, NotificationWithIdentifier,
    ::testing::Values(
        Row{"PlaybackStopped", "FF 55 06 04 00 27 07 06 00 C2", 0, 77, 42},
        Row{"TrackChanged", "FF 55 0A 04 00 27 07 07 01 01 02 03 04 B2", 2, 77, 0x01020304},
        Row{"Position", "FF 55 0A 04 00 27 00 00 04 00 01 00 00 C6", 2, 65, 42},
        Row{"StatusPlaying", "FF 55 07 04 00 27 00 06 06 0A B8", 1, 77, 42},
        Row{"PositionInSeconds", "FF 55 0A 04 00 27 06 0A 07 00 00 00 09 AB", 2, 9, 42}),
    test::RowName());

INSTANTIATE_TEST_SUITE_P(
    LargeForm, Notification,
    ::testing::Values(Row{"TrackChanged", "FF 55 00 00 08 04 00 27 01 01 02 03 04 C2", 2, 77,
                          0x01020304},
                      Row{"Position", "FF 55 00 00 08 04 00 27 04 00 01 00 00 C8", 2, 65, 42},
                      Row{"StatusPlaying", "FF 55 00 00 05 04 00 27 06 0A C0", 1, 77, 42}),
    test::RowName());

INSTANTIATE_TEST_SUITE_P(
    LargeFormWithIdentifiers, NotificationWithIdentifier,
    ::testing::Values(Row{"TrackChanged", "FF 55 00 00 0A 04 00 27 07 07 01 01 02 03 04 B2", 2, 77,
                          0x01020304},
                      Row{"StatusPlaying", "FF 55 00 00 07 04 00 27 00 06 06 0A B8", 1, 77, 42}),
    test::RowName());

// What is missing of a number reads as 0; a missing type is no type.
INSTANTIATE_TEST_SUITE_P(
    CutShort, Notification,
    ::testing::Values(Row{"NoData", "FF 55 03 04 00 27 D2", 2, 77, 42},
                      Row{"NoDataInTheLargeForm", "FF 55 00 00 03 04 00 27 D2", 2, 77, 42},
                      Row{"TrackOfNoBytes", "FF 55 04 04 00 27 01 D0", 2, 77, 0},
                      Row{"TrackOfTwoBytes", "FF 55 06 04 00 27 01 01 02 CB", 2, 77, 0x01020000},
                      Row{"PositionOfThreeBytes", "FF 55 07 04 00 27 04 00 01 00 C9", 2, 65, 42},
                      Row{"SecondsOfOneByte", "FF 55 05 04 00 27 07 01 C8", 2, 0x01000000, 42},
                      Row{"StatusWithoutValue", "FF 55 04 04 00 27 06 CB", 2, 77, 42},
                      Row{"LengthBeyondTheFrame", "FF 55 FF 04 00 27 01 01 02 00", 2, 77,
                          0x01020000}),
    test::RowName());

INSTANTIATE_TEST_SUITE_P(
    CutShortWithIdentifiers, NotificationWithIdentifier,
    ::testing::Values(Row{"NoIdentifier", "FF 55 03 04 00 27 D2", 2, 77, 42},
                      Row{"HalfAnIdentifier", "FF 55 04 04 00 27 00 D1", 2, 77, 42},
                      Row{"IdentifierOnly", "FF 55 05 04 00 27 00 00 D0", 2, 77, 42}),
    test::RowName());

TEST_F(PlayStatus, OfEveryOtherTypeOnlyTheTickChanges) {
  for (int type = 0; type < 256; ++type) {
    if (type == 0x00 || type == 0x01 || type == 0x04 || type == 0x06 || type == 0x07) continue;
    tagSERIAL_PACKET packet = Packet("FF 55 08 04 00 27 00 02 0A 0B 01 00");
    packet.data[6] = static_cast<unsigned char>(type);
    world_.SetTickCount(static_cast<std::uint32_t>(1000 + type));
    Notify(packet);
    ASSERT_THAT(Status(), ElementsAre(2, 77, 42, 1000 + type)) << type;
  }
}

TEST_F(PlayStatus, OfEveryOtherPlaybackStatusOnlyTheTickChanges) {
  for (int status = 0; status < 256; ++status) {
    if (status == 0x02 || status == 0x0A || status == 0x0B) continue;
    tagSERIAL_PACKET packet = Packet("FF 55 05 04 00 27 06 00 00");
    packet.data[7] = static_cast<unsigned char>(status);
    world_.SetTickCount(static_cast<std::uint32_t>(1000 + status));
    Notify(packet);
    ASSERT_THAT(Status(), ElementsAre(2, 77, 42, 1000 + status)) << status;
  }
}

TEST_F(PlayStatus, IsLeftAloneByOtherNotifications) {
  const auto before = Status();
  world_.SetTickCount(1000);
  for (const char* frame :
       {"FF 55 03 00 23 00 DA", "FF 55 03 00 4A 00 B3", "FF 55 02 00 00 FE", "FF 55 02 04 00 FA",
        "FF 55 04 03 00 27 00 D2", "FF 55 03 0C 27 00 CA", "FF 55 04 04 27 00 00 D1"}) {
    Notify(frame);
    EXPECT_EQ(Status(), before) << frame;
  }
}

TEST_F(PlayStatus, FollowsTheLine) {
  Arrive(
      "FF 55 08 04 00 27 01 00 00 00 07 C5 FF 55 08 04 00 27 04 00 00 27 10 92 FF 55 05 04 00 27 "
      "06 0A C0");
  tagIPOD_PLAY_STATUS status = {};
  session_.GetPlayStatus(&status);
  EXPECT_EQ(status.state, 1U);
  EXPECT_EQ(status.position, 10U);
  EXPECT_EQ(status.track_index, 7U);
}

TEST_F(PlayStatus, SurvivesClosingAndOpening) {
  session_.Close();
  EXPECT_EQ(session_.Open(), 0);
  tagIPOD_PLAY_STATUS status = {};
  session_.GetPlayStatus(&status);
  EXPECT_EQ(status.position, 77U);
}

}  // namespace

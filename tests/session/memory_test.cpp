// SPDX-License-Identifier: MIT
// A session while memory is out: nothing is thrown, results and the log say what failed, and it
// works again afterwards.
#include <functional>
#include <new>
#include <optional>

#include "support/packets.h"
#include "support/session_test.h"
#include "world/memory_shortage.h"

namespace {

using ipodcomm::virtual_platform::MemoryShortage;
using test::kMillisecond;
using test::kSecond;
using test::Packet;
using test::SessionTest;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kPacketLost[] = "CIpodComm::ReadPacketThread: Error storing packet: no memory left";

class NoMemory : public SessionTest {
 protected:
  // The port's read thread stores a packet first; the session's routing thread is the second.
  void ArriveWhereOnlyTheSessionHasNoMemory(std::string_view frame) {
    ipod_.Send(test::Hex(frame));
    const MemoryShortage shortage(2);
    world_.Advance(100 * kMillisecond);
    EXPECT_TRUE(shortage.felt());
  }
  void ExpectUsable(CIpodComm& session) {
    Answer("FF 55 02 00 07 F7", "FF 55 05 00 08 41 42 00 70");
    wchar_t name[8] = {};
    EXPECT_EQ(session.Command_RequestIpodName(name, 8), 1);
    EXPECT_STREQ(name, L"AB");
    EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  }
};

TEST_F(NoMemory, AnswerThatCannotBeStoredIsDroppedAndLoggedAndRoutingGoesOn) {
  ArriveWhereOnlyTheSessionHasNoMemory("FF 55 03 00 08 41 B4");
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kPacketLost));
  EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF);
  ExpectUsable(session_);
}

TEST_F(NoMemory, NotificationThatCannotBeStoredIsDroppedAndLoggedAndTheNextIsFollowed) {
  ArriveWhereOnlyTheSessionHasNoMemory("FF 55 08 04 00 27 07 00 00 00 09 BD");
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kPacketLost));
  tagIPOD_PLAY_STATUS status = {};
  session_.GetPlayStatus(&status);
  EXPECT_EQ(status.position, 0U);
  Arrive("FF 55 08 04 00 27 07 00 00 00 0A BC");
  session_.GetPlayStatus(&status);
  EXPECT_EQ(status.position, 10U);
}

// Such a session's lifeline is closed from the start.
TEST_F(NoMemory, AWorkerOfASessionThatWasMadeWithoutAnyEndsAtOnce) {
  std::optional<CIpodComm> session;
  {
    const MemoryShortage shortage;
    session.emplace();
  }
  EXPECT_EQ(CIpodComm::ReadPacketThread(&*session), 0U);
  EXPECT_EQ(CIpodComm::NotificationThread(&*session), 0U);
  test::DrainTraceLog();
}

TEST_F(NoMemory, CopyHasNoneOfThePacketsAndTheSourceKeepsThem) {
  CIpodComm assigned;
  CIpodCommPeer::Responses(session_).Append(Packet("FF 55 03 00 08 41 B4"));
  test::DrainTraceLog();
  {
    const MemoryShortage shortage;
    ASSERT_NO_THROW(assigned = session_);
    ASSERT_NO_THROW(const CIpodComm copy(session_));
  }
  EXPECT_THAT(
      test::DrainTraceLog(),
      Contains("CIpodComm::CIpodComm: Error copying queued packets: no memory left").Times(2));
  EXPECT_EQ(assigned.PeekNextReadPacket(), 0xFFFF);
  EXPECT_EQ(session_.PeekNextReadPacket(), 0x08);
}

// Construction and destruction, with memory out from each of its uses on.
TEST_F(NoMemory, SessionMadeThenLeavesCommandsUnansweredAndCanBeDestroyed) {
  session_.Close();
  alignas(CIpodComm) static unsigned char place[sizeof(CIpodComm)];
  for (unsigned nth = 1;; ++nth) {
    SCOPED_TRACE(nth);
    ASSERT_LT(nth, 100U);
    bool felt = false;
    {
      const MemoryShortage shortage(nth);
      ASSERT_NO_THROW(new (place) CIpodComm);
      felt = shortage.felt();
    }
    auto* made = reinterpret_cast<CIpodComm*>(place);
    wchar_t name[8] = {};
    if (nth == 1) {
      EXPECT_EQ(made->Command_RequestIpodName(name, 8), 0);
    }
    const std::int64_t destroying_us = Elapsed([&] { made->~CIpodComm(); });
    EXPECT_LT(destroying_us, 100 * kMillisecond);
    world_.Advance(2 * kSecond);
    test::DrainTraceLog();
    if (!felt) break;
  }
}

TEST_F(NoMemory, EveryOperationFailsWithoutThrowing) {
  wchar_t text[16] = {};
  unsigned char bytes[16] = {};
  unsigned long number = 0;
  unsigned char mode = 0;
  const std::function<void()> operations[] = {
      [&] { session_.Open(); },
      [&] { session_.Command_RequestIpodName(text, 16); },
      [&] { session_.Command_GetEventNotification(bytes); },
      [&] { session_.Command_ResetDBSelection(); },
      [&] { session_.SelectTop(1, &number, 0); },
      [&] { session_.Select(5, &number, 0); },
      [&] { session_.Command_RetrieveCategorizedDatabaseRecords(0, 1, 1); },
      [&] { session_.GetNextCategorizedRecord(text, 16); },
      [&] { session_.Command_PlayControl(1); },
      [&] { session_.Command_SimplePlayControl(1); },
      [&] { session_.GetPlayInfo(&number, nullptr, text, 16, text, 16, text, 16); },
      [&] { session_.Command_GetIndexedPlayingTrackTitle(0, bytes, sizeof bytes); },
      [&] { session_.Command_GetPreference(3, &mode); },
      [&] { session_.Command_CancelCommand(1); },
      [&] { session_.Close(); },
  };
  for (const auto& operation : operations) {
    const MemoryShortage shortage;
    EXPECT_NO_THROW(operation());
  }
  test::DrainTraceLog();
  world_.Advance(2 * kSecond);
  EXPECT_EQ(session_.Open(), 0);
  ExpectUsable(session_);
}

}  // namespace

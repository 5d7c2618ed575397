// SPDX-License-Identifier: MIT
// What the session tells of its last exchange, under the default and the robust conduct: whether
// the iPod answered, refused or stayed silent, which an operation's 0 does not say.
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::SessionTest;

class LastExchange : public SessionTest, public ::testing::WithParamInterface<tagIPOD_CONDUCT> {
 protected:
  LastExchange() { EXPECT_EQ(session_.SetConduct(&GetParam()), 1); }

  tagIPOD_EXCHANGE Last() {
    tagIPOD_EXCHANGE last = {};
    EXPECT_EQ(session_.GetLastExchange(&last), 1);
    return last;
  }
};

INSTANTIATE_TEST_SUITE_P(Conducts, LastExchange,
                         ::testing::Values(IPOD_CONDUCT_FIELD, IPOD_CONDUCT_ROBUST),
                         [](const auto& conduct) {
                           return conduct.param.robust != 0 ? "Robust" : "Field";
                         });

TEST_P(LastExchange, IsNoneAtFirst) {
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_NONE);
  EXPECT_EQ(session_.GetLastExchange(nullptr), 0);
}

TEST_P(LastExchange, WasAnswered) {
  Answer("FF 55 03 04 00 2C CD", "FF 55 04 04 00 2D 01 CA");
  EXPECT_EQ(session_.Command_GetShuffle(nullptr), 1);
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_ANSWERED);
  EXPECT_EQ(Last().lingo, 4);
  EXPECT_EQ(Last().command, 0x002C);
}

TEST_P(LastExchange, WasRefusedWithTheStatusOfTheAwaitedAck) {
  Answer("FF 55 04 04 00 29 02 CD", "FF 55 06 04 00 01 02 00 29 CA");
  EXPECT_EQ(session_.Command_PlayControl(2), 0);
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_REFUSED);
  EXPECT_EQ(Last().status, 2);
}

TEST_P(LastExchange, WasRefusedWithTheStatusOfAnAckInPlaceOfData) {
  Answer("FF 55 03 00 0F 03 EB", "FF 55 04 00 02 04 0F E7");
  unsigned char major = 0;
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(3, &major, nullptr), 0);
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_REFUSED);
  EXPECT_EQ(Last().status, 4);
}

TEST_P(LastExchange, WasUnanswered) {
  EXPECT_EQ(session_.Command_GetShuffle(nullptr), 0);
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_UNANSWERED);
  EXPECT_EQ(Last().status, 0);
  EXPECT_EQ(Last().command, 0x002C);
  EXPECT_EQ(Last().attempts, 3U);
}

TEST_P(LastExchange, WasDamaged) {
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 06 04 00 19 00 00 3C A1");
  unsigned long count = 0;
  session_.Command_GetNumberCategorizedDBRecords(5, &count);
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_DAMAGED);
  EXPECT_EQ(Last().argument, 5);
  EXPECT_EQ(Last().data_bytes, 3);
  EXPECT_EQ(Last().data[2], 0x3C);
}

TEST_P(LastExchange, BroughtItsOwnBytesBack) {
  TurnOnTransactionIds(0x0102);
  for (const char* frame :
       {"FF 55 05 04 00 2C 01 02 C8", "FF 55 05 04 00 2C 01 03 C7", "FF 55 05 04 00 2C 01 04 C6"}) {
    Answer(frame, frame);
  }
  EXPECT_EQ(session_.Command_GetShuffle(nullptr), 0);
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_ECHOED);
  EXPECT_EQ(Last().carried_id, 1);
}

TEST_P(LastExchange, WasAnsweredThoughItsOwnBytesCameBackToo) {
  Answer("FF 55 03 04 00 2C CD", "FF 55 03 04 00 2C CD FF 55 04 04 00 2D 01 CA");
  EXPECT_EQ(session_.Command_GetShuffle(nullptr), 1);
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_ANSWERED);
}

// The default conduct looks at no clock for it.
TEST_P(LastExchange, TellsHowLongItTookUnderTheRobustConductAlone) {
  Answer("FF 55 03 04 00 2C CD", "FF 55 04 04 00 2D 01 CA", 300 * kMillisecond);
  const std::int64_t took_us = Elapsed([&] { session_.Command_GetShuffle(nullptr); });
  EXPECT_GE(took_us, 320 * kMillisecond);
  EXPECT_EQ(Last().took_ms, GetParam().robust != 0 ? took_us / kMillisecond : 0);
}

TEST_P(LastExchange, LeavesTheSimpleRemoteOut) {
  EXPECT_EQ(session_.Command_SimplePlayControl(1), IPOD_COMM_OK);
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_NONE);
}

}  // namespace

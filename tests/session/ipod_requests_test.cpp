// SPDX-License-Identifier: MIT
// The iPod's own requests, which the notification thread answers while the host does nothing: the
// exact answers, with the identifier that they echo.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::Packet;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kStorageCaps[] =
    "FF 55 18 0C 82 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 FF 01 02 58";

class Requests : public SessionTest {};

struct Row {
  const char* name;
  const char* request;
  std::vector<std::string> answers;
};

class Request : public Requests, public ::testing::WithParamInterface<Row> {};

TEST_P(Request, IsAnswered) {
  Arrive(GetParam().request);
  EXPECT_EQ(DrainSent(), GetParam().answers);
}

INSTANTIATE_TEST_SUITE_P(
    WithoutIdentifiers, Request,
    ::testing::Values(
        Row{"AccessoryInfo", "FF 55 03 00 27 00 D6", {"FF 55 07 00 28 00 00 00 00 F3 DE"}},
        Row{"AccessoryInfoWithoutType", "FF 55 02 00 27 D7", {}},
        Row{"StorageCaps", "FF 55 02 0C 81 71", {kStorageCaps}},
        Row{"StorageCapsWithData", "FF 55 04 0C 81 04 05 66", {kStorageCaps}},
        Row{"SportsCaps", "FF 55 02 09 03 F2", {"FF 55 05 09 04 02 00 00 EC"}},
        Row{"StateChange", "FF 55 03 00 23 02 D8", {}},
        Row{"IpodNotification", "FF 55 04 00 4A 02 00 B0", {}},
        Row{"PlayStatusChange", "FF 55 04 04 00 27 00 D1", {}},
        // The notification thread takes large requests' data from byte 8 on: 01 is the second byte.
        Row{"LargeAccessoryInfo",
            "FF 55 00 00 04 00 27 01 00 D4",
            {"FF 55 07 00 28 00 00 00 00 F3 DE"}},
        Row{"LargeAccessoryInfoOfOneByte", "FF 55 00 00 03 00 27 00 D6", {}},
        Row{"LargeSportsCaps", "FF 55 00 00 02 09 03 F2", {"FF 55 05 09 04 02 00 00 EC"}},
        Row{"LargeStorageCaps", "FF 55 00 00 02 0C 81 71", {kStorageCaps}}),
    test::RowName());

class RequestWithIdentifier : public Request {};

TEST_P(RequestWithIdentifier, IsAnsweredUnderIt) {
  TurnOnTransactionIds(0x0100);
  Arrive(GetParam().request);
  EXPECT_EQ(DrainSent(), GetParam().answers);
}

INSTANTIATE_TEST_SUITE_P(
    WithIdentifiers, RequestWithIdentifier,
    ::testing::Values(
        // RetAccessoryInfo never carries an identifier.
        Row{"AccessoryInfo", "FF 55 05 00 27 00 07 00 CD", {"FF 55 07 00 28 00 00 00 00 F3 DE"}},
        Row{"StorageCaps",
            "FF 55 04 0C 81 12 34 29",
            {"FF 55 1A 0C 82 12 34 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 FF 01 "
             "02 10"}},
        Row{"SportsCaps", "FF 55 04 09 03 00 01 EF", {"FF 55 07 09 04 00 01 02 00 00 E9"}},
        Row{"SportsCapsTwice",
            "FF 55 04 09 03 00 01 EF FF 55 04 09 03 FF FF F2",
            {"FF 55 07 09 04 00 01 02 00 00 E9", "FF 55 07 09 04 FF FF 02 00 00 EC"}},
        // The identifier of a large request is taken from bytes 5 and 6, lingo and command.
        Row{"LargeSportsCaps",
            "FF 55 00 00 04 09 03 00 01 EF",
            {"FF 55 07 09 04 09 03 02 00 00 DE"}}),
    test::RowName());

// Two that are routed before the first is answered.
class RequestsReadTogether : public Requests {
 protected:
  std::vector<std::string> AnswersUnder(const tagIPOD_CONDUCT& conduct) {
    EXPECT_EQ(session_.SetConduct(&conduct), 1);
    TurnOnTransactionIds(0x0100);
    for (const char* request : {"FF 55 04 09 03 00 01 EF", "FF 55 04 09 03 FF FF F2"}) {
      (session_.*CIpodCommPeer::kRoutePacket)(Packet(request));
    }
    world_.Advance(500 * kMillisecond);
    return DrainSent();
  }
};

TEST_F(RequestsReadTogether, AreEachAnsweredUnderTheirOwnIdentifierUnderRobustAndFast) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    EXPECT_THAT(AnswersUnder(conduct), ElementsAre("FF 55 07 09 04 00 01 02 00 00 E9",
                                                   "FF 55 07 09 04 FF FF 02 00 00 EC"));
  }
}

TEST_F(RequestsReadTogether, AreBothAnsweredUnderTheIdentifierOfTheLastByDefault) {
  EXPECT_THAT(AnswersUnder(IPOD_CONDUCT_FIELD),
              ElementsAre("FF 55 07 09 04 FF FF 02 00 00 EC", "FF 55 07 09 04 FF FF 02 00 00 EC"));
}

TEST_F(Requests, AnswerStepsTheOwnIdentifierThoughItEchoes) {
  TurnOnTransactionIds(0x0100);
  Arrive("FF 55 04 09 03 00 01 EF");
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0x0101);
  // A request that is not behind steps it once more.
  Arrive("FF 55 04 09 03 02 00 EE");
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0x0103);
}

TEST_F(Requests, AnswerWithoutIdentifierDoesNotStepTheOwnOne) {
  TurnOnTransactionIds(0x0100);
  Arrive("FF 55 05 00 27 00 01 00 D3");
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0x0100);
}

TEST_F(Requests, StorageAnswerStartsTheWriteOffsetOver) {
  CIpodCommPeer::StorageWriteOffset(session_) = 77;
  Arrive("FF 55 02 0C 81 71");
  EXPECT_EQ(CIpodCommPeer::StorageWriteOffset(session_), 0U);
}

TEST_F(Requests, SportsVersionIsAskedForInVainWhileNothingIsAwaited) {
  Arrive("FF 55 02 09 01 F4");
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(session_.PeekNextReadPacket(), 0x01);
}

TEST_F(Requests, FailedAnswerIsForgotten) {
  world_.FailOnce("WriteFile", 1, 31, "notification");
  Arrive("FF 55 02 09 03 F2");
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  Arrive("FF 55 02 09 03 F2");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 09 04 02 00 00 EC"));
}

TEST_F(Requests, ClosedPortLeavesThemUnanswered) {
  session_.Close();
  DrainSent();
  CIpodCommPeer::Notifications(session_).Append(Packet("FF 55 02 09 03 F2"));
  world_.Advance(100 * kMillisecond);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Requests, AnswersComeInTheOrderOfTheRequests) {
  Arrive("FF 55 02 09 03 F2 FF 55 03 00 27 00 D6 FF 55 02 0C 81 71 FF 55 02 09 03 F2");
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 05 09 04 02 00 00 EC", "FF 55 07 00 28 00 00 00 00 F3 DE",
                          kStorageCaps, "FF 55 05 09 04 02 00 00 EC"));
}

// ---- Under the robust conduct -------------------------------------------------------------------

class RobustRequests : public Requests {
 protected:
  RobustRequests() { EXPECT_EQ(session_.SetConduct(&IPOD_CONDUCT_ROBUST), 1); }
};

TEST_F(RobustRequests, LargeOnesAreReadWhereTheirDataAre) {
  Arrive("FF 55 00 00 03 00 27 00 D6");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 00 28 00 00 00 00 F3 DE"));
}

TEST_F(RobustRequests, LargeOnesAreAnsweredUnderTheirIdentifiers) {
  TurnOnTransactionIds(0x0100);
  Arrive("FF 55 00 00 04 09 03 12 34 AA");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 09 04 12 34 02 00 00 A4"));
}

TEST_F(RobustRequests, AskingForStorageCapsLeavesTheWriteOffset) {
  CIpodCommPeer::StorageWriteOffset(session_) = 500;
  Arrive("FF 55 02 0C 81 71");
  EXPECT_THAT(DrainSent(), ElementsAre(kStorageCaps));
  EXPECT_EQ(CIpodCommPeer::StorageWriteOffset(session_), 500U);
}

TEST_F(Requests, AskingForStorageCapsStartsTheWriteOffsetOverByDefault) {
  CIpodCommPeer::StorageWriteOffset(session_) = 500;
  Arrive("FF 55 02 0C 81 71");
  EXPECT_EQ(CIpodCommPeer::StorageWriteOffset(session_), 0U);
}

}  // namespace

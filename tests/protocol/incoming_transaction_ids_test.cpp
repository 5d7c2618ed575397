// SPDX-License-Identifier: MIT
// Transaction identifiers of what the iPod sends: skipped in its answers, kept from its requests,
// and what either does to the session's own.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::SessionTest;

class IncomingIds : public SessionTest {
 protected:
  int OwnIdentifier() { return CIpodCommPeer::OwnTransactionId(session_); }
  int Slot(int lingo) { return CIpodCommPeer::IpodTransactionId(session_, lingo); }
};

// ---- Answers

TEST_F(IncomingIds, AreSkippedInAnswers) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 04 00 07 00 10 E5", "FF 55 06 00 08 00 10 41 42 5F");
  wchar_t name[300] = {};
  EXPECT_EQ(session_.Command_RequestIpodName(name, 300), 1);
  EXPECT_EQ(std::wstring(name), L"AB");
  EXPECT_EQ(OwnIdentifier(), 0x0011);
}

// General answers are not compared: another identifier is skipped just as well.
TEST_F(IncomingIds, AreNotComparedInGeneralAnswers) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 04 00 07 00 10 E5", "FF 55 06 00 08 98 76 41 42 61");
  wchar_t name[300] = {};
  EXPECT_EQ(session_.Command_RequestIpodName(name, 300), 1);
  EXPECT_EQ(std::wstring(name), L"AB");
}

TEST_F(IncomingIds, StayInTheDataWhileIdentifiersAreOff) {
  Answer("FF 55 02 00 07 F7", "FF 55 06 00 08 41 42 43 44 E8");
  wchar_t name[300] = {};
  EXPECT_EQ(session_.Command_RequestIpodName(name, 300), 1);
  EXPECT_EQ(std::wstring(name), L"ABCD");
}

TEST_F(IncomingIds, AnAckOfTwoDataBytesHasNone) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 02 00 03 FB", "FF 55 04 00 02 00 03 F7");
  EXPECT_EQ(session_.Command_RequestRemoteUIMode(), 1);
  EXPECT_EQ(OwnIdentifier(), 0x0010);
}

TEST_F(IncomingIds, AnAckOfTwoDataBytesStillTellsARefusal) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 02 00 03 FB", "FF 55 04 00 02 04 03 F3");
  EXPECT_EQ(session_.Command_RequestRemoteUIMode(), 0);
}

TEST_F(IncomingIds, AnAckOfFourDataBytesHasOne) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 02 00 03 FB", "FF 55 06 00 02 12 34 00 03 AF");
  EXPECT_EQ(session_.Command_RequestRemoteUIMode(), 1);
}

TEST_F(IncomingIds, OtherAnswersOfTwoDataBytesAreAllIdentifier) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 04 00 11 00 10 DB", "FF 55 04 00 12 02 00 E8");
  EXPECT_EQ(session_.Command_RequestMaxPayloadSize(), 1);
  EXPECT_EQ(session_.GetMaxPayloadSize(), 0);
}

// ---- Large form

TEST_F(IncomingIds, AnswersMayHaveTheLargeForm) {
  Answer("FF 55 02 00 07 F7", "FF 55 00 00 04 00 08 41 42 71");
  wchar_t name[300] = {};
  EXPECT_EQ(session_.Command_RequestIpodName(name, 300), 1);
  EXPECT_EQ(std::wstring(name), L"AB");
}

TEST_F(IncomingIds, AreSkippedInLargeAnswers) {
  TurnOnTransactionIds(0x0010);
  Answer("FF 55 04 00 07 00 10 E5", "FF 55 00 00 06 00 08 00 10 41 42 5F");
  wchar_t name[300] = {};
  EXPECT_EQ(session_.Command_RequestIpodName(name, 300), 1);
  EXPECT_EQ(std::wstring(name), L"AB");
}

// ---- Requests

struct RequestRow {
  const char* name;
  const char* frame;  // identifier 0x0200
  int lingo;
};

class Request : public IncomingIds, public ::testing::WithParamInterface<RequestRow> {
 protected:
  // Has the request arrive while the session's own identifier is `own`; returns the own identifier
  // as the answer, if there is one, found it.
  int OwnAfter(int own) {
    CIpodCommPeer::OwnTransactionId(session_) = static_cast<std::uint16_t>(own);
    (session_.*CIpodCommPeer::kRoutePacket)(test::Packet(GetParam().frame));
    return OwnIdentifier();
  }
};

TEST_P(Request, IsKeptInTheSlotOfItsLingoAndNoOther) {
  OwnAfter(0x0100);
  for (int lingo = 0; lingo < 13; ++lingo) {
    EXPECT_EQ(Slot(lingo), lingo == GetParam().lingo ? 0x0200 : 0) << lingo;
  }
}

// One step, not a jump behind the iPod's: the two counters are not resynchronised.
TEST_P(Request, StepsTheOwnIdentifierByOneWhenItIsNotAhead) {
  EXPECT_EQ(OwnAfter(0x0000), 0x0001);
  EXPECT_EQ(OwnAfter(0x01FF), 0x0200);
  EXPECT_EQ(OwnAfter(0x0200), 0x0201);
}

TEST_P(Request, LeavesAnOwnIdentifierThatIsAhead) {
  EXPECT_EQ(OwnAfter(0x0201), 0x0201);
  EXPECT_EQ(OwnAfter(0xFFFF), 0xFFFF);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Request,
    ::testing::Values(RequestRow{"GetAccessoryInfo", "FF 55 05 00 27 02 00 00 D2", 0x00},
                      RequestRow{"StorageCaps", "FF 55 04 0C 81 02 00 6D", 0x0C},
                      RequestRow{"SportsCaps", "FF 55 04 09 03 02 00 EE", 0x09},
                      RequestRow{"IpodNotification", "FF 55 05 00 4A 02 00 00 AF", 0x00}),
    test::RowName());

TEST_F(IncomingIds, OwnIdentifierWrapsOnARequest) {
  CIpodCommPeer::OwnTransactionId(session_) = 0xFFFF;
  (session_.*CIpodCommPeer::kRoutePacket)(test::Packet("FF 55 05 00 27 FF FF 00 D6"));
  EXPECT_EQ(OwnIdentifier(), 0x0000);
}

struct OtherRow {
  const char* name;
  const char* frame;
};

class NoRequest : public IncomingIds, public ::testing::WithParamInterface<OtherRow> {};

TEST_P(NoRequest, LeavesSlotsAndOwnIdentifier) {
  (session_.*CIpodCommPeer::kRoutePacket)(test::Packet(GetParam().frame));
  EXPECT_EQ(OwnIdentifier(), 0);
  for (int lingo = 0; lingo < 13; ++lingo) EXPECT_EQ(Slot(lingo), 0) << lingo;
}

INSTANTIATE_TEST_SUITE_P(
    Of, NoRequest,
    ::testing::Values(OtherRow{"PlayStatusNotification", "FF 55 05 04 00 27 02 00 CE"},
                      OtherRow{"StateChange", "FF 55 05 00 23 02 00 00 D6"},
                      OtherRow{"SportsVersion", "FF 55 04 09 01 02 00 F0"},
                      OtherRow{"Ack", "FF 55 06 00 02 02 00 00 07 EF"},
                      OtherRow{"LingoBeyondTheSlots", "FF 55 04 20 27 02 00 B3"}),
    test::RowName());

// The whole way: the iPod asks, and the answer echoes its identifier.
TEST_F(IncomingIds, SportsCapsAreAnsweredUnderTheIdentifierOfTheRequest) {
  TurnOnTransactionIds(0x0005);
  Arrive("FF 55 04 09 03 77 66 13");
  EXPECT_EQ(Slot(9), 0x7766);
  const auto sent = DrainSent();
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].substr(9, 11), "09 04 77 66");
  EXPECT_EQ(OwnIdentifier(), 0x0007);  // one step for the request, one for the answer
}

}  // namespace

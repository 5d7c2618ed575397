// SPDX-License-Identifier: MIT
// Frames as they go out: their bytes with and without transaction identifier, what carries one,
// how the own identifier steps, and what does not fit a frame.
#include <algorithm>
#include <iterator>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::Bytes;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Transmit : public SessionTest {
 protected:
  tagIPOD_COMM_ERROR Write(std::uint8_t lingo, std::uint16_t command, const Bytes& data) {
    tagIPOD_WRITE_PARAMS write = {command, lingo, data.data(),
                                  static_cast<std::uint32_t>(data.size())};
    return session_.WriteCommand(&write);
  }
  int OwnIdentifier() { return CIpodCommPeer::OwnTransactionId(session_); }
};

struct Row {
  const char* name;
  int lingo;
  int command;
  const char* data;
  const char* plain;
  const char* with_identifier;  // 0x1234 is next, and the iPod's last one of every lingo is 0xABCD
  bool steps;
};

class Frame : public Transmit, public ::testing::WithParamInterface<Row> {
 protected:
  tagIPOD_COMM_ERROR WriteRow() {
    return Write(static_cast<std::uint8_t>(GetParam().lingo),
                 static_cast<std::uint16_t>(GetParam().command), test::Hex(GetParam().data));
  }
};

TEST_P(Frame, GoesOutWithoutIdentifier) {
  EXPECT_EQ(WriteRow(), IPOD_COMM_OK);
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().plain));
  EXPECT_EQ(OwnIdentifier(), 0);
}

TEST_P(Frame, GoesOutWithIdentifier) {
  TurnOnTransactionIds(0x1234);
  auto& slots = CIpodCommPeer::IpodTransactionIds(session_);
  std::fill(std::begin(slots), std::end(slots), std::uint16_t{0xABCD});
  EXPECT_EQ(WriteRow(), IPOD_COMM_OK);
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().with_identifier));
  EXPECT_EQ(OwnIdentifier(), GetParam().steps ? 0x1235 : 0x1234);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Frame,
    ::testing::Values(
        Row{"General", 0x00, 0x07, "", "FF 55 02 00 07 F7", "FF 55 04 00 07 12 34 AF", true},
        Row{"GeneralWithData", 0x00, 0x0F, "04", "FF 55 03 00 0F 04 EA",
            "FF 55 05 00 0F 12 34 04 A2", true},
        Row{"Extended", 0x04, 0x0016, "", "FF 55 03 04 00 16 E3", "FF 55 05 04 00 16 12 34 9B",
            true},
        Row{"ExtendedHighCommandByte", 0x04, 0x1234, "56", "FF 55 04 04 12 34 56 5C",
            "FF 55 06 04 12 34 12 34 56 14", true},
        Row{"DisplayRemote", 0x03, 0x12, "01 02", "FF 55 04 03 12 01 02 E4",
            "FF 55 06 03 12 12 34 01 02 9C", true},
        Row{"SimpleRemote", 0x02, 0x00, "01", "FF 55 03 02 00 01 FA", "FF 55 05 02 00 12 34 01 B2",
            true},
        Row{"HighCommandByteOfAOneByteLingoIsLost", 0x0C, 0x0112, "", "FF 55 02 0C 12 E0",
            "FF 55 04 0C 12 12 34 98", true},
        Row{"IdentifyDeviceLingoes", 0x00, 0x13, "00", "FF 55 03 00 13 00 EA",
            "FF 55 03 00 13 00 EA", false},
        Row{"RetAccessoryInfo", 0x00, 0x28, "00", "FF 55 03 00 28 00 D5", "FF 55 03 00 28 00 D5",
            false},
        Row{"RequestRemoteUiMode", 0x00, 0x03, "", "FF 55 02 00 03 FB", "FF 55 02 00 03 FB", false},
        Row{"ExtendedThirteen", 0x04, 0x0013, "", "FF 55 03 04 00 13 E6",
            "FF 55 05 04 00 13 12 34 9E", true},
        Row{"ExtendedTwentyEight", 0x04, 0x0028, "", "FF 55 03 04 00 28 D1",
            "FF 55 05 04 00 28 12 34 89", true},
        Row{"DisplayRemoteThree", 0x03, 0x03, "", "FF 55 02 03 03 F8", "FF 55 04 03 03 12 34 B0",
            true},
        Row{"SportsTwentyEight", 0x09, 0x28, "", "FF 55 02 09 28 CD", "FF 55 04 09 28 12 34 85",
            true},
        Row{"StorageThirteen", 0x0C, 0x13, "", "FF 55 02 0C 13 DF", "FF 55 04 0C 13 12 34 97",
            true},
        Row{"SportsCapsEchoTheRequest", 0x09, 0x04, "02", "FF 55 03 09 04 02 EE",
            "FF 55 05 09 04 AB CD 02 74", true},
        Row{"StorageCapsEchoTheRequest", 0x0C, 0x82, "02", "FF 55 03 0C 82 02 6D",
            "FF 55 05 0C 82 AB CD 02 F3", true},
        Row{"SportsVersionDoesNotEcho", 0x09, 0x02, "01 01", "FF 55 04 09 02 01 01 EF",
            "FF 55 06 09 02 12 34 01 01 A7", true},
        Row{"StorageFourDoesNotEcho", 0x0C, 0x04, "", "FF 55 02 0C 04 EE",
            "FF 55 04 0C 04 12 34 A6", true},
        Row{"ExtendedFourDoesNotEcho", 0x04, 0x0004, "", "FF 55 03 04 00 04 F5",
            "FF 55 05 04 00 04 12 34 AD", true},
        Row{"LingoBeyondTheSlots", 0x20, 0x04, "", "FF 55 02 20 04 DA", "FF 55 04 20 04 12 34 92",
            true}),
    test::RowName());

TEST_F(Transmit, EchoedIdentifierOfRetAccessoryInfoIsThatOfItsLingo) {
  TurnOnTransactionIds(0x1234);
  CIpodCommPeer::IpodTransactionIds(session_)[0] = 0xABCD;
  unsigned char bytes[2] = {};
  (session_.*CIpodCommPeer::kAddTransactionID)(bytes, 0x00, 0x28);
  EXPECT_EQ(test::ToHex(bytes, 2), "AB CD");
  (session_.*CIpodCommPeer::kAddTransactionID)(bytes, 0x00, 0x27);
  EXPECT_EQ(test::ToHex(bytes, 2), "12 34");
}

TEST_F(Transmit, ConsecutiveCommandsCarryConsecutiveIdentifiersAndWrap) {
  TurnOnTransactionIds(0xFFFE);
  for (int i = 0; i < 3; ++i) Write(0x00, 0x07, {});
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 00 07 FF FE F8", "FF 55 04 00 07 FF FF F7",
                                       "FF 55 04 00 07 00 00 F5"));
  EXPECT_EQ(OwnIdentifier(), 1);
}

struct LimitRow {
  const char* name;
  int lingo;
  bool with_identifier;
  std::size_t most;  // data bytes of the longest frame
};

class Limit : public Transmit, public ::testing::WithParamInterface<LimitRow> {};

TEST_P(Limit, IsALengthByteOf255) {
  const auto [name, lingo, with_identifier, most] = GetParam();
  if (with_identifier) TurnOnTransactionIds(5);
  EXPECT_EQ(Write(static_cast<std::uint8_t>(lingo), 0x55, Bytes(most, 0xA5)), IPOD_COMM_OK);
  EXPECT_EQ(OwnIdentifier(), with_identifier ? 6 : 0);
  const auto sent = DrainSent();
  ASSERT_EQ(sent.size(), 1U);
  EXPECT_EQ(sent[0].size(), 259U * 3 - 1);
  EXPECT_EQ(sent[0].substr(0, 8), "FF 55 FF");
}

TEST_P(Limit, RefusesOneByteMoreBeforeAnythingIsSent) {
  const auto [name, lingo, with_identifier, most] = GetParam();
  if (with_identifier) TurnOnTransactionIds(5);
  const Bytes data(most + 1, 0xA5);
  // C++17 lets no lambda capture a structured binding.
  EXPECT_EQ(Elapsed([&, to = static_cast<std::uint8_t>(lingo)] {
              EXPECT_EQ(Write(to, 0x55, data), IPOD_COMM_NO_ANSWER);
            }),
            0);
  EXPECT_EQ(OwnIdentifier(), with_identifier ? 5 : 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Of, Limit,
                         ::testing::Values(LimitRow{"OneByteCommand", 0x00, false, 253},
                                           LimitRow{"Extended", 0x04, false, 252},
                                           LimitRow{"OneByteCommandWithIdentifier", 0x0C, true,
                                                    251},
                                           LimitRow{"ExtendedWithIdentifier", 0x04, true, 250}),
                         test::RowName());

TEST_F(Transmit, AbsurdLengthsAreRefusedUnread) {
  for (const std::uint32_t length : {256U, 1023U, 65536U, 0x7FFFFFFFU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
    tagIPOD_WRITE_PARAMS write = {0x07, 0x00, nullptr, length};
    EXPECT_EQ(session_.WriteCommand(&write), IPOD_COMM_NO_ANSWER) << length;
  }
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Transmit, RefusedPayloadIsNotRetriedOnTheLine) {
  const Bytes data(254, 0);
  tagIPOD_WRITE_PARAMS write = {0x07, 0x00, data.data(), 254};
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = 0x08;
  read.retries = 3;
  EXPECT_EQ(Elapsed([&] {
              EXPECT_EQ(session_.WriteReadCommand(&write, &read), IPOD_COMM_RETRIES_EXHAUSTED);
            }),
            0);
}

TEST_F(Transmit, FrameIsBuiltUnderOneLockAndSentUnderTheOther) {
  world_.Record({"EnterCriticalSection", "LeaveCriticalSection", "WriteFile", "Sleep"});
  Write(0x00, 0x07, {});
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section5)", "LeaveCriticalSection(section5)",
                          "EnterCriticalSection(section3)", "WriteFile(port2, FF)", "Sleep(20)",
                          "WriteFile(port2, 55 02 00 07 F7)", "LeaveCriticalSection(section3)"));
}

TEST_F(Transmit, RobustFrameKeepsTheNumberingUntilItHasLeft) {
  EXPECT_EQ(session_.SetConduct(&IPOD_CONDUCT_ROBUST), 1);
  world_.Record({"EnterCriticalSection", "LeaveCriticalSection", "WriteFile", "Sleep"});
  Write(0x00, 0x07, {});
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section5)", "EnterCriticalSection(section3)",
                          "WriteFile(port2, FF)", "Sleep(20)", "WriteFile(port2, 55 02 00 07 F7)",
                          "LeaveCriticalSection(section3)", "LeaveCriticalSection(section5)"));
}

// The notification thread may be building an answer at that moment.
TEST_F(Transmit, OwnIdentifierIsSetUnderTheLockUnderWhichFramesAreBuilt) {
  world_.Record({"EnterCriticalSection", "CreateFileW"});
  EXPECT_EQ(session_.Open(), 0);
  const auto opening = world_.DrainCalls().Of("host").text();
  const auto create = std::find_if(opening.begin(), opening.end(), [](const std::string& call) {
    return call.substr(0, 11) == "CreateFileW";
  });
  EXPECT_NE(std::find(opening.begin(), create, "EnterCriticalSection(section5)"), create);

  session_.Command_CancelCommand(0x1234);
  const auto cancelling = world_.DrainCalls().Of("host").text();
  // Once for the identifier, once for the frame.
  EXPECT_EQ(std::count(cancelling.begin(), cancelling.end(), "EnterCriticalSection(section5)"), 2);
}

TEST_F(Transmit, FailedWriteIsToldButTheIdentifierHasStepped) {
  for (const unsigned nth : {1U, 2U}) {
    TurnOnTransactionIds(7);
    world_.FailOnce("WriteFile", nth, 31);
    EXPECT_EQ(Write(0x00, 0x07, {}), IPOD_COMM_NO_ANSWER);
    EXPECT_EQ(OwnIdentifier(), 8);
  }
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Transmit, ClosedPortRefusesCommands) {
  session_.Close();
  EXPECT_EQ(Write(0x00, 0x07, {}), IPOD_COMM_NO_ANSWER);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

}  // namespace

// SPDX-License-Identifier: MIT
// What the accessory answers when the iPod asks about it, and what the host's setters store. The
// iPod's requests arrive on the line and are answered by the notification thread; where the line
// cannot carry a case the answering member is called itself.
#include <cstring>
#include <string>

#include "identify/identification.h"
#include "platform/services.h"

namespace {

using test::SessionTest;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Peer = CIpodCommPeer;

class AccessoryInfo : public SessionTest {
 protected:
  AccessoryInfo() { world_.SetFileVersion(L"qz104.exe", L"2,5,0,17"); }

  // Whether the identification event has been signalled; takes the signal.
  bool ConsumeSignal() {
    return WaitForSingleObject(Peer::IdentificationEvent(session_), 0) == WAIT_OBJECT_0;
  }
  void Return(test::Bytes request) {
    (session_.*Peer::kReturn_AccessoryInfo)(request.data(), request.size());
  }
};

struct Row {
  std::string name;
  const char* request;
  const char* answer;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

class InfoTypes : public AccessoryInfo, public ::testing::WithParamInterface<Row> {};

TEST_P(InfoTypes, AreAnswered) {
  session_.SetModel("QZ");
  Arrive(GetParam().request);
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().answer));
}

INSTANTIATE_TEST_SUITE_P(
    Answered, InfoTypes,
    ::testing::Values(Row{"Capabilities", "FF 55 03 00 27 00 D6",
                          "FF 55 07 00 28 00 00 00 00 F3 DE"},
                      Row{"Name", "FF 55 03 00 27 01 D5",
                          "FF 55 10 00 28 01 4F 72 76 69 61 6E 20 54 6F 75 63 68 00 35"},
                      Row{"Firmware", "FF 55 03 00 27 04 D2", "FF 55 06 00 28 04 02 05 00 C7"},
                      Row{"Hardware", "FF 55 03 00 27 05 D1", "FF 55 06 00 28 05 02 05 00 C6"},
                      Row{"Manufacturer", "FF 55 03 00 27 06 D0",
                          "FF 55 12 00 28 06 4F 72 76 69 61 6E 20 46 69 74 6E 65 73 73 00 55"},
                      Row{"ModelNumber", "FF 55 03 00 27 07 CF", "FF 55 06 00 28 07 51 5A 00 20"}),
    test::RowName());

TEST_F(AccessoryInfo, EveryOtherTypeIsLeftUnanswered) {
  for (unsigned type = 0; type <= 0xFF; ++type) {
    if (type <= 7 && type != 2 && type != 3) continue;
    Return({static_cast<std::uint8_t>(type)});
  }
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_FALSE(ConsumeSignal());
  // Each of them has read the version all the same.
  EXPECT_EQ(world_.call_count("VerQueryValueW"), 250U);
}

TEST_F(AccessoryInfo, RequestForTheSerialNumberProducesNoFrame) {
  Arrive("FF 55 03 00 27 08 CE");
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(AccessoryInfo, RequestWithoutATypeIsIgnored) {
  Arrive("FF 55 02 00 27 D7");
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(world_.call_count("GetFileVersionInfoSizeW"), 0U);
}

TEST_F(AccessoryInfo, BytesBehindTheTypeDoNotCount) {
  Arrive("FF 55 05 00 27 07 01 02 CA");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 00 28 07 00 CD"));
}

TEST_F(AccessoryInfo, EmptyModelIsAnsweredAndSignalled) {
  EXPECT_FALSE(ConsumeSignal());
  Arrive("FF 55 03 00 27 07 CF");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 00 28 07 00 CD"));
  EXPECT_TRUE(ConsumeSignal());
}

TEST_F(AccessoryInfo, OnlyTheModelNumberIsSignalled) {
  for (const std::uint8_t type : test::Hex("00 01 04 05 06 08")) {
    Return({type});
    EXPECT_FALSE(ConsumeSignal()) << int{type};
  }
}

TEST_F(AccessoryInfo, SignalFollowsTheAnswer) {
  world_.Record({"WriteFile", "EventModify"});
  Return({7});
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("WriteFile(port2, FF)", "WriteFile(port2, 55 04 00 28 07 00 CD)",
                          ::testing::HasSubstr("EventModify(")));
}

TEST_F(AccessoryInfo, LastModelSetIsTold) {
  session_.SetModel("first and longer");
  session_.SetModel("A1");
  Arrive("FF 55 03 00 27 07 CF");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 06 00 28 07 41 31 00 59"));
}

TEST_F(AccessoryInfo, LongestModelFillsTheFrame) {
  session_.SetModel(std::string(251, 'M'));
  Return({7});
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 FF 00 28 07 " + test::Repeated("4D", 251) + " 00 53"));
}

TEST_F(AccessoryInfo, ModelThatFitsNoFrameIsNotSentButSignalled) {
  for (const std::size_t length : {252, 520, 521, 100000}) {
    session_.SetModel(std::string(length, 'M'));
    Return({7});
    EXPECT_THAT(DrainSent(), IsEmpty());
    EXPECT_TRUE(ConsumeSignal());
    EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  }
}

TEST_F(AccessoryInfo, ModelMayHoldTerminators) {
  session_.SetModel(std::string("Q\0Z", 3));
  Return({7});
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 00 28 07 51 00 5A 00 1F"));
}

TEST_F(AccessoryInfo, FailedWriteIsNotReportedAndSignalledAllTheSame) {
  world_.FailFrom("WriteFile", 1, 31);
  Return({7});
  world_.ClearFaults();
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_TRUE(ConsumeSignal());
}

TEST_F(AccessoryInfo, AnswerIsBuiltInAHeapBlockThatGoesBackAfterTheWrite) {
  session_.SetModel("QZ");
  world_.Record({"LocalAlloc", "LocalFree", "WriteFile"});
  Return({7});
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("LocalAlloc(64, 4)", "WriteFile(port2, FF)",
                          "WriteFile(port2, 55 06 00 28 07 51 5A 00 20)", "LocalFree(block1)"));
}

TEST_F(AccessoryInfo, WithoutMemoryNothingIsSentAndTheSignalComesAllTheSame) {
  world_.FailFrom("LocalAlloc", 1, 8);
  for (const std::uint8_t type : test::Hex("00 01 04 05 06 07")) Return({type});
  world_.ClearFaults();
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_TRUE(ConsumeSignal());
}

TEST_F(AccessoryInfo, VersionIsReadForEveryRequest) {
  Arrive("FF 55 03 00 27 04 D2");
  world_.SetFileVersion(L"qz104.exe", L"3,7,0,1");
  Arrive("FF 55 03 00 27 04 D2");
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 06 00 28 04 02 05 00 C7", "FF 55 06 00 28 04 03 07 00 C4"));
}

TEST_F(AccessoryInfo, UnreadableVersionIsToldAndTheAnswerStillGoesOut) {
  world_.SetFileVersion(L"qz104.exe", L"");
  Arrive("FF 55 03 00 27 05 D1");
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Failed to extract file version from qz104.exe!\r\n"));
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 06 00 28 05 00 00 00 CD"));
}

TEST_F(AccessoryInfo, UnreadableVersionDoesNotKeepTheNameBack) {
  world_.SetFileVersion(L"qz104.exe", L"");
  Arrive("FF 55 03 00 27 00 D6");
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Failed to extract file version from qz104.exe!\r\n"));
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 00 28 00 00 00 00 F3 DE"));
}

TEST_F(AccessoryInfo, RequestCarriesAnIdentifierAndTheAnswerNone) {
  TurnOnTransactionIds(5);
  Arrive("FF 55 05 00 27 12 34 00 8E");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 00 28 00 00 00 00 F3 DE"));
}

// ---- What the host sets -------------------------------------------------------------------------

TEST_F(AccessoryInfo, DescriptionIsCopiedWhole) {
  tagIPOD_ACCESSORY_INFO info = {};
  for (std::size_t i = 0; i < sizeof info.data; ++i) info.data[i] = static_cast<unsigned char>(i);
  const tagIPOD_ACCESSORY_INFO original = info;
  session_.SetAccessoryInfo(&info);
  std::memset(&info, 0, sizeof info);
  EXPECT_EQ(sizeof Peer::Identity(session_).accessory, 312U);
  EXPECT_EQ(std::memcmp(&Peer::Identity(session_).accessory, &original, 312), 0);
  CIpodComm copy(session_);
  EXPECT_EQ(std::memcmp(&Peer::Identity(copy).accessory, &original, 312), 0);
}

TEST_F(AccessoryInfo, DescriptionStartsZeroed) {
  EXPECT_THAT(Peer::Identity(session_).accessory.data, Each(0));
}

TEST_F(AccessoryInfo, NullDescriptionIsIgnored) {
  tagIPOD_ACCESSORY_INFO info = {};
  info.data[311] = 9;
  session_.SetAccessoryInfo(&info);
  session_.SetAccessoryInfo(nullptr);
  EXPECT_EQ(Peer::Identity(session_).accessory.data[311], 9);
}

TEST_F(AccessoryInfo, DescriptionIsNotTold) {
  tagIPOD_ACCESSORY_INFO info;
  std::memset(&info, 'x', sizeof info);
  session_.SetAccessoryInfo(&info);
  Arrive("FF 55 03 00 27 07 CF");
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 00 28 07 00 CD"));
}

}  // namespace

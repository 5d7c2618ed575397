// SPDX-License-Identifier: MIT
// The chain of writes: one line's calls in their order and times, and every line failing in turn.
#include "support/packets.h"
#include "workout_test.h"

namespace {

using test::kHandle;
using test::kMillisecond;
using test::WorkoutTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kRefused = "FF 55 04 0C 00 05 07 E4";
constexpr const char* kRefusal = "Error in Ack from Storage Write, value is 5, should be 0";

class WorkoutLine : public WorkoutTest {};

TEST_F(WorkoutLine, ReopensThePortAndAwaitsTheAck) {
  ipodPeer::StorageFileHandle(legacy_) = kHandle;
  world_.Record();
  EXPECT_EQ(Write(L"A\n"), 1);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("StringCchCopyW(256, \"A\n\")", "SetCommMask(port1, 0)",
                          "PurgeComm(port1, 12)", "CloseHandle(port1)", "CreateFileW(\"COM2:\")",
                          "GetCommState(port2)", "SetCommMask(port2, 1)",
                          "SetCommState(port2, 57600 baud, 8 bits, parity 0, stop bits code 1)",
                          "GetCommTimeouts(port2)", "SetCommTimeouts(port2, 200, 200, 200, 0, 0)",
                          "PurgeComm(port2, 12)", "WriteFile(port2, FF)", "Sleep(5)",
                          "WriteFile(port2, 55 09 0C 07 00 00 00 00 2B 41 0A 6E)",
                          "ReadFile(port2, 1)", "ReadFile(port2, 1)", "ReadFile(port2, 1)",
                          "ReadFile(port2, 1)", "ReadFile(port2, 1)", "ReadFile(port2, 1)",
                          "ReadFile(port2, 1)", "ReadFile(port2, 1)"));
  EXPECT_EQ(Status(), "A\n");
}

TEST_F(WorkoutLine, TakesThePauseAndTheBytesOnTheWire) {
  // 12 bytes behind the sync byte, then 8 of the answer, 173.6 us each.
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Write(L"A\n"), 1); }), 5'000 + 2'084 + 1'389);
}

TEST_F(WorkoutLine, ReopensTheStoredPortAtTheSpeedOfTheLastOpen) {
  legacy_.closeport();
  test::AnsweringIpod other;
  world_.line("COM3:").Plug(other);
  wchar_t name[] = L"COM3:";
  EXPECT_EQ(legacy_.openport(name, 9600), 1);
  world_.Record({"CreateFileW", "SetCommState"});
  EXPECT_EQ(Write(L"A\n"), 1);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("CreateFileW(\"COM2:\")",
                          "SetCommState(port3, 9600 baud, 8 bits, parity 0, stop bits code 1)"));
  world_.line("COM3:").Unplug();
}

TEST_F(WorkoutLine, DoesNothingAfterAFailure) {
  world_.Record();
  EXPECT_EQ(Write(L"A\n", 0), 0);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_EQ(Status(), "");
}

TEST_F(WorkoutLine, AnyOtherPreviousResultIsASuccess) { EXPECT_EQ(Write(L"A\n", -1), 1); }

class RefusedLine : public WorkoutTest, public ::testing::WithParamInterface<int> {};

TEST_P(RefusedLine, TellsTheStatus) {
  const auto status = static_cast<std::uint8_t>(GetParam());
  test::Bytes ack = {0xFF, 0x55, 0x04, 0x0C, 0x00, status, 0x07, 0x00};
  ack.back() = static_cast<std::uint8_t>(0x100 - 0x17 - status);
  answering_.Answer("0C 07", test::ToHex(ack));
  EXPECT_EQ(Write(L"A\n"), 0);
  EXPECT_EQ(Status(), "Error in Ack from Storage Write, value is " + std::to_string(status) +
                          ", should be 0");
}

INSTANTIATE_TEST_SUITE_P(Statuses, RefusedLine, ::testing::Values(1, 2, 5, 10, 128, 255));

TEST_F(WorkoutLine, FailsWithoutAnAckAndKeepsItsStatus) {
  answering_.Answer("0C 07", "");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Write(L"A\n"), 0); }), test::kSilenceUs);
  EXPECT_EQ(Status(), "A\n");
}

TEST_F(WorkoutLine, IsNotAcknowledgedByTheBeginningOfAFrame) {
  for (const char* beginning : {"FF 55 00", "FF 55 00 00 00", "FF 55 00 0C 00 F4"}) {
    answering_.Answer("0C 07", beginning);
    EXPECT_EQ(Write(L"A\n"), 0) << beginning;
    EXPECT_EQ(Status(), "A\n");
  }
}

struct NoAckRow {
  const char* name;
  const char* frame;
};

class NoStorageAck : public WorkoutTest, public ::testing::WithParamInterface<NoAckRow> {};

INSTANTIATE_TEST_SUITE_P(
    Is, NoStorageAck,
    ::testing::Values(NoAckRow{"AccessoryInfoRequest", "FF 55 03 00 27 09 CD"},
                      NoAckRow{"IdentifyRequest", "FF 55 02 00 00 FE"},
                      NoAckRow{"PlayStatusNotification", "FF 55 08 04 00 27 04 00 00 01 00 C8"},
                      NoAckRow{"SportsAck", "FF 55 04 09 00 05 01 ED"},
                      NoAckRow{"StorageAckWithoutAStatus", "FF 55 02 0C 00 F2"}),
    test::RowName());

TEST_P(NoStorageAck, AndTheAckBehindItIsAwaited) {
  answering_.Answer("0C 07", std::string(GetParam().frame) + " FF 55 04 0C 00 00 07 E9");
  EXPECT_EQ(Write(L"A\n"), 1);
}

TEST_P(NoStorageAck, AndTheRefusalBehindItIsAwaited) {
  answering_.Answer("0C 07", std::string(GetParam().frame) + " " + kRefused);
  EXPECT_EQ(Write(L"A\n"), 0);
  EXPECT_EQ(Status(), kRefusal);
}

TEST_P(NoStorageAck, AndTheLineFailsWithoutOne) {
  answering_.Answer("0C 07", GetParam().frame);
  EXPECT_EQ(Write(L"A\n"), 0);
  EXPECT_EQ(Status(), "A\n");
}

TEST_P(NoStorageAck, AndTheFileIsNotClosedWithoutOne) {
  Begin();
  answering_.Answer("0C 08", GetParam().frame);
  EXPECT_EQ(Finish(), 0);
}

TEST_F(WorkoutLine, FailsWhenItCannotBeSentAndAwaitsNothing) {
  world_.FailOnce("WriteFile", 2, 31);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Write(L"A\n"), 0); }), 5 * kMillisecond);
  EXPECT_EQ(Status(), "A\n");
}

TEST_F(WorkoutLine, FailsWhenThePortDoesNotReopen) {
  world_.FailOnce("CreateFileW", 1, 5);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Write(L"A\n"), 0); }), 5 * kMillisecond);
  EXPECT_EQ(Write(L"B\n"), 1);
  EXPECT_EQ(Status(), "B\n");
}

TEST_F(WorkoutLine, OpensAPortThatWasClosed) {
  legacy_.closeport();
  EXPECT_EQ(Write(L"A\n"), 1);
}

TEST_F(WorkoutLine, HoldsAtMost245Characters) {
  EXPECT_EQ(Write(std::wstring(245, L'x')), 1);
  EXPECT_THAT(answering_.DrainLines(0, 0), ElementsAre(std::string(245, 'x')));
  EXPECT_EQ(ipodPeer::StorageWriteOffset(legacy_), 245U);
}

TEST_F(WorkoutLine, IsRefusedUnsentWhenItIsLonger) {
  world_.Record({"WriteFile", "CreateFileW"});
  EXPECT_EQ(Write(std::wstring(246, L'x')), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("CreateFileW(\"COM2:\")"));
  EXPECT_EQ(ipodPeer::StorageWriteOffset(legacy_), 0U);
  EXPECT_EQ(Status(), std::string(246, 'x'));
}

TEST_F(WorkoutLine, StatusKeeps255Characters) {
  EXPECT_EQ(Write(std::wstring(300, L'x')), 0);
  EXPECT_EQ(Status(), std::string(255, 'x'));
}

// The length is cut to 16 bits, so of 65539 characters the first three are written.
TEST_F(WorkoutLine, CountsIn16Bits) {
  EXPECT_EQ(Write(std::wstring(65539, L'x')), 1);
  EXPECT_THAT(answering_.DrainLines(0, 0), ElementsAre("xxx"));
}

TEST_F(WorkoutLine, MayBeEmpty) {
  EXPECT_EQ(Write(L""), 1);
  EXPECT_THAT(answering_.DrainFrames(), ElementsAre("FF 55 07 0C 07 00 00 00 00 00 E6"));
}

TEST_F(WorkoutLine, MissingTextFails) {
  world_.Record();
  EXPECT_EQ(legacy_.ipodstoragewritestring(1, nullptr), 0);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

// ---- Every link failing in turn

class HeaderChain : public WorkoutTest, public ::testing::WithParamInterface<unsigned> {};

TEST_P(HeaderChain, EndsAtTheRefusedLine) {
  answering_.AnswerNth("0C 07", GetParam(), kRefused);
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(answering_.DrainLines(kHandle, 0).size(), GetParam());
  EXPECT_EQ(Status(), kRefusal);
}

TEST_P(HeaderChain, EndsAtTheUnansweredLine) {
  answering_.AnswerNth("0C 07", GetParam(), "");
  EXPECT_EQ(Start(), 0);
  const std::vector<std::string> lines = answering_.DrainLines(kHandle, 0);
  ASSERT_EQ(lines.size(), GetParam());
  EXPECT_EQ(Status(), lines.back());
}

INSTANTIATE_TEST_SUITE_P(Lines, HeaderChain, ::testing::Range(1U, 15U));

class IntervalChain : public WorkoutTest, public ::testing::WithParamInterface<unsigned> {};

TEST_P(IntervalChain, EndsAtTheRefusedLine) {
  Begin();
  answering_.AnswerNth("0C 07", GetParam(), kRefused);
  EXPECT_EQ(Interval(), 0);
  EXPECT_EQ(answering_.DrainLines(kHandle, kHeaderBytes).size(), GetParam());
  EXPECT_EQ(Status(), kRefusal);
}

TEST_P(IntervalChain, EndsAtTheUnansweredLine) {
  Begin();
  answering_.AnswerNth("0C 07", GetParam(), "");
  EXPECT_EQ(Interval(), 0);
  const std::vector<std::string> lines = answering_.DrainLines(kHandle, kHeaderBytes);
  ASSERT_EQ(lines.size(), GetParam());
  EXPECT_EQ(Status(), lines.back());
}

INSTANTIATE_TEST_SUITE_P(Lines, IntervalChain, ::testing::Range(1U, 11U));

class SummaryChain : public WorkoutTest, public ::testing::WithParamInterface<unsigned> {};

TEST_P(SummaryChain, EndsAtTheRefusedLineAndClosesTheFile) {
  Begin();
  answering_.AnswerNth("0C 07", GetParam(), kRefused);
  EXPECT_EQ(Finish(), 0);
  const std::vector<std::string> frames = answering_.DrainFrames();
  ASSERT_EQ(frames.size(), GetParam() + 1);
  EXPECT_EQ(frames.back(), "FF 55 03 0C 08 2B BE");
  EXPECT_EQ(Status(), kRefusal);
}

TEST_P(SummaryChain, EndsAtTheUnansweredLineAndClosesTheFile) {
  Begin();
  answering_.AnswerNth("0C 07", GetParam(), "");
  EXPECT_EQ(Finish(), 0);
  const std::vector<std::string> frames = answering_.DrainFrames();
  ASSERT_EQ(frames.size(), GetParam() + 1);
  EXPECT_EQ(frames.back(), "FF 55 03 0C 08 2B BE");
}

INSTANTIATE_TEST_SUITE_P(Lines, SummaryChain, ::testing::Range(1U, 8U));

class WorkoutEnd : public WorkoutTest {};

TEST_F(WorkoutEnd, FailsWhenTheCloseIsRefused) {
  Begin();
  answering_.Answer("0C 08", "FF 55 04 0C 00 05 08 E3");
  EXPECT_EQ(Finish(), 0);
  EXPECT_EQ(Status(), "\t</workoutSummary>\n");
}

TEST_F(WorkoutEnd, FailsWhenTheCloseIsNotAnswered) {
  Begin();
  answering_.Answer("0C 08", "");
  EXPECT_EQ(Finish(), 0);
}

TEST_F(WorkoutEnd, FailsWhenTheCloseCannotBeSent) {
  Begin();
  world_.FailOnce("WriteFile", 15, 31);  // behind two for each of seven lines
  EXPECT_EQ(Finish(), 0);
}

TEST_F(WorkoutEnd, DoesNotReopenThePortToClose) {
  Begin();
  world_.Record({"CreateFileW"});
  EXPECT_EQ(Finish(), 1);
  EXPECT_EQ(world_.DrainRecord().size(), 7U);  // lines
}

TEST_F(WorkoutEnd, WithoutAStartWritesToNoFile) {
  EXPECT_EQ(Finish(), 1);
  EXPECT_EQ(answering_.DrainLines(0, 0).size(), 7U);
}

// ---- An iPod that acknowledges twice

constexpr char kAckTwice[] = "FF 55 04 0C 00 00 07 E9 FF 55 04 0C 00 00 07 E9";

class DoublyAcknowledged : public WorkoutTest {
 protected:
  // Its close is not answered.
  int FinishUnder(const tagIPOD_LEGACY_CONDUCT& conduct) {
    EXPECT_EQ(legacy_.SetConduct(&conduct), 1);
    Begin();
    answering_.Answer("0C 07", kAckTwice);
    answering_.Answer("0C 08", "");
    return Finish();
  }
};

TEST_F(DoublyAcknowledged, ALastLineDoesNotAcknowledgeTheCloseUnderRobust) {
  EXPECT_EQ(FinishUnder(IPOD_LEGACY_CONDUCT_ROBUST), 0);
}

TEST_F(DoublyAcknowledged, ALastLineAcknowledgesTheCloseByDefault) {
  EXPECT_EQ(FinishUnder(IPOD_LEGACY_CONDUCT_FIELD), 1);
}

// ---- The document's size

class WorkoutSize : public WorkoutTest {};

TEST_F(WorkoutSize, IsWhatTheIpodHasAcknowledged) {
  EXPECT_EQ(legacy_.getworkoutsize(), 0U);
  Begin();
  EXPECT_EQ(legacy_.getworkoutsize(), 326U);
  answering_.AnswerNth("0C 07", 2, kRefused);
  EXPECT_EQ(Interval(), 0);
  EXPECT_EQ(legacy_.getworkoutsize(), 338U);  // the first line, "\t<interval>\n", was written
}

TEST_F(WorkoutSize, StaysWhenTheFileIsClosed) {
  Begin();
  EXPECT_EQ(Finish(), 1);
  EXPECT_EQ(ipodPeer::StorageWriteOffset(legacy_), 0U);
  EXPECT_EQ(legacy_.getworkoutsize(), 456U);  // the header's 326 bytes and a summary of 130
}

TEST_F(WorkoutSize, CountsTheNextWorkoutFromItsStart) {
  Begin();
  EXPECT_EQ(Finish(), 1);
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(legacy_.getworkoutsize(), 326U);
}

}  // namespace

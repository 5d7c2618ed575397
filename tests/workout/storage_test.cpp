// SPDX-License-Identifier: MIT
// Files on the iPod: what goes out for each operation, what is made of the answer, and where the
// write offset stands after it.
#include <limits>

#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SessionTest;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Storage : public SessionTest {
 protected:
  std::uint32_t Offset() { return CIpodCommPeer::StorageWriteOffset(session_); }
  void SetOffset(std::uint32_t offset) { CIpodCommPeer::StorageWriteOffset(session_) = offset; }
  void SetHandle(std::uint8_t handle) { CIpodCommPeer::OpenFileHandle(session_) = handle; }
  int Write(unsigned char handle, std::string text) {
    return session_.Command_WriteiPodFileData(handle, reinterpret_cast<unsigned char*>(text.data()),
                                              text.size());
  }
  int Open(unsigned char type, unsigned long options, std::string data, unsigned char* handle) {
    return session_.Command_OpeniPodFeatureFile(
        type, options, reinterpret_cast<unsigned char*>(data.data()), data.size(), handle);
  }
  int WriteString(const wchar_t* text) {
    return (session_.*CIpodCommPeer::kWriteStorageFileString)(text);
  }
};

// ---- Capabilities and free space ----------------------------------------------------------------

constexpr const char* kAskCaps = "FF 55 02 0C 01 F1";
constexpr const char* kCaps =
    "FF 55 18 0C 02 00 00 00 01 80 02 03 04 12 34 56 78 00 F0 EE EE EE EE EE EE 01 02 B5";

TEST_F(Storage, CapabilitiesAreTakenFromTheirPlaces) {
  Answer(kAskCaps, kCaps);
  __int64 total_space = 0;
  unsigned long max_file_size = 0;
  unsigned short max_write_size = 0;
  unsigned char major = 0;
  unsigned char minor = 0;
  EXPECT_EQ(session_.Command_StorageGetIpodCaps(&total_space, &max_file_size, &max_write_size,
                                                &major, &minor),
            1);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps));
  EXPECT_EQ(total_space, 0x0000000180020101);
  EXPECT_EQ(max_file_size, 0x12345678U);
  EXPECT_EQ(max_write_size, 240);
  EXPECT_EQ(major, 1);
  EXPECT_EQ(minor, 2);
}

TEST_F(Storage, CapabilitiesNotAskedForAreLeftOut) {
  Answer(kAskCaps, kCaps);
  EXPECT_EQ(session_.Command_StorageGetIpodCaps(nullptr, nullptr, nullptr, nullptr, nullptr), 1);
}

TEST_F(Storage, UnansweredCapabilitiesFailAfterThreeAttemptsAndTellNothing) {
  __int64 total_space = 7;
  unsigned long max_file_size = 7;
  unsigned short max_write_size = 7;
  unsigned char major = 7;
  unsigned char minor = 7;
  const auto elapsed_us = Elapsed([&] {
    EXPECT_EQ(session_.Command_StorageGetIpodCaps(&total_space, &max_file_size, &max_write_size,
                                                  &major, &minor),
              0);
  });
  EXPECT_GE(elapsed_us, 3 * (20 * kMillisecond + kSecond));
  EXPECT_LE(elapsed_us, 3 * (22 * kMillisecond + kSecond));
  EXPECT_THAT(DrainSent(), ElementsAre(kAskCaps, kAskCaps, kAskCaps));
  EXPECT_EQ(total_space, 7);
  EXPECT_EQ(max_file_size, 7U);
  EXPECT_EQ(max_write_size, 7);
  EXPECT_EQ(major, 7);
  EXPECT_EQ(minor, 7);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

struct Space {
  const char* answer;
  __int64 bytes;
};

class FreeSpace : public SessionTest, public ::testing::WithParamInterface<Space> {};

// The two lowest bytes are both the reply's byte 3.
TEST_P(FreeSpace, RepeatsByteThreeAtItsEnd) {
  Answer("FF 55 02 0C 10 E2", GetParam().answer);
  __int64 free_space = 0;
  EXPECT_EQ(session_.Command_GetiPodFreeSpace(&free_space), 1);
  EXPECT_EQ(free_space, GetParam().bytes);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 0C 10 E2"));
}

INSTANTIATE_TEST_SUITE_P(
    Answers, FreeSpace,
    ::testing::Values(Space{"FF 55 0A 0C 11 00 00 00 00 01 02 03 04 CF", 0x01020000},
                      Space{"FF 55 0A 0C 11 00 00 00 05 00 00 00 00 D4", 0x0000000500000505},
                      Space{"FF 55 0A 0C 11 FE DC BA 98 76 54 32 10 A1",
                            static_cast<__int64>(0xFEDCBA9876549898)},
                      Space{"FF 55 0A 0C 11 7F FF FF FF FF FF FF FF 61", 0x7FFFFFFFFFFFFFFF},
                      Space{"FF 55 0A 0C 11 80 00 00 00 00 00 00 00 59",
                            std::numeric_limits<__int64>::min()}));

TEST_F(Storage, UnansweredFreeSpaceFailsAndTellsNothing) {
  __int64 free_space = 7;
  EXPECT_EQ(session_.Command_GetiPodFreeSpace(&free_space), 0);
  EXPECT_EQ(free_space, 7);
  EXPECT_THAT(DrainSent(), SizeIs(3));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

// ---- Opening ------------------------------------------------------------------------------------

constexpr const char* kOpen = "FF 55 09 0C 12 01 12 34 56 78 61 62 01";

TEST_F(Storage, OpeningSendsTypeOptionsAndDataAndReturnsTheHandle) {
  Answer(kOpen, "FF 55 03 0C 04 2A C3");
  unsigned char handle = 0;
  EXPECT_EQ(Open(1, 0x12345678, "ab", &handle), 1);
  EXPECT_EQ(handle, 0x2A);
  EXPECT_THAT(DrainSent(), ElementsAre(kOpen));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Storage, OpeningNeedsNoData) {
  Answer("FF 55 07 0C 12 07 00 00 00 00 D4", "FF 55 03 0C 04 2A C3");
  unsigned char handle = 0;
  EXPECT_EQ(session_.Command_OpeniPodFeatureFile(7, 0, nullptr, 0, &handle), 1);
  EXPECT_EQ(handle, 0x2A);
}

TEST_F(Storage, OpeningCarriesTheOwnIdentifier) {
  TurnOnTransactionIds(0x0100);
  Answer("FF 55 13 0C 12 01 00 02 00 00 00 0B 3C 2F 67 79 6D 44 61 74 61 3E 51",
         "FF 55 05 0C 04 01 00 2A C0");
  unsigned char handle = 0;
  EXPECT_EQ(Open(2, 11, "</gymData>", &handle), 1);
  EXPECT_EQ(handle, 0x2A);
}

TEST_F(Storage, OpeningStartsTheOffsetOverThoughAFileIsOpen) {
  Answer(kOpen, "FF 55 03 0C 04 2A C3");
  SetOffset(99);
  unsigned char handle = 0;
  EXPECT_EQ(Open(1, 0x12345678, "ab", &handle), 1);
  EXPECT_EQ(Offset(), 0U);
}

TEST_F(Storage, RefusedOpeningIsReportedAndStartsTheOffsetOver) {
  Answer(kOpen, "FF 55 05 0C 00 05 12 2A AE");
  SetOffset(99);
  unsigned char handle = 7;
  EXPECT_EQ(Open(1, 0x12345678, "ab", &handle), 0);
  EXPECT_EQ(handle, 7);
  EXPECT_EQ(Offset(), 0U);
  EXPECT_THAT(DrainSent(), ElementsAre(kOpen, kOpen, kOpen));
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Failed to open iPod feature file!\r\n"));
}

TEST_F(Storage, UnansweredOpeningIsReported) {
  unsigned char handle = 7;
  EXPECT_EQ(Open(1, 0x12345678, "ab", &handle), 0);
  EXPECT_EQ(handle, 7);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Failed to open iPod feature file!\r\n"));
}

TEST_F(Storage, OpeningWithoutMemorySendsNothingAndIsReported) {
  world_.FailOnce("LocalAlloc", 1, 8);
  SetOffset(99);
  unsigned char handle = 7;
  EXPECT_EQ(Open(1, 0x12345678, "ab", &handle), 0);
  EXPECT_EQ(handle, 7);
  EXPECT_EQ(Offset(), 0U);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Failed to open iPod feature file!\r\n"));
}

TEST_F(Storage, OpeningWithDataBeyondAFrameIsRefusedUnsent) {
  unsigned char handle = 7;
  EXPECT_EQ(Open(2, 11, std::string(249, 'x'), &handle), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Failed to open iPod feature file!\r\n"));
}

// ---- Writing ------------------------------------------------------------------------------------

constexpr const char* kWriteAbc = "FF 55 0A 0C 07 00 00 00 00 2A 61 62 63 93";
constexpr const char* kWriteDe = "FF 55 09 0C 07 00 00 00 03 2A 64 65 EE";
constexpr const char* kWriteAck = "FF 55 05 0C 00 00 07 2A BE";
constexpr const char* kWriteRefusal = "FF 55 05 0C 00 05 07 2A B9";

TEST_F(Storage, WritesFollowEachOther) {
  Answer(kWriteAbc, kWriteAck);
  Answer(kWriteDe, kWriteAck);
  EXPECT_EQ(Write(0x2A, "abc"), 1);
  EXPECT_EQ(Offset(), 3U);
  EXPECT_EQ(Write(0x2A, "de"), 1);
  EXPECT_EQ(Offset(), 5U);
  EXPECT_THAT(DrainSent(), ElementsAre(kWriteAbc, kWriteDe));
}

TEST_F(Storage, AcknowledgementOfTwoBytesWillDo) {
  Answer(kWriteAbc, "FF 55 04 0C 00 00 07 E9");
  EXPECT_EQ(Write(0x2A, "abc"), 1);
}

TEST_F(Storage, WritingCarriesTheOwnIdentifier) {
  TurnOnTransactionIds(0x1234);
  Answer("FF 55 0C 0C 07 12 34 00 00 00 00 2A 61 62 63 4B", "FF 55 06 0C 00 12 34 00 07 A1");
  EXPECT_EQ(Write(0x2A, "abc"), 1);
}

TEST_F(Storage, RefusalUnderAnIdentifierFails) {
  TurnOnTransactionIds(0x1234);
  Answer("FF 55 0C 0C 07 12 34 00 00 00 00 2A 61 62 63 4B", "FF 55 06 0C 00 12 34 03 07 9E");
  EXPECT_EQ(Write(0x2A, "abc"), 0);
}

TEST_F(Storage, RefusedWriteIsNotRepeatedAndLeavesAGap) {
  Answer(kWriteAbc, kWriteRefusal);
  Answer(kWriteDe, kWriteAck);
  EXPECT_EQ(Write(0x2A, "abc"), 0);
  EXPECT_EQ(Offset(), 3U);
  EXPECT_EQ(Write(0x2A, "de"), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kWriteAbc, kWriteDe));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Storage, UnansweredWriteIsRepeatedAtItsOffsetAndLeavesAGap) {
  EXPECT_EQ(Write(0x2A, "abc"), 0);
  EXPECT_EQ(Offset(), 3U);
  EXPECT_THAT(DrainSent(), ElementsAre(kWriteAbc, kWriteAbc, kWriteAbc));
}

TEST_F(Storage, OffsetHasMovedBeforeTheWriteGoesOut) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Write(0x2A, "abc"), 0);
  EXPECT_EQ(Offset(), 3U);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Storage, OffsetHasMovedThoughThereIsNoMemory) {
  world_.FailOnce("LocalAlloc", 1, 8);
  EXPECT_EQ(Write(0x2A, "abc"), 0);
  EXPECT_EQ(Offset(), 3U);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(Storage, OffsetIsBigEndianAndWrapsAt32Bits) {
  Answer("FF 55 0A 0C 07 FF FF FF FE 01 61 62 63 C1", kWriteAck);
  Answer("FF 55 08 0C 07 00 00 00 01 02 78 6A", kWriteAck);
  SetOffset(0xFFFFFFFE);
  EXPECT_EQ(Write(1, "abc"), 1);
  EXPECT_EQ(Offset(), 1U);
  EXPECT_EQ(Write(2, "x"), 1);
}

TEST_F(Storage, EmptyWriteIsSent) {
  Answer("FF 55 07 0C 07 00 00 00 00 07 DF", kWriteAck);
  EXPECT_EQ(session_.Command_WriteiPodFileData(7, nullptr, 0), 1);
  EXPECT_EQ(Offset(), 0U);
}

TEST_F(Storage, WriteIsBuiltInAHeapBlockWithFiveBytesMoreAndReleasedAfterTheExchange) {
  Answer(kWriteAbc, kWriteAck);
  world_.Record({"LocalAlloc", "LocalFree", "WriteFile"});
  EXPECT_EQ(Write(0x2A, "abc"), 1);
  EXPECT_THAT(
      world_.DrainCalls().Of("host").text(),
      ElementsAre("LocalAlloc(64, 8)", "WriteFile(port2, FF)",
                  "WriteFile(port2, 55 0A 0C 07 00 00 00 00 2A 61 62 63 93)", "LocalFree(block1)"));
}

TEST_F(Storage, OneFrameCarries248BytesAtMost) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Write(0x2A, std::string(249, 'x')), 0); }), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(Offset(), 249U);
  Write(0x2A, std::string(248, 'x'));
  const auto sent = DrainSent();
  ASSERT_THAT(sent, SizeIs(3));
  EXPECT_EQ(sent[0].substr(0, 32), "FF 55 FF 0C 07 00 00 00 F9 2A 78");
  EXPECT_EQ(test::Hex(sent[0]).size(), 259U);
}

// With the five bytes before the data, the largest lengths wrap around 32 bits to a few bytes.
TEST_F(Storage, HugeLengthIsRefusedUnsentWithoutTouchingTheDataOrTheHeap) {
  unsigned char data[] = {1, 2, 3, 4};
  unsigned char handle = 7;
  const std::size_t blocks = world_.call_count("LocalAlloc");
  for (const unsigned long length : {0xFFFFFFFFUL, 0xFFFFFFFBUL, 0x80000000UL, 256UL}) {
    EXPECT_EQ(session_.Command_WriteiPodFileData(0x2A, data, length), 0) << length;
    EXPECT_EQ(session_.Command_OpeniPodFeatureFile(2, 11, data, length, &handle), 0) << length;
  }
  EXPECT_EQ(handle, 7);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(world_.call_count("LocalAlloc"), blocks);
  EXPECT_THAT(DrainDebugOutput(), SizeIs(4));
}

// A length byte counts to 255: those data are laid behind their five bytes before the frame turns
// out too long.
TEST_F(Storage, DataOf255BytesAreLaidInABlockThoughNoFrameCarriesThem) {
  world_.Record({"LocalAlloc", "LocalFree", "WriteFile"});
  EXPECT_EQ(Write(0x2A, std::string(255, 'x')), 0);
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("LocalAlloc(64, 260)", "LocalFree(block1)"));
}

TEST_F(Storage, OneFrameWithIdentifierCarries246BytesAtMost) {
  TurnOnTransactionIds(0x1234);
  EXPECT_EQ(Write(0x2A, std::string(247, 'x')), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0x1234);
  Write(0x2A, std::string(246, 'x'));
  EXPECT_EQ(DrainSent()[0].substr(0, 38), "FF 55 FF 0C 07 12 34 00 00 00 F7 2A 78");
}

// ---- Closing ------------------------------------------------------------------------------------

constexpr const char* kClose = "FF 55 03 0C 08 2A BF";

TEST_F(Storage, ClosingSendsTheHandle) {
  Answer(kClose, "FF 55 05 0C 00 00 08 2A BD");
  SetOffset(99);
  EXPECT_EQ(session_.Command_CloseiPodFile(0x2A), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(kClose));
  EXPECT_EQ(Offset(), 99U);
}

TEST_F(Storage, ClosingCarriesTheOwnIdentifier) {
  TurnOnTransactionIds(0x1234);
  Answer("FF 55 05 0C 08 12 34 2A 77", "FF 55 06 0C 00 12 34 00 08 A0");
  EXPECT_EQ(session_.Command_CloseiPodFile(0x2A), 1);
}

TEST_F(Storage, RefusedClosingFails) {
  Answer(kClose, "FF 55 05 0C 00 05 08 2A B8");
  EXPECT_EQ(session_.Command_CloseiPodFile(0x2A), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kClose));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Storage, UnansweredClosingFails) {
  EXPECT_EQ(session_.Command_CloseiPodFile(0x2A), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kClose, kClose, kClose));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

// ---- Writing text -------------------------------------------------------------------------------

TEST_F(Storage, TextGoesToTheOpenFileAsUtf8AndAsItIs) {
  const char* frame =
      "FF 55 13 0C 07 00 00 00 00 2A C3 A9 E2 82 AC F0 9D 84 9E 3C 26 3E E5";  // é€𝄞<&>
  Answer(frame, kWriteAck);
  SetHandle(0x2A);
  EXPECT_EQ(WriteString(L"\u00E9\u20AC\U0001D11E<&>"), 1);
  EXPECT_THAT(DrainSent(), ElementsAre(frame));
  EXPECT_EQ(Offset(), 12U);
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

TEST_F(Storage, RefusedTextIsReportedAsItIs) {
  Answer(kWriteAbc, kWriteRefusal);
  SetHandle(0x2A);
  EXPECT_EQ(WriteString(L"abc"), 0);
  EXPECT_EQ(Offset(), 3U);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Failed to write xml file data! [abc]\r\n"));
}

TEST_F(Storage, UnansweredTextIsReported) {
  EXPECT_EQ(WriteString(L"\u00E9%s\n"), 0);
  EXPECT_THAT(DrainDebugOutput(), ElementsAre("Failed to write xml file data! [\xC3\xA9%s\n]\r\n"));
}

TEST_F(Storage, TextBeyondAFrameIsRefusedUnsentAndReportedWhole) {
  const std::wstring text(249, L'x');
  EXPECT_EQ(WriteString(text.c_str()), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(Offset(), 249U);
  EXPECT_THAT(DrainDebugOutput(),
              ElementsAre("Failed to write xml file data! [" + std::string(249, 'x') + "]\r\n"));
}

TEST_F(Storage, TextIsConvertedIntoAtMost512Bytes) {
  world_.Record({"WideCharToMultiByte"});
  WriteString(std::wstring(512, L'x').c_str());
  EXPECT_EQ(Offset(), 512U);
  SetOffset(0);
  WriteString(std::wstring(600, L'x').c_str());
  EXPECT_EQ(Offset(), 512U);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("WideCharToMultiByte(512, 512)", "WideCharToMultiByte(512, 512)"));
}

// 510 bytes and a character of three: none of it is written.
TEST_F(Storage, CutTextEndsBetweenTwoCharacters) {
  WriteString((std::wstring(510, L'x') + L'\u20AC').c_str());
  EXPECT_EQ(Offset(), 510U);
}

TEST_F(Storage, TextThatCannotBeConvertedIsWrittenAsNothing) {
  Answer("FF 55 07 0C 07 00 00 00 00 07 DF", kWriteAck);
  world_.FailOnce("WideCharToMultiByte", 1, 87);
  SetHandle(7);
  EXPECT_EQ(WriteString(L"abc"), 1);
  EXPECT_EQ(Offset(), 0U);
}

TEST_F(Storage, EmptyTextIsWrittenAsNothing) {
  Answer("FF 55 07 0C 07 00 00 00 00 07 DF", kWriteAck);
  SetHandle(7);
  EXPECT_EQ(WriteString(L""), 1);
}

// The iPod may ask for the accessory's capabilities at any time.
TEST_F(Storage, RequestForCapabilitiesStartsTheOffsetOverBetweenTwoWrites) {
  Answer(kWriteAbc, kWriteAck);
  EXPECT_EQ(Write(0x2A, "abc"), 1);
  Arrive("FF 55 02 0C 81 71");
  EXPECT_EQ(Write(0x2A, "abc"), 1);
  EXPECT_EQ(Offset(), 3U);
}

TEST_F(Storage, NothingIsLeftInTheHeap) {
  Answer(kWriteAbc, kWriteRefusal);
  unsigned char handle = 0;
  Open(1, 0x12345678, "ab", &handle);
  Write(0x2A, "abc");
  Write(0x2A, std::string(300, 'x'));
  EXPECT_THAT(world_.leftovers(), Each(::testing::Not(::testing::HasSubstr("block"))));
}

TEST_F(Storage, ClosedPortFailsEverything) {
  session_.Close();
  __int64 free_space = 0;
  unsigned char handle = 0;
  EXPECT_EQ(session_.Command_StorageGetIpodCaps(nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(session_.Command_GetiPodFreeSpace(&free_space), 0);
  EXPECT_EQ(Open(1, 0, "", &handle), 0);
  EXPECT_EQ(Write(0x2A, "abc"), 0);
  EXPECT_EQ(session_.Command_CloseiPodFile(0x2A), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

}  // namespace

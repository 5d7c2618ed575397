// SPDX-License-Identifier: MIT
// How the legacy interface writes the iPod's feature file: offset, handle and text of every write.
#include <string>

#include "support/legacy_test.h"

namespace {

using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LegacyFeatureFile : public LegacyTest {
 protected:
  int Write(std::wstring text) {
    return legacy_.command_storeagewriteipodfiledata(text.data(),
                                                     static_cast<unsigned short>(text.size()));
  }
  std::uint32_t& Offset() { return ipodPeer::StorageWriteOffset(legacy_); }
  std::uint8_t& Handle() { return ipodPeer::StorageFileHandle(legacy_); }
};

TEST_F(LegacyFeatureFile, WriteCarriesOffsetThenHandleThenText) {
  Offset() = 0x01020304;
  Handle() = 0x77;
  EXPECT_EQ(Write(L"Go"), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 09 0C 07 01 02 03 04 77 47 6F AD"));
}

TEST_F(LegacyFeatureFile, WriteTakesTheLowByteOfEveryCharacter) {
  EXPECT_EQ(Write(L"\x1234\x00E9"), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 09 0C 07 00 00 00 00 00 34 E9 C7"));
}

TEST_F(LegacyFeatureFile, WriteTakesTheCountAndNotTheTerminator) {
  wchar_t text[] = L"A\0B";
  EXPECT_EQ(legacy_.command_storeagewriteipodfiledata(text, 3), 1);
  EXPECT_EQ(legacy_.command_storeagewriteipodfiledata(text, 1), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 0A 0C 07 00 00 00 00 00 41 00 42 60",
                                       "FF 55 08 0C 07 00 00 00 03 00 41 A1"));
}

TEST_F(LegacyFeatureFile, WritesAdvanceTheOffsetAndClosingResetsIt) {
  Handle() = 5;
  EXPECT_EQ(Write(L"0123456789"), 1);
  EXPECT_EQ(Offset(), 10U);
  EXPECT_EQ(Write(L"01234"), 1);
  EXPECT_EQ(Offset(), 15U);
  EXPECT_EQ(legacy_.command_storagecloseipodfile(), 1);
  EXPECT_EQ(Offset(), 0U);
  EXPECT_EQ(Handle(), 0);
  EXPECT_THAT(
      DrainSent(),
      ElementsAre("FF 55 11 0C 07 00 00 00 00 05 30 31 32 33 34 35 36 37 38 39 CA",
                  "FF 55 0C 0C 07 00 00 00 0A 05 30 31 32 33 34 D8", "FF 55 03 0C 08 05 E4"));
}

TEST_F(LegacyFeatureFile, WriteThatFailsAdvancesTheOffsetAllTheSame) {
  world_.FailOnce("WriteFile", 2, 31);
  EXPECT_EQ(Write(L"0123456789"), 0);
  EXPECT_EQ(Offset(), 10U);
}

TEST_F(LegacyFeatureFile, OffsetWrapsAfter32Bits) {
  Offset() = 0xFFFFFFFE;
  EXPECT_EQ(Write(L"abc"), 1);
  EXPECT_EQ(Offset(), 1U);
}

TEST_F(LegacyFeatureFile, CloseThatFailsResetsHandleAndOffsetAllTheSame) {
  Handle() = 5;
  Offset() = 10;
  world_.FailOnce("WriteFile", 1, 31);
  EXPECT_EQ(legacy_.command_storagecloseipodfile(), 0);
  EXPECT_EQ(Handle(), 0);
  EXPECT_EQ(Offset(), 0U);
}

TEST_F(LegacyFeatureFile, OpenChangesNeitherHandleNorOffset) {
  Handle() = 5;
  Offset() = 10;
  EXPECT_EQ(legacy_.command_storageopenipodfeaturefile(), 1);
  EXPECT_EQ(Handle(), 5);
  EXPECT_EQ(Offset(), 10U);
}

TEST_F(LegacyFeatureFile, WriteLeavesTheRestOfThePayload) {
  NumberPayload();
  EXPECT_EQ(Write(L"AB"), 1);
  EXPECT_EQ(Payload(10), "00 00 00 00 00 41 42 07 08 09");
}

TEST_F(LegacyFeatureFile, WriteOfNothingCarriesOffsetAndHandle) {
  EXPECT_EQ(legacy_.command_storeagewriteipodfiledata(nullptr, 0), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 0C 07 00 00 00 00 00 E6"));
}

TEST_F(LegacyFeatureFile, LongestWriteFillsTheFrame) {
  EXPECT_EQ(Write(std::wstring(245, L'A')), 1);
  EXPECT_EQ(Offset(), 245U);
  const std::string sent = DrainSentBytes();
  EXPECT_EQ(sent.size(), 256U * 3 - 1);
  EXPECT_EQ(sent.substr(0, 36), "FF 55 FC 0C 07 00 00 00 00 00 41 41 ");
  EXPECT_EQ(sent.substr(sent.size() - 5), "41 BC");
}

TEST_F(LegacyFeatureFile, WriteThatDoesNotFitIsRefusedAndChangesNothing) {
  NumberPayload();
  Offset() = 10;
  ipodPeer::Lingo(legacy_) = 0x63;
  world_.Record({"WriteFile"});
  for (const std::size_t count : {246U, 251U, 252U, 65535U}) {
    EXPECT_EQ(Write(std::wstring(count, L'A')), 0) << count;
  }
  EXPECT_EQ(legacy_.command_storeagewriteipodfiledata(nullptr, 3), 0);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_EQ(Offset(), 10U);
  EXPECT_EQ(ipodPeer::Lingo(legacy_), 0x63);
  EXPECT_EQ(Payload(6), "00 01 02 03 04 05");
}

}  // namespace

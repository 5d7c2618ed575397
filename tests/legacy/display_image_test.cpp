// SPDX-License-Identifier: MIT
// The monochrome display: its limits, and the test image.
#include "support/legacy_test.h"

namespace {

using test::kMillisecond;
using test::kSilenceUs;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kGetLimits = "FF 55 03 04 00 33 C6";
constexpr const char* kLimits128x64 = "FF 55 08 04 00 34 00 80 00 40 01 FF";

class DisplayImage : public LegacyTest {
 protected:
  int GetLimits() { return legacy_.getmonodisplayimagelimits(&width_, &height_, &format_); }

  unsigned short width_ = 7;
  unsigned short height_ = 7;
  unsigned char format_ = 7;
};

TEST_F(DisplayImage, LimitsAreWidthHeightAndPixelFormat) {
  Answer(kGetLimits, "FF 55 08 04 00 34 01 02 03 04 05 B1");
  EXPECT_EQ(GetLimits(), 1);
  EXPECT_EQ(width_, 0x0102);
  EXPECT_EQ(height_, 0x0304);
  EXPECT_EQ(format_, 5);
  EXPECT_THAT(DrainSent(), ElementsAre(kGetLimits));
}

TEST_F(DisplayImage, UnansweredLimitsAreStoredAs0) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(GetLimits(), 0); }), kSilenceUs);
  EXPECT_EQ(width_, 0);
  EXPECT_EQ(height_, 0);
  EXPECT_EQ(format_, 0);
}

TEST_F(DisplayImage, LimitsThatCannotBeAskedForAreNotStored) {
  world_.FailFrom("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(GetLimits(), 0); }), 5 * kMillisecond);
  EXPECT_EQ(width_, 7);
  EXPECT_EQ(height_, 7);
  EXPECT_EQ(format_, 7);
}

TEST_F(DisplayImage, LimitsNeedNoPlaces) {
  Answer(kGetLimits, kLimits128x64);
  EXPECT_EQ(legacy_.getmonodisplayimagelimits(nullptr, nullptr, nullptr), 1);
}

// The frames carry the packet area's old payload, here its bytes' own positions; only the further
// frames write the row's number in front. The last payload byte and the checksum stay behind.
TEST_F(DisplayImage, ImageOfThreeRowsGoesOutARowToAFrame) {
  Answer(kGetLimits, "FF 55 08 04 00 34 00 20 00 03 01 9C");
  NumberPayload();
  EXPECT_EQ(legacy_.setmonoimage(), 1);
  EXPECT_EQ(DrainSentBytes(),
            "FF 55 03 04 00 33 C6 "
            "FF 55 00 00 12 04 00 32 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D "
            "FF 55 00 00 09 04 00 32 00 01 02 03 04 "
            "FF 55 00 00 09 04 00 32 00 02 02 03 04");
}

TEST_F(DisplayImage, ImageOf128By64IsOneFirstFrameAnd63FurtherOnes) {
  Answer(kGetLimits, kLimits128x64);
  world_.Record({"WriteFile"});
  EXPECT_EQ(legacy_.setmonoimage(), 1);
  const std::vector<std::string> writes = world_.DrainRecord();
  // Of each frame the sync byte goes first; the request for the limits is the first frame.
  ASSERT_EQ(writes.size(), 2U + 2U * 64U);
  // A first frame announces the 16 bytes of a row and 11 of its header, a further one 16 and 2.
  EXPECT_THAT(writes[3], ::testing::StartsWith("WriteFile(port1, 55 00 00 1E 04 00 32 "));
  for (std::size_t row = 1; row < 64; ++row) {
    EXPECT_THAT(writes[3 + 2 * row],
                ::testing::StartsWith("WriteFile(port1, 55 00 00 15 04 00 32 "));
  }
  EXPECT_THAT(writes[3 + 2 * 63],
              ::testing::StartsWith("WriteFile(port1, 55 00 00 15 04 00 32 00 3F "));
}

TEST_F(DisplayImage, ImageTakesFiveMillisecondsToAFrame) {
  Answer(kGetLimits, kLimits128x64);
  world_.Record({"Sleep"});
  legacy_.setmonoimage();
  EXPECT_EQ(world_.DrainRecord(), std::vector<std::string>(65, "Sleep(5)"));
}

// A width as the iPod tells it, of a display with two rows, and the length that the first frame
// then tells: 14 more than a row has bytes.
struct Width {
  const char* limits;
  const char* length;
};

class RowLengths : public DisplayImage, public ::testing::WithParamInterface<Width> {};

TEST_P(RowLengths, AreWholeWordsOf32Pixels) {
  Answer(kGetLimits, GetParam().limits);
  world_.Record({"WriteFile"});
  EXPECT_EQ(legacy_.setmonoimage(), 1);
  const std::vector<std::string> writes = world_.DrainRecord();
  ASSERT_EQ(writes.size(), 6U);
  EXPECT_EQ(writes[3].substr(0, 28), std::string("WriteFile(port1, 55 00 ") + GetParam().length);
}

INSTANTIATE_TEST_SUITE_P(Legacy, RowLengths,
                         ::testing::Values(Width{"FF 55 08 04 00 34 00 00 00 02 01 BD", "00 0E"},
                                           Width{"FF 55 08 04 00 34 00 01 00 02 01 BC", "00 12"},
                                           Width{"FF 55 08 04 00 34 00 20 00 02 01 9D", "00 12"},
                                           Width{"FF 55 08 04 00 34 00 21 00 02 01 9C", "00 16"},
                                           Width{"FF 55 08 04 00 34 00 A0 00 02 01 1D", "00 22"}));

TEST_F(DisplayImage, ImageOfOneRowIsTheFirstFrameAlone) {
  Answer(kGetLimits, "FF 55 08 04 00 34 00 20 00 01 01 9E");
  world_.Record({"WriteFile"});
  EXPECT_EQ(legacy_.setmonoimage(), 1);
  EXPECT_EQ(world_.DrainRecord().size(), 4U);
}

TEST_F(DisplayImage, ImageOfNoRowsIsTheFirstFrameAlone) {
  Answer(kGetLimits, "FF 55 08 04 00 34 00 20 00 00 01 9F");
  world_.Record({"WriteFile"});
  EXPECT_EQ(legacy_.setmonoimage(), 1);
  EXPECT_EQ(world_.DrainRecord().size(), 4U);
}

TEST_F(DisplayImage, ImageEndsWithTheFirstFrameThatFails) {
  Answer(kGetLimits, kLimits128x64);
  world_.FailOnce("WriteFile", 7, 31);  // the sync byte of the third row
  world_.Record({"WriteFile"});
  EXPECT_EQ(legacy_.setmonoimage(), 0);
  EXPECT_EQ(world_.DrainRecord().size(), 8U);
}

TEST_F(DisplayImage, ImageEndsWhenTheFirstRowFails) {
  Answer(kGetLimits, kLimits128x64);
  world_.FailOnce("WriteFile", 4, 31);
  world_.Record({"WriteFile"});
  EXPECT_EQ(legacy_.setmonoimage(), 0);
  EXPECT_EQ(world_.DrainRecord().size(), 4U);
}

TEST_F(DisplayImage, NoImageIsSentWithoutLimits) {
  EXPECT_EQ(Elapsed([this] { EXPECT_EQ(legacy_.setmonoimage(), 0); }), kSilenceUs);
  EXPECT_EQ(DrainSentBytes(), kGetLimits);
}

TEST_F(DisplayImage, ImageWiderThanAFrameIsRefused) {
  Answer(kGetLimits, "FF 55 08 04 00 34 FF FF FF FF 01 C3");
  EXPECT_EQ(legacy_.setmonoimage(), 0);
  EXPECT_EQ(DrainSentBytes(), kGetLimits);
}

TEST_F(DisplayImage, RowOfTheImageIsZeroFilledMemoryOfThePlatform) {
  Answer(kGetLimits, kLimits128x64);
  world_.Record({"LocalAlloc"});
  EXPECT_EQ(legacy_.setmonoimage(), 1);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("LocalAlloc(64, 16)"));
}

TEST_F(DisplayImage, NoImageIsSentWithoutMemory) {
  Answer(kGetLimits, kLimits128x64);
  world_.FailOnce("LocalAlloc", 1, 8);
  EXPECT_EQ(legacy_.setmonoimage(), 0);
  EXPECT_EQ(DrainSentBytes(), kGetLimits);
}

TEST_F(DisplayImage, ImageLeavesNoMemoryBehind) {
  Answer(kGetLimits, kLimits128x64);
  const std::vector<std::string> before = world_.leftovers();
  legacy_.setmonoimage();
  EXPECT_EQ(world_.leftovers(), before);
}

}  // namespace

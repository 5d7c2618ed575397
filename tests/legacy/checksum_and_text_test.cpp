// SPDX-License-Identifier: MIT
// The checksum of received frames, and the text that replies bring.
#include <ostream>
#include <string>

#include "support/legacy_test.h"
#include "support/packets.h"

namespace {

using test::DockTest;
using test::Units;

// ---- Checksum

struct ChecksumRow {
  const char* name;
  const char* frame;
  int right;
};

std::ostream& operator<<(std::ostream& out, const ChecksumRow& row) { return out << row.name; }

class LegacyChecksum : public DockTest, public ::testing::WithParamInterface<ChecksumRow> {
 protected:
  ipod legacy_;
};

INSTANTIATE_TEST_SUITE_P(
    Of, LegacyChecksum,
    ::testing::Values(ChecksumRow{"ASmallFrame", "FF 55 02 00 02 FC", 1},
                      ChecksumRow{"AnExtendedFrame", "FF 55 07 04 00 1D 41 42 43 44 CE", 1},
                      ChecksumRow{"ALargeFrame", "FF 55 00 00 05 04 00 1D 41 42 57", 1},
                      ChecksumRow{"AWrongOne", "FF 55 02 00 02 FD", 0},
                      ChecksumRow{"AChangedByte", "FF 55 02 00 03 FC", 0},
                      ChecksumRow{"ASumOfZero", "FF 55 02 00 FE 00", 1},
                      ChecksumRow{"ChangedLeadBytes", "00 00 02 00 02 FC", 1},
                      // Nothing is added up: the last byte is to be 0.
                      ChecksumRow{"ThreeBytes", "FF 55 00", 1},
                      ChecksumRow{"ThreeBytesOfAnother", "FF 55 02", 0},
                      ChecksumRow{"TwoBytes", "FF 00", 1}, ChecksumRow{"OneByte", "00", 1},
                      ChecksumRow{"OneSyncByte", "FF", 0}),
    test::RowName());

TEST_P(LegacyChecksum, CoversTheLengthByteThroughTheByteBeforeIt) {
  test::Bytes frame = test::Hex(GetParam().frame);
  EXPECT_EQ(legacy_.VerifyReceivePacketChecksum(frame.data(), frame.size()), GetParam().right);
}

TEST_F(DockTest, LegacyChecksumOfNothingIsWrong) {
  ipod legacy;
  unsigned char byte = 0;
  EXPECT_EQ(legacy.VerifyReceivePacketChecksum(&byte, 0), 0);
  EXPECT_EQ(legacy.VerifyReceivePacketChecksum(nullptr, 0), 0);
  EXPECT_EQ(legacy.VerifyReceivePacketChecksum(nullptr, 6), 0);
}

// ---- Text

class LegacyText : public DockTest {
 protected:
  // The text converted in place, with what lies behind it.
  std::string Converted(std::wstring text, std::size_t count) {
    text.resize(600, L'#');
    EXPECT_EQ(legacy_.utf8tounicode(text.data()), text.data());
    return Units(text.data(), count);
  }

  ipod legacy_;
};

using namespace std::string_literals;

TEST_F(LegacyText, IsConvertedFromUtf8InPlace) {
  EXPECT_EQ(Converted(L"\x00C3\x00A9\0"s, 3), "E9 0 0");
  EXPECT_EQ(Converted(L"Zo\x00C3\x00AB\0"s, 4), "5A 6F EB 0");
  EXPECT_EQ(Converted(L"\x00E2\x0082\x00AC\0"s, 2), "20AC 0");
}

TEST_F(LegacyText, OfAsciiStaysAsItIs) { EXPECT_EQ(Converted(L"AB\0"s, 4), "41 42 0 23"); }

TEST_F(LegacyText, ThatIsEmptyStaysEmpty) { EXPECT_EQ(Converted(L"\0"s, 2), "0 23"); }

TEST_F(LegacyText, IsNarrowedToTheLowBytes) { EXPECT_EQ(Converted(L"\x1241\0"s, 2), "41 0"); }

TEST_F(LegacyText, EndsAtItsFirstTerminator) {
  EXPECT_EQ(Converted(L"A\0\x00C3\x00A9\0"s, 4), "41 0 C3 A9");
}

TEST_F(LegacyText, WithMalformedBytesIsConvertedWithReplacements) {
  EXPECT_EQ(Converted(L"A\x00C3\0"s, 3), "41 FFFD 0");
}

TEST_F(LegacyText, ThatIsMissingIsReturnedAsItIs) {
  EXPECT_EQ(legacy_.utf8tounicode(nullptr), nullptr);
}

// `count` bytes of two-byte characters, of which the last may be cut in two.
std::wstring Accents(std::size_t count) {
  std::wstring text;
  for (std::size_t i = 0; i < count; ++i) text += i % 2 == 0 ? L'\x00C3' : L'\x00A9';
  return text;
}

TEST_F(LegacyText, Of512UnitsIsConvertedWhole) {
  std::wstring text = Accents(512) + L"\0####"s;
  legacy_.utf8tounicode(text.data());
  EXPECT_EQ(text.substr(0, 257), std::wstring(256, L'\x00E9') + L"\0"s);
}

TEST_F(LegacyText, OfMoreThan512UnitsIsCutBetweenTwoCharactersOfItsFirst511) {
  for (const std::size_t length : {513U, 1000U}) {
    std::wstring text = Accents(length) + L"\0"s;
    legacy_.utf8tounicode(text.data());
    EXPECT_EQ(text.substr(0, 256), std::wstring(255, L'\x00E9') + L"\0"s);
  }
}

TEST_F(LegacyText, FillsAtMost511UnitsAndATerminator) {
  for (const std::size_t length : {511U, 512U, 513U}) {
    std::wstring text(length, L'A');
    text += L"\0####"s;
    const wchar_t behind = text[512];
    legacy_.utf8tounicode(text.data());
    EXPECT_EQ(text.substr(0, 512), std::wstring(511, L'A') + L"\0"s) << length;
    EXPECT_EQ(text[512], behind);
  }
}

}  // namespace

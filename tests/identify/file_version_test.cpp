// SPDX-License-Identifier: MIT
// Reading the version of the host's executable: the text's forms, missing outputs, the platform
// calls in their order, and that every path gives the memory back.
#include "identify/file_version.h"

#include <string>

#include "platform/pe_image.h"
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const wchar_t* kFile = L"qz104.exe";
constexpr const char* kUnreadable = "Failed to extract file version from qz104.exe!\r\n";
// The services that reading may call.
const std::vector<std::string> kServices = {
    "GetFileVersionInfoSizeW", "VirtualAlloc", "GetFileVersionInfoW",
    "VerQueryValueW",          "VirtualFree",  "NKDbgPrintfW"};

struct Numbers {
  int major = -1;
  int minor = -2;
  int build = -3;
  int private_part = -4;
};

class FileVersion : public ::testing::Test {
 protected:
  FileVersion() { world_.SetFileVersion(kFile, L"2,5,0,17"); }

  int Read() {
    return ipodcomm::ReadFileVersion(kFile, &read_.major, &read_.minor, &read_.build,
                                     &read_.private_part);
  }
  // Names of the services called, in their order.
  std::vector<std::string> DrainServices() {
    std::vector<std::string> names;
    const auto calls = world_.DrainCalls();
    for (const auto& call : calls.all()) names.push_back(call.service);
    return names;
  }
  void ExpectFailure() {
    EXPECT_EQ(Read(), 0);
    EXPECT_EQ(read_.major, -1);
    EXPECT_EQ(read_.minor, -2);
    EXPECT_EQ(read_.build, -3);
    EXPECT_EQ(read_.private_part, -4);
    EXPECT_THAT(world_.debug_output(), ElementsAre(kUnreadable));
    EXPECT_THAT(world_.leftovers(), IsEmpty());
  }

  test::World world_;
  Numbers read_;
};

TEST_F(FileVersion, AllFourNumbersAreRead) {
  EXPECT_NE(Read(), 0);
  EXPECT_EQ(read_.major, 2);
  EXPECT_EQ(read_.minor, 5);
  EXPECT_EQ(read_.build, 0);
  EXPECT_EQ(read_.private_part, 17);
  EXPECT_THAT(world_.debug_output(), IsEmpty());
  EXPECT_THAT(world_.leftovers(), IsEmpty());
}

TEST_F(FileVersion, BuildAndPrivatePartMayBeMissing) {
  EXPECT_NE(ipodcomm::ReadFileVersion(kFile, &read_.major, &read_.minor, nullptr, nullptr), 0);
  EXPECT_EQ(read_.major, 2);
  EXPECT_EQ(read_.minor, 5);
  EXPECT_NE(ipodcomm::ReadFileVersion(kFile, &read_.major, &read_.minor, &read_.build, nullptr), 0);
  EXPECT_EQ(read_.build, 0);
  EXPECT_EQ(read_.private_part, -4);
  EXPECT_NE(
      ipodcomm::ReadFileVersion(kFile, &read_.major, &read_.minor, nullptr, &read_.private_part),
      0);
  EXPECT_EQ(read_.private_part, 17);
}

TEST_F(FileVersion, MissingOutputsDoNotMatterOnFailure) {
  EXPECT_EQ(ipodcomm::ReadFileVersion(L"no.exe", &read_.major, &read_.minor, nullptr, nullptr), 0);
  EXPECT_EQ(read_.major, -1);
  EXPECT_EQ(read_.minor, -2);
}

TEST_F(FileVersion, PlatformIsCalledInOrder) {
  world_.Record(kServices);
  Read();
  const auto calls = world_.DrainCalls().text();
  ASSERT_EQ(calls.size(), 5U);
  EXPECT_EQ(calls[0], "GetFileVersionInfoSizeW(\"qz104.exe\")");
  const std::string size = calls[1].substr(13, calls[1].size() - 14);
  EXPECT_EQ(calls[1], "VirtualAlloc(" + size + ")");
  EXPECT_EQ(calls[2], "GetFileVersionInfoW(\"qz104.exe\", " + size + ")");
  EXPECT_EQ(calls[3], "VerQueryValueW(\"\\StringFileInfo\\040904b0\\FileVersion\")");
  EXPECT_THAT(calls[4], ::testing::StartsWith("VirtualFree("));
}

TEST_F(FileVersion, ReservesWhatTheResourceNeeds) {
  world_.Record({"GetFileVersionInfoSizeW", "VirtualAlloc"});
  Read();
  const auto calls = world_.DrainCalls();
  ASSERT_EQ(calls.all().size(), 2U);
  EXPECT_EQ(calls.all()[1].text, "VirtualAlloc(" + calls.all()[0].result + ")");
}

struct Text {
  std::string name;
  const wchar_t* text;
  Numbers numbers;
};

void PrintTo(const Text& text, std::ostream* stream) { *stream << text.name; }

class VersionTexts : public FileVersion, public ::testing::WithParamInterface<Text> {};

TEST_P(VersionTexts, SucceedWhateverTheyYield) {
  world_.SetFileVersion(kFile, GetParam().text);
  EXPECT_NE(Read(), 0);
  EXPECT_EQ(read_.major, GetParam().numbers.major);
  EXPECT_EQ(read_.minor, GetParam().numbers.minor);
  EXPECT_EQ(read_.build, GetParam().numbers.build);
  EXPECT_EQ(read_.private_part, GetParam().numbers.private_part);
  EXPECT_THAT(world_.debug_output(), IsEmpty());
}

// Numbers that a text lacks stay as they were: -1, -2, -3, -4.
INSTANTIATE_TEST_SUITE_P(Forms, VersionTexts,
                         ::testing::Values(Text{"Plain", L"1,2,3,4", {1, 2, 3, 4}},
                                           Text{"BlanksBehindCommas", L"1, 2, 3, 4", {1, 2, 3, 4}},
                                           Text{"BlankBeforeComma", L"1 ,2,3,4", {1, -2, -3, -4}},
                                           Text{"Dots", L"1.2.3.4", {1, -2, -3, -4}},
                                           Text{"TwoNumbers", L"7,8", {7, 8, -3, -4}},
                                           Text{"ThreeNumbers", L"7,8,9", {7, 8, 9, -4}},
                                           Text{"FiveNumbers", L"7,8,9,10,11", {7, 8, 9, 10}},
                                           Text{"LeadingZeros", L"01,008,0009,010", {1, 8, 9, 10}},
                                           Text{"Signs", L"-1,+2,3,4", {-1, 2, 3, 4}},
                                           Text{"Words", L"beta", {-1, -2, -3, -4}},
                                           Text{"WordBehind", L"1,2,3,4 beta", {1, 2, 3, 4}},
                                           Text{"EmptyNumber", L"1,,3,4", {1, -2, -3, -4}}),
                         test::RowName());

// A file whose FileVersion is marked as data: no terminator, and the length counts bytes. Beside
// it lies a value "A" of 32 bytes. Data keep their bytes, here characters of 32 bits.
test::Bytes FileWithVersionAsData(const std::u32string& text, bool last) {
  using ipodcomm::test::VersionNode;
  test::Bytes data;
  for (const char32_t character : text) {
    data.insert(data.end(), {static_cast<std::uint8_t>(character), 0, 0, 0});
  }
  const unsigned length = static_cast<unsigned>(data.size());
  const test::Bytes version = VersionNode(u"FileVersion", false, length, data, {});
  const test::Bytes table = VersionNode(u"040904b0", true, 0, {}, {version});
  const test::Bytes strings = VersionNode(u"StringFileInfo", true, 0, {}, {table});
  const test::Bytes other = VersionNode(u"A", false, 32, test::Bytes(32, 0xEE), {});
  return ipodcomm::test::PeImage(
      32, VersionNode(u"VS_VERSION_INFO", false, 0, {},
                      last ? std::vector{other, strings} : std::vector{strings, other}));
}

// The value's neighbour begins with its size, 52, which as a character is the digit 4.
TEST_F(FileVersion, TextMarkedAsDataEndsWithItsBytes) {
  world_.PlaceFile(kFile, FileWithVersionAsData(U"7,8,", false));
  EXPECT_NE(Read(), 0);
  EXPECT_EQ(read_.major, 7);
  EXPECT_EQ(read_.minor, 8);
  EXPECT_EQ(read_.build, -3);
  EXPECT_EQ(read_.private_part, -4);
}

TEST_F(FileVersion, TextMarkedAsDataAtTheEndOfTheResourceIsNotReadPastIt) {
  world_.PlaceFile(kFile, FileWithVersionAsData(U"7,8,9,10", true));
  EXPECT_NE(Read(), 0);
  EXPECT_EQ(read_.private_part, 10);
}

// A file whose FileVersion is "7,8" with its terminator, and says that it has `length` characters.
test::Bytes FileWithVersionOfLength(unsigned length) {
  using ipodcomm::test::VersionNode;
  const test::Bytes version =
      VersionNode(u"FileVersion", true, length, {'7', 0, ',', 0, '8', 0, 0, 0}, {});
  const test::Bytes table = VersionNode(u"040904b0", true, 0, {}, {version});
  const test::Bytes strings = VersionNode(u"StringFileInfo", true, 0, {}, {table});
  return ipodcomm::test::PeImage(32, VersionNode(u"VS_VERSION_INFO", false, 0, {}, {strings}));
}

TEST_F(FileVersion, TextIsReadWholeWhetherItsLengthCountsTheTerminatorOrNot) {
  for (const unsigned length : {3U, 4U}) {
    world_.PlaceFile(kFile, FileWithVersionOfLength(length));
    EXPECT_NE(Read(), 0);
    EXPECT_EQ(read_.major, 7) << length;
    EXPECT_EQ(read_.minor, 8) << length;
  }
}

TEST_F(FileVersion, LongestTextIsReadWhole) {
  world_.SetFileVersion(kFile, L"1," + std::wstring(118, L' ') + L"2,3,45");
  EXPECT_NE(Read(), 0);
  EXPECT_EQ(read_.private_part, 45);
}

// "1,", 125 blanks, and the 128th character is the 2.
TEST_F(FileVersion, TextIsCutBehind128Characters) {
  world_.SetFileVersion(kFile, L"1," + std::wstring(125, L' ') + L"23");
  EXPECT_NE(Read(), 0);
  EXPECT_EQ(read_.major, 1);
  EXPECT_EQ(read_.minor, 2);
}

TEST_F(FileVersion, MissingFileFails) {
  world_.Record(kServices);
  world_.SetFileVersion(kFile, L"");
  ExpectFailure();
  EXPECT_THAT(DrainServices(), ElementsAre("GetFileVersionInfoSizeW", "NKDbgPrintfW"));
}

TEST_F(FileVersion, FileThatIsNoExecutableFails) {
  world_.PlaceFile(kFile, {'M', 'Z', 0, 1});
  ExpectFailure();
}

TEST_F(FileVersion, NoMemoryFails) {
  world_.FailOnce("VirtualAlloc", 1, 8);
  world_.Record(kServices);
  ExpectFailure();
  EXPECT_THAT(DrainServices(),
              ElementsAre("GetFileVersionInfoSizeW", "VirtualAlloc", "NKDbgPrintfW"));
}

TEST_F(FileVersion, UnreadableResourceFailsAndGivesTheMemoryBack) {
  world_.FailOnce("GetFileVersionInfoW", 1, 30);
  world_.Record(kServices);
  ExpectFailure();
  EXPECT_THAT(DrainServices(), ElementsAre("GetFileVersionInfoSizeW", "VirtualAlloc",
                                           "GetFileVersionInfoW", "VirtualFree", "NKDbgPrintfW"));
}

TEST_F(FileVersion, MissingValueFailsAndGivesTheMemoryBack) {
  world_.FailOnce("VerQueryValueW", 1, 1813);
  world_.Record(kServices);
  ExpectFailure();
  EXPECT_THAT(DrainServices(),
              ElementsAre("GetFileVersionInfoSizeW", "VirtualAlloc", "GetFileVersionInfoW",
                          "VerQueryValueW", "VirtualFree", "NKDbgPrintfW"));
}

TEST_F(FileVersion, MessageNamesThePath) {
  EXPECT_EQ(ipodcomm::ReadFileVersion(L"C:\\a b.exe", &read_.major, &read_.minor, nullptr, nullptr),
            0);
  EXPECT_THAT(world_.debug_output(),
              ElementsAre("Failed to extract file version from C:\\a b.exe!\r\n"));
}

TEST_F(FileVersion, HostVersionIsMajorMinorZero) {
  const ipodcomm::HostVersion version = ipodcomm::ReadHostVersion();
  EXPECT_THAT(version.bytes, ElementsAre(2, 5, 0));
}

TEST_F(FileVersion, HostVersionKeepsTheLowBytes) {
  world_.SetFileVersion(kFile, L"258,511,9,9");
  EXPECT_THAT(ipodcomm::ReadHostVersion().bytes, ElementsAre(2, 255, 0));
}

TEST_F(FileVersion, UnreadableHostVersionIsZero) {
  world_.SetFileVersion(kFile, L"");
  EXPECT_THAT(ipodcomm::ReadHostVersion().bytes, ElementsAre(0, 0, 0));
}

}  // namespace

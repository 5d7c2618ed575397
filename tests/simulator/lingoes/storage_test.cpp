// SPDX-License-Identifier: MIT
// Proves the Storage lingo: files that are opened, appended to and closed, their limits, and what
// an accessory can do wrong with them.

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "simulator/protocol/command_table.h"
#include "simulator/wire/frame.h"
#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

// Announces General, Display Remote, Extended Interface, Sports and Storage.
void IdentifyForWorkouts(IpodUnderTest& dock) {
  dock.Exchange("FF 55 0E 00 13 00 00 12 19 00 00 00 00 00 00 00 00 B4");
}

// A workout file whose end is "</x>", nothing else being appended.
const char* const kOpen = "FF 55 0B 0C 12 02 00 00 00 01 3C 2F 78 3E B3";
const char* const kFirstHandle = "FF 55 03 0C 04 01 EC";
const char* const kWriteAbc = "FF 55 0A 0C 07 00 00 00 00 01 61 62 63 BC";
const char* const kWriteDe = "FF 55 09 0C 07 00 00 00 03 01 64 65 17";
const char* const kWritten = "FF 55 04 0C 00 00 07 E9";
const char* const kClose = "FF 55 03 0C 08 01 E8";
const char* const kClosed = "FF 55 04 0C 00 00 08 E8";
const char* const kWriteRefused = "FF 55 04 0C 00 03 07 E6";
const char* const kFull = "FF 55 04 0C 00 02 07 E7";

std::string FirstFile(const IpodUnderTest& dock) {
  return dock.ipod.feature_files().Read("gym-0001.xml");
}

class StorageTest : public testing::Test {
 protected:
  // Of what is stored here nothing is a workout.
  StorageTest() : settings(QuietSettings()) { settings.storage.checks_workouts = false; }

  // Makes the dock of the settings, identified.
  IpodUnderTest& Docked() {
    dock_.emplace(settings);
    IdentifyForWorkouts(*dock_);
    return *dock_;
  }

  Settings settings;

 private:
  std::optional<IpodUnderTest> dock_;
};

TEST_F(StorageTest, TellsItsCapabilities) {
  EXPECT_EQ(Docked().Exchange("FF 55 02 0C 01 F1"),
            "FF 55 18 0C 02 00 00 00 01 DC D6 50 00 00 F4 24 00 01 F0 00 00 00 00 00 00 01 02 CB");
  settings.storage.total_space = 0x0102030405060708;
  settings.storage.max_file_size = 0x090A0B0C;
  settings.storage.max_write_size = 0x0D0E;
  EXPECT_EQ(Docked().Exchange("FF 55 02 0C 01 F1"),
            "FF 55 18 0C 02 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 00 00 00 00 00 00 01 02 6E");
}

TEST_F(StorageTest, TellsItsFreeSpace) {
  EXPECT_EQ(Docked().Exchange("FF 55 02 0C 10 E2"), "FF 55 0A 0C 11 00 00 00 00 B2 D0 5E 00 F9");
  settings.storage.free_space = 0x0102030405060708;
  EXPECT_EQ(Docked().Exchange("FF 55 02 0C 10 E2"), "FF 55 0A 0C 11 01 02 03 04 05 06 07 08 B5");
}

TEST_F(StorageTest, AnswersEchoTheIdentifier) {
  IpodUnderTest dock(settings);
  dock.IdentifyByTokens();
  EXPECT_EQ(dock.Exchange("FF 55 04 0C 10 00 03 DD"),
            "FF 55 0C 0C 11 00 03 00 00 00 00 B2 D0 5E 00 F4");
  EXPECT_EQ(dock.Exchange("FF 55 0D 0C 12 00 04 02 00 00 00 01 3C 2F 78 3E AD"),
            "FF 55 05 0C 04 00 04 01 E6");
  EXPECT_EQ(dock.Exchange("FF 55 0C 0C 07 00 05 00 00 00 00 01 61 62 63 B5"),
            "FF 55 06 0C 00 00 05 00 07 E2");
  EXPECT_EQ(dock.Exchange("FF 55 05 0C 08 00 06 01 E0"), "FF 55 06 0C 00 00 06 00 08 E0");
  EXPECT_EQ(FirstFile(dock), "abc</x>");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, IdentifierThatDoesNotStepIsNamed) {
  IpodUnderTest dock(settings);
  dock.IdentifyByTokens();
  dock.Exchange("FF 55 04 0C 10 00 03 DD");
  dock.Exchange("FF 55 04 0C 10 00 09 D7");
  EXPECT_EQ(dock.Mistakes(), "identifier not stepping");
}

TEST_F(StorageTest, KeepsWhatIsWrittenAndAppendsTheClosingDataWhenClosed) {
  IpodUnderTest& dock = Docked();
  EXPECT_EQ(dock.Exchange(kOpen), kFirstHandle);
  EXPECT_EQ(FirstFile(dock), "");
  EXPECT_EQ(dock.Exchange(kWriteAbc), kWritten);
  EXPECT_EQ(dock.Exchange(kWriteDe), kWritten);
  EXPECT_EQ(FirstFile(dock), "abcde");
  EXPECT_EQ(dock.ipod.open_feature_files(), std::vector<std::string>{"gym-0001.xml"});
  EXPECT_EQ(dock.Exchange(kClose), kClosed);
  EXPECT_EQ(FirstFile(dock), "abcde</x>");
  EXPECT_TRUE(dock.ipod.open_feature_files().empty());
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, AppendsIpodAndSignatureBeforeTheClosingData) {
  IpodUnderTest& dock = Docked();
  dock.Exchange("FF 55 0B 0C 12 02 00 00 00 0B 3C 2F 78 3E A9");
  dock.Exchange(kWriteAbc);
  dock.Exchange(kClose);
  EXPECT_EQ(FirstFile(dock),
            "abc"
            "\t<iPodInfo>\n"
            "\t\t<model>MB598LL</model>\n"
            "\t\t<softwareVersion>1.0.4</softwareVersion>\n"
            "\t\t<serialNumber>5U8250SIM01</serialNumber>\n"
            "\t</iPodInfo>\n"
            "\t<signature>89031249976714EA</signature>\n"
            "</x>");
}

TEST_F(StorageTest, AppendsTheIpodAlone) {
  settings.model_number = "A<B&C>";
  IpodUnderTest& dock = Docked();
  dock.Exchange("FF 55 07 0C 12 02 00 00 00 02 D7");
  dock.Exchange(kClose);
  EXPECT_EQ(FirstFile(dock),
            "\t<iPodInfo>\n"
            "\t\t<model>A&lt;B&amp;C&gt;</model>\n"
            "\t\t<softwareVersion>1.0.4</softwareVersion>\n"
            "\t\t<serialNumber>5U8250SIM01</serialNumber>\n"
            "\t</iPodInfo>\n");
}

TEST_F(StorageTest, AppendsTheSignatureAlone) {
  IpodUnderTest& dock = Docked();
  dock.Exchange("FF 55 07 0C 12 02 00 00 00 08 D1");
  dock.Exchange("FF 55 08 0C 07 00 00 00 00 01 61 83");
  dock.Exchange(kClose);
  EXPECT_EQ(FirstFile(dock), "a\t<signature>AF63DC4C8601EC8C</signature>\n");
}

TEST_F(StorageTest, AppendsNothingWithoutOptions) {
  IpodUnderTest& dock = Docked();
  dock.Exchange("FF 55 07 0C 12 02 00 00 00 00 D9");
  dock.Exchange(kWriteAbc);
  dock.Exchange(kClose);
  EXPECT_EQ(FirstFile(dock), "abc");
}

TEST_F(StorageTest, EveryOpenBeginsANewFile) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  dock.Exchange(kWriteAbc);
  EXPECT_EQ(dock.Exchange(kOpen), "FF 55 03 0C 04 02 EB");
  EXPECT_EQ(dock.Exchange("FF 55 0A 0C 07 00 00 00 00 02 78 79 7A 76"), kWritten);
  EXPECT_EQ(dock.Exchange(kWriteDe), kWritten);
  EXPECT_EQ(dock.Exchange(kClose), kClosed);
  EXPECT_EQ(dock.Exchange(kOpen), "FF 55 03 0C 04 03 EA");
  EXPECT_EQ(dock.ipod.feature_files().Names(),
            (std::vector<std::string>{"gym-0001.xml", "gym-0002.xml", "gym-0003.xml"}));
  EXPECT_EQ(FirstFile(dock), "abcde</x>");
  EXPECT_EQ(dock.ipod.feature_files().Read("gym-0002.xml"), "xyz");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, UnpluggedInTheMiddleLeavesWhatWasWritten) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  dock.Exchange(kWriteAbc);
  dock.ipod.Unplug(dock.now);
  EXPECT_EQ(FirstFile(dock), "abc");
  EXPECT_TRUE(dock.ipod.open_feature_files().empty());
  dock.ipod.Replug(dock.now);
  IdentifyForWorkouts(dock);
  EXPECT_EQ(dock.Exchange(kWriteDe), kWriteRefused);
  EXPECT_EQ(dock.Mistakes(), "unknown file handle");
  EXPECT_EQ(dock.Exchange(kOpen), "FF 55 03 0C 04 02 EB");
  EXPECT_EQ(FirstFile(dock), "abc");
  EXPECT_EQ(dock.ipod.feature_files().Names().size(), 2U);
}

TEST_F(StorageTest, FreeSpaceShrinksByAllThatIsStored) {
  settings.storage.free_space = 1000;
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  dock.Exchange(kWriteAbc);
  EXPECT_EQ(dock.Exchange("FF 55 02 0C 10 E2"), "FF 55 0A 0C 11 00 00 00 00 00 00 03 E5 F1");
  dock.Exchange(kClose);
  EXPECT_EQ(dock.Exchange("FF 55 02 0C 10 E2"), "FF 55 0A 0C 11 00 00 00 00 00 00 03 E1 F5");
  EXPECT_EQ(dock.ipod.free_space(), 993U);
}

TEST_F(StorageTest, FullDiskRefusesAndKeepsTheRest) {
  settings.storage.free_space = 4;
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange(kWriteAbc), kWritten);
  EXPECT_EQ(dock.Exchange(kWriteDe), kFull);
  EXPECT_EQ(dock.Exchange(kClose), "FF 55 04 0C 00 02 08 E6");
  EXPECT_EQ(FirstFile(dock), "abc");
  EXPECT_TRUE(dock.ipod.open_feature_files().empty());
  EXPECT_EQ(dock.ipod.free_space(), 1U);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, WriteUpToTheLargestSizeIsTaken) {
  settings.storage.max_write_size = 5;
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange("FF 55 0C 0C 07 00 00 00 00 01 61 62 63 64 65 F1"), kWritten);
  EXPECT_EQ(dock.Exchange("FF 55 0D 0C 07 00 00 00 05 01 66 67 68 69 6A 6B 67"), kWriteRefused);
  EXPECT_EQ(FirstFile(dock), "abcde");
  EXPECT_EQ(dock.Mistakes(), "write too large");
  EXPECT_EQ(dock.Exchange("FF 55 0C 0C 12 02 00 00 00 01 66 67 68 69 6A CB"),
            "FF 55 03 0C 04 02 EB");
  EXPECT_EQ(dock.Exchange("FF 55 0D 0C 12 02 00 00 00 01 66 67 68 69 6A 6B 5F"),
            "FF 55 04 0C 00 03 12 DB");
  EXPECT_EQ(dock.Mistakes(), "write too large, write too large");
}

TEST_F(StorageTest, WriteInALargeFrameIsTaken) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  EXPECT_EQ(
      dock.Exchange(
          "FF 55 00 01 33 0C 07 00 00 00 00 01 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 "
          "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 0C"),
      kWritten);
  EXPECT_EQ(FirstFile(dock), std::string(300, 'a'));
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, FileUpToTheLargestSizeIsTaken) {
  settings.storage.max_file_size = 5;
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  dock.Exchange(kWriteAbc);
  EXPECT_EQ(dock.Exchange("FF 55 0A 0C 07 00 00 00 03 01 64 65 66 B0"), kWriteRefused);
  EXPECT_EQ(dock.Mistakes(), "file too large");
  EXPECT_EQ(dock.Exchange(kWriteDe), kWritten);
  EXPECT_EQ(dock.Exchange(kClose), kClosed);
  EXPECT_EQ(FirstFile(dock), "abcde</x>");
}

TEST_F(StorageTest, OffsetFarBeyondTheLargestSizeIsRefused) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange("FF 55 0A 0C 07 FF FF FF FF 01 61 62 63 C0"), kWriteRefused);
  EXPECT_EQ(dock.Mistakes(), "file too large");
  EXPECT_EQ(FirstFile(dock), "");
}

TEST_F(StorageTest, GapIsNamedAndKeptAsZeroBytes) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  dock.Exchange(kWriteAbc);
  EXPECT_EQ(dock.Exchange("FF 55 09 0C 07 00 00 00 05 01 66 67 11"), kWritten);
  EXPECT_EQ(dock.Mistakes(), "gap in a file");
  EXPECT_EQ(FirstFile(dock), std::string("abc\0\0fg", 7));
  EXPECT_EQ(dock.Exchange("FF 55 08 0C 07 00 00 00 07 01 68 75"), kWritten);
  EXPECT_EQ(dock.Mistakes(), "gap in a file");
}

TEST_F(StorageTest, OverlapIsNamedAndRefused) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  dock.Exchange(kWriteAbc);
  EXPECT_EQ(dock.Exchange("FF 55 09 0C 07 00 00 00 02 01 64 65 18"), kWriteRefused);
  EXPECT_EQ(dock.Exchange("FF 55 0A 0C 07 00 00 00 00 01 61 62 64 BB"), kWriteRefused);
  EXPECT_EQ(dock.Mistakes(), "overlap in a file, overlap in a file");
  EXPECT_EQ(FirstFile(dock), "abc");
}

TEST_F(StorageTest, RepeatedWriteIsAcknowledgedAndNotDoubled) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange(kWriteAbc), kWritten);
  EXPECT_EQ(dock.Exchange(kWriteAbc), kWritten);
  EXPECT_EQ(FirstFile(dock), "abc");
  EXPECT_EQ(dock.Exchange(kWriteDe), kWritten);
  EXPECT_EQ(dock.Mistakes(), "");
  EXPECT_EQ(dock.Exchange(kWriteAbc), kWriteRefused);
  EXPECT_EQ(dock.Mistakes(), "overlap in a file");
}

TEST_F(StorageTest, RepeatedCloseIsAcknowledgedAndNotDoubled) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange(kClose), kClosed);
  EXPECT_EQ(dock.Exchange(kClose), kClosed);
  EXPECT_EQ(FirstFile(dock), "</x>");
  EXPECT_EQ(dock.Mistakes(), "");
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange(kClose), "FF 55 04 0C 00 03 08 E5");
  EXPECT_EQ(dock.Mistakes(), "unknown file handle");
}

TEST_F(StorageTest, UnknownHandlesAreNamedAndRefused) {
  IpodUnderTest& dock = Docked();
  EXPECT_EQ(dock.Exchange(kWriteAbc), kWriteRefused);
  EXPECT_EQ(dock.Exchange(kClose), "FF 55 04 0C 00 03 08 E5");
  EXPECT_EQ(dock.Mistakes(), "unknown file handle, unknown file handle");
}

TEST_F(StorageTest, ClosingHandleZeroIsRefusedWithoutAMistake) {
  IpodUnderTest& dock = Docked();
  EXPECT_EQ(dock.Exchange("FF 55 03 0C 08 00 E9"), "FF 55 04 0C 00 03 08 E5");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, OpenWithBadParametersIsNamedAndRefused) {
  IpodUnderTest& dock = Docked();
  const char* const refused = "FF 55 04 0C 00 03 12 DB";
  EXPECT_EQ(dock.Exchange("FF 55 07 0C 12 01 00 00 00 00 DA"), refused);
  EXPECT_EQ(dock.Exchange("FF 55 07 0C 12 02 00 00 00 04 D5"), refused);
  EXPECT_EQ(dock.Exchange("FF 55 0B 0C 12 02 00 00 00 02 3C 2F 78 3E B2"), refused);
  EXPECT_EQ(dock.Mistakes(), "bad parameter, bad parameter, bad parameter");
  EXPECT_TRUE(dock.ipod.feature_files().Names().empty());
}

TEST_F(StorageTest, TooShortCommandsAreRefused) {
  IpodUnderTest& dock = Docked();
  EXPECT_EQ(dock.Exchange("FF 55 06 0C 12 02 00 00 00 DA"), "FF 55 04 0C 00 03 12 DB");
  EXPECT_EQ(dock.Exchange("FF 55 06 0C 07 00 00 00 00 E7"), kWriteRefused);
  EXPECT_EQ(dock.Exchange("FF 55 02 0C 08 EA"), "FF 55 04 0C 00 03 08 E5");
  EXPECT_EQ(dock.Mistakes(), "wrong payload size, wrong payload size, wrong payload size");
}

TEST_F(StorageTest, EightFilesCanBeOpenAtATime) {
  IpodUnderTest& dock = Docked();
  for (int i = 0; i < 8; ++i) dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange(kOpen), "FF 55 04 0C 00 02 12 DC");
  dock.Exchange("FF 55 03 0C 08 03 E6");
  EXPECT_EQ(dock.Exchange(kOpen), "FF 55 03 0C 04 09 E4");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, HandlesStartOverAndLeaveOutZeroAndOpenFiles) {
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  for (int handle = 2; handle <= 255; ++handle) {
    dock.Exchange(kOpen);
    const Bytes data = {static_cast<std::uint8_t>(handle)};
    const Bytes wire = BuildFrame({kStorage, 0x08, data});
    dock.ipod.Receive(wire.data(), wire.size(), dock.now);
    dock.Read();
  }
  EXPECT_EQ(dock.Exchange(kOpen), "FF 55 03 0C 04 02 EB");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, ChosenWritesFailWithTheirStatus) {
  settings.storage.failing_writes = {{2, AckStatus::kFailed}, {3, AckStatus::kOutOfResources}};
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange(kWriteAbc), kWritten);
  EXPECT_EQ(dock.Exchange(kWriteDe), "FF 55 04 0C 00 01 07 E8");
  EXPECT_EQ(dock.Exchange(kWriteDe), kFull);
  EXPECT_EQ(FirstFile(dock), "abc");
  EXPECT_EQ(dock.Exchange(kWriteDe), kWritten);
  EXPECT_EQ(FirstFile(dock), "abcde");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, CommandsCanBeRefusedByNumber) {
  settings.refused[{kStorage, 0x12}] = AckStatus::kOutOfResources;
  settings.refused[{kStorage, 0x10}] = AckStatus::kFailed;
  IpodUnderTest& dock = Docked();
  EXPECT_EQ(dock.Exchange(kOpen), "FF 55 04 0C 00 02 12 DC");
  EXPECT_EQ(dock.Exchange("FF 55 02 0C 10 E2"), "FF 55 04 0C 00 01 10 DF");
  EXPECT_TRUE(dock.ipod.feature_files().Names().empty());
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST_F(StorageTest, IpodWithoutTheLingoRefusesEveryCommand) {
  IpodUnderTest dock(QuietSettings(Profile::kNoSports));
  dock.Identify();
  EXPECT_EQ(dock.Exchange("FF 55 02 0C 01 F1"), "FF 55 04 0C 00 04 01 EB");
  EXPECT_EQ(dock.Exchange("FF 55 02 0C 10 E2"), "FF 55 04 0C 00 04 10 DC");
  EXPECT_EQ(dock.Exchange(kOpen), "FF 55 04 0C 00 04 12 DA");
  EXPECT_EQ(dock.Exchange(kWriteAbc), "FF 55 04 0C 00 04 07 E5");
  EXPECT_EQ(dock.Exchange(kClose), "FF 55 04 0C 00 04 08 E4");
  EXPECT_TRUE(dock.ipod.feature_files().Names().empty());
}

// A place that is full from the start, or fills up.
class FullFiles : public MemoryFeatureFiles {
 public:
  explicit FullFiles(bool creates) : creates_(creates) {}
  std::string Create(const std::string& kind, const std::string& ending) override {
    return creates_ ? MemoryFeatureFiles::Create(kind, ending) : "";
  }
  bool Append(const std::string& /*name*/, const Bytes& /*data*/) override { return false; }

 private:
  const bool creates_;
};

TEST_F(StorageTest, PlaceThatTakesNoFileIsOutOfResources) {
  settings.storage.files = std::make_shared<FullFiles>(false);
  EXPECT_EQ(Docked().Exchange(kOpen), "FF 55 04 0C 00 02 12 DC");
}

TEST_F(StorageTest, PlaceThatTakesNoDataIsOutOfResources) {
  settings.storage.files = std::make_shared<FullFiles>(true);
  IpodUnderTest& dock = Docked();
  dock.Exchange(kOpen);
  EXPECT_EQ(dock.Exchange(kWriteAbc), kFull);
  EXPECT_EQ(dock.ipod.free_space(), settings.storage.free_space);
}

TEST_F(StorageTest, TwoIpodsDoNotShareTheirMemory) {
  IpodUnderTest one(settings);
  IpodUnderTest other(settings);
  IdentifyForWorkouts(one);
  one.Exchange(kOpen);
  EXPECT_EQ(one.ipod.feature_files().Names().size(), 1U);
  EXPECT_TRUE(other.ipod.feature_files().Names().empty());
}

}  // namespace
}  // namespace ipodsim

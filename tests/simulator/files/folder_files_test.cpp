// SPDX-License-Identifier: MIT
// Proves that a simulated iPod's files can be kept in a folder: new ones every time, complete at
// every moment, and nothing that was there touched.

#include "simulator/files/folder_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

using testing::ElementsAre;

class StorageFolderTest : public testing::Test {
 protected:
  StorageFolderTest() {
    char path[] = "/tmp/ipodsim_storage_XXXXXX";
    folder = mkdtemp(path);
  }
  ~StorageFolderTest() override { std::filesystem::remove_all(folder); }

  void WriteFile(const std::string& name, const std::string& content) const {
    std::ofstream(folder + "/" + name) << content;
  }

  std::string ReadFile(const std::string& name) const {
    std::ifstream file(folder + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::vector<std::string> FilesThere() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  std::shared_ptr<FeatureFiles> Open() const { return OpenFeatureFolder(folder).files; }

  // An iPod on the folder, identified by lingoes.
  Settings OnFolder() const {
    Settings settings = QuietSettings();
    settings.storage.files = Open();
    return settings;
  }

  static void OpenAndWriteAbc(IpodUnderTest& dock) {
    dock.Exchange("FF 55 0E 00 13 00 00 12 19 00 00 00 00 00 00 00 00 B4");
    dock.Exchange("FF 55 0B 0C 12 02 00 00 00 01 3C 2F 78 3E B3");
    dock.Exchange("FF 55 0A 0C 07 00 00 00 00 01 61 62 63 BC");
  }

  std::string folder;
};

TEST_F(StorageFolderTest, HoldsWhatIsWrittenAtEveryMoment) {
  IpodUnderTest dock(OnFolder());
  OpenAndWriteAbc(dock);
  EXPECT_EQ(ReadFile("gym-0001.xml"), "abc");
  dock.Exchange("FF 55 09 0C 07 00 00 00 03 01 64 65 17");
  EXPECT_EQ(ReadFile("gym-0001.xml"), "abcde");
  dock.Exchange("FF 55 03 0C 08 01 E8");
  EXPECT_EQ(ReadFile("gym-0001.xml"), "abcde</x>");
  EXPECT_EQ(dock.ipod.feature_files().Read("gym-0001.xml"), "abcde</x>");
  EXPECT_THAT(dock.ipod.feature_files().Names(), ElementsAre("gym-0001.xml"));
}

TEST_F(StorageFolderTest, UnpluggedInTheMiddleLeavesWhatWasWritten) {
  IpodUnderTest dock(OnFolder());
  OpenAndWriteAbc(dock);
  dock.ipod.Unplug(dock.now);
  EXPECT_EQ(ReadFile("gym-0001.xml"), "abc");
  dock.ipod.Replug(dock.now);
  dock.Exchange("FF 55 0E 00 13 00 00 12 19 00 00 00 00 00 00 00 00 B4");
  dock.Exchange("FF 55 0B 0C 12 02 00 00 00 01 3C 2F 78 3E B3");
  dock.Exchange("FF 55 0A 0C 07 00 00 00 00 02 78 79 7A 76");
  EXPECT_EQ(ReadFile("gym-0001.xml"), "abc");
  EXPECT_EQ(ReadFile("gym-0002.xml"), "xyz");
}

TEST_F(StorageFolderTest, AnotherRunLeavesOldFilesAsTheyAre) {
  {
    IpodUnderTest dock(OnFolder());
    OpenAndWriteAbc(dock);
  }
  IpodUnderTest dock(OnFolder());
  OpenAndWriteAbc(dock);
  dock.Exchange("FF 55 03 0C 08 01 E8");
  EXPECT_EQ(ReadFile("gym-0001.xml"), "abc");
  EXPECT_EQ(ReadFile("gym-0002.xml"), "abc</x>");
  EXPECT_THAT(dock.ipod.feature_files().Names(), ElementsAre("gym-0002.xml"));
}

TEST_F(StorageFolderTest, NumbersGoOnAfterTheHighest) {
  WriteFile("gym-0007.xml", "seven");
  WriteFile("gym-9999.xml.bak", "old");
  WriteFile("gym-notes.txt", "notes");
  WriteFile("diary-12345.xml", "diary");
  const auto files = Open();
  EXPECT_EQ(files->Create("gym", ".xml"), "gym-10000.xml");
  EXPECT_EQ(files->Create("gym", ".xml"), "gym-10001.xml");
  EXPECT_THAT(FilesThere(), ElementsAre("diary-12345.xml", "gym-0007.xml", "gym-10000.xml",
                                        "gym-10001.xml", "gym-9999.xml.bak", "gym-notes.txt"));
  EXPECT_EQ(ReadFile("gym-0007.xml"), "seven");
}

TEST_F(StorageFolderTest, TwoIpodsOnOneFolderNeverShareAFile) {
  const auto one = Open();
  const auto other = Open();
  EXPECT_EQ(one->Create("gym", ".xml"), "gym-0001.xml");
  EXPECT_EQ(other->Create("gym", ".xml"), "gym-0002.xml");
  EXPECT_EQ(one->Create("gym", ".xml"), "gym-0003.xml");
  EXPECT_THAT(one->Names(), ElementsAre("gym-0001.xml", "gym-0003.xml"));
}

TEST_F(StorageFolderTest, MissingFolderIsMade) {
  const FolderResult result = OpenFeatureFolder(folder + "/workouts");
  ASSERT_NE(result.files, nullptr) << result.error;
  EXPECT_EQ(result.files->Create("gym", ".xml"), "gym-0001.xml");
  EXPECT_TRUE(std::filesystem::exists(folder + "/workouts/gym-0001.xml"));
}

TEST_F(StorageFolderTest, UnusableFolderIsOneSentence) {
  const FolderResult missing = OpenFeatureFolder(folder + "/a/b");
  EXPECT_EQ(missing.files, nullptr);
  EXPECT_EQ(missing.error, "cannot store files in '" + folder + "/a/b': No such file or directory");
  WriteFile("file", "precious");
  const FolderResult file = OpenFeatureFolder(folder + "/file");
  EXPECT_EQ(file.files, nullptr);
  EXPECT_EQ(file.error, "cannot store files in '" + folder + "/file': Not a directory");
  EXPECT_EQ(ReadFile("file"), "precious");
}

TEST_F(StorageFolderTest, FolderThatGoesAwayTakesNoMoreFiles) {
  IpodUnderTest dock(OnFolder());
  OpenAndWriteAbc(dock);
  std::filesystem::remove_all(folder);
  EXPECT_EQ(dock.Exchange("FF 55 09 0C 07 00 00 00 03 01 64 65 17"), "FF 55 04 0C 00 02 07 E7");
  EXPECT_EQ(dock.Exchange("FF 55 07 0C 12 02 00 00 00 00 D9"), "FF 55 04 0C 00 02 12 DC");
}

TEST_F(StorageFolderTest, WriteThatDoesNotFitLeavesNoPartBehind) {
  const auto files = Open();
  const std::string name = files->Create("gym", ".xml");
  EXPECT_TRUE(files->Append(name, {'a', 'b', 'c'}));
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{5, before.rlim_max};
  const auto old_handler = signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_FALSE(files->Append(name, {'d', 'e', 'f', 'g'}));
  setrlimit(RLIMIT_FSIZE, &before);
  signal(SIGXFSZ, old_handler);
  EXPECT_EQ(ReadFile(name), "abc");
}

}  // namespace
}  // namespace ipodsim

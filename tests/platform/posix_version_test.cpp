// SPDX-License-Identifier: MIT
// Where version resources are looked for on Linux, and what is refused.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "pe_image.h"
#include "support.h"

namespace ipodcomm::test {
namespace {

Bytes Image(const char16_t* version) {
  return PeImage(32, VersionResource({StringNode(u"FileVersion", version)}));
}

std::wstring FileVersion(const wchar_t* file) {
  const DWORD size = GetFileVersionInfoSizeW(file, nullptr);
  if (size == 0) return L"none";
  Bytes block(size);
  void* value = nullptr;
  UINT length = 0;
  EXPECT_TRUE(GetFileVersionInfoW(file, 0, size, block.data()));
  EXPECT_TRUE(
      VerQueryValueW(block.data(), L"\\StringFileInfo\\040904b0\\FileVersion", &value, &length));
  return static_cast<const wchar_t*>(value);
}

class PosixVersion : public PlatformTest {
 protected:
  // A name that no other test uses: the program's folder is shared.
  void SetUp() override {
    name = L"version-test-" + std::to_wstring(getpid()) + L".exe";
    beside = std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
  }
  void TearDown() override { std::filesystem::remove(beside); }

  void PlaceBesideProgram(const Bytes& image) {
    std::ofstream file(beside, std::ios::binary);
    file.write(reinterpret_cast<const char*>(image.data()),
               static_cast<std::streamsize>(image.size()));
  }

  std::wstring name;
  std::filesystem::path beside;
};

TEST_F(PosixVersion, IsFoundBesideTheProgram) {
  PlaceBesideProgram(Image(u"3,1,0,0"));
  EXPECT_EQ(FileVersion(name.c_str()), L"3,1,0,0");
}

TEST_F(PosixVersion, IsFoundInTheWorkingDirectoryFirst) {
  PlaceBesideProgram(Image(u"3,1,0,0"));
  world.PlaceFile(name.c_str(), Image(u"2,5,0,17"));
  EXPECT_EQ(FileVersion(name.c_str()), L"2,5,0,17");
}

TEST_F(PosixVersion, APathIsTakenAsItStands) {
  PlaceBesideProgram(Image(u"3,1,0,0"));
  EXPECT_EQ(FileVersion((L"./" + name).c_str()), L"none");
  EXPECT_EQ(FileVersion(beside.wstring().c_str()), L"3,1,0,0");
}

TEST_F(PosixVersion, TheReasonIsTold) {
  GetFileVersionInfoSizeW(L"no such file.exe", nullptr);
  EXPECT_EQ(GetLastError(), 2U);
  world.PlaceFile(name.c_str(), {'n', 'o'});
  GetFileVersionInfoSizeW(name.c_str(), nullptr);
  EXPECT_EQ(GetLastError(), 1812U);
  Bytes image = Image(u"2,5,0,17");
  Put32(image, kResources + 0x10, 3);
  world.PlaceFile(name.c_str(), image);
  GetFileVersionInfoSizeW(name.c_str(), nullptr);
  EXPECT_EQ(GetLastError(), 1813U);
}

TEST_F(PosixVersion, WhatIsNoFileHasNone) {
  ASSERT_EQ(mkdir("folder.exe", 0700), 0);
  EXPECT_EQ(FileVersion(L"folder.exe"), L"none");
  ASSERT_EQ(mkfifo("pipe.exe", 0600), 0);
  EXPECT_EQ(FileVersion(L"pipe.exe"), L"none");  // and does not wait for a writer
  EXPECT_EQ(FileVersion(L""), L"none");
  EXPECT_EQ(GetFileVersionInfoSizeW(nullptr, nullptr), 0U);
}

TEST_F(PosixVersion, TooLittleRoomIsRefused) {
  world.PlaceFile(name.c_str(), Image(u"2,5,0,17"));
  const DWORD size = GetFileVersionInfoSizeW(name.c_str(), nullptr);
  Bytes block(size, 0xA5);
  SetLastError(0);
  EXPECT_FALSE(GetFileVersionInfoW(name.c_str(), 0, size - 1, block.data()));
  EXPECT_EQ(GetLastError(), 122U);
  EXPECT_EQ(block, Bytes(size, 0xA5));
}

}  // namespace
}  // namespace ipodcomm::test

// SPDX-License-Identifier: MIT
// A console's host program: this very program is called qz104.exe, and what the library tells the
// iPod as the accessory's version is in its version resource. So are the versions of what we ship.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "identify/file_version.h"
#include "platform/services.h"

namespace {

TEST(HostProgram, ItsOwnVersionIsRead) {
  int major = 0;
  int minor = 0;
  int build = 0;
  int private_part = 0;
  EXPECT_EQ(ipodcomm::ReadFileVersion(L"qz104.exe", &major, &minor, &build, &private_part), 1);
  EXPECT_EQ(major, 3);
  EXPECT_EQ(minor, 14);
  EXPECT_EQ(build, 15);
  EXPECT_EQ(private_part, 9);
}

TEST(HostProgram, ItsVersionGoesOnTheWireAsThreeBytes) {
  const ipodcomm::HostVersion version = ipodcomm::ReadHostVersion();
  EXPECT_EQ(version.bytes[0], 3);
  EXPECT_EQ(version.bytes[1], 14);
  EXPECT_EQ(version.bytes[2], 0);
}

TEST(HostProgram, AMissingProgramHasNoVersion) {
  int major = -1;
  int minor = -2;
  EXPECT_EQ(ipodcomm::ReadFileVersion(L"qz105.exe", &major, &minor, nullptr, nullptr), 0);
  EXPECT_EQ(major, -1);
  EXPECT_EQ(minor, -2);
}

// A file of the build's program folder, which is beside that of this program.
std::wstring Path(const wchar_t* file) {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  return std::filesystem::path(program).parent_path().parent_path() / L"bin" / file;
}

// What Windows shows of a file.
class Shipped : public ::testing::TestWithParam<const wchar_t*> {
 protected:
  void SetUp() override {
    DWORD unused = 0;
    const std::wstring path = Path(GetParam());
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &unused);
    ASSERT_NE(size, 0U);
    block_.resize(size);
    ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, size, block_.data()));
  }

  std::wstring Text(const std::wstring& name) {
    void* value = nullptr;
    UINT length = 0;
    const std::wstring path = L"\\StringFileInfo\\040904b0\\" + name;
    if (VerQueryValueW(block_.data(), path.c_str(), &value, &length) == FALSE) return L"(none)";
    return static_cast<const wchar_t*>(value);
  }

  std::vector<char> block_;
};

TEST_P(Shipped, TellsProductAndVersion) {
  EXPECT_EQ(Text(L"ProductName"), L"ipodcomm");
  EXPECT_EQ(Text(L"ProductVersion"), L"" IPODCOMM_VERSION);
  EXPECT_EQ(Text(L"FileVersion"), L"" IPODCOMM_VERSION);
  EXPECT_EQ(Text(L"OriginalFilename"), GetParam());
  EXPECT_NE(Text(L"FileDescription"), L"(none)");
  EXPECT_EQ(Text(L"CompanyName"), L"(none)");
}

TEST_P(Shipped, TellsTheVersionInNumbersToo) {
  void* value = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block_.data(), L"\\", &value, &length));
  const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(value);
  const std::string version = std::to_string(HIWORD(fixed.dwFileVersionMS)) + "." +
                              std::to_string(LOWORD(fixed.dwFileVersionMS)) + "." +
                              std::to_string(HIWORD(fixed.dwFileVersionLS));
  EXPECT_EQ(version, IPODCOMM_VERSION);
}

INSTANTIATE_TEST_SUITE_P(Files, Shipped,
                         ::testing::Values(L"ipodcomm.dll", L"tracelog.dll", L"ipodctl.exe"));

}  // namespace

// SPDX-License-Identifier: MIT
// Version resources of well-formed executable files, made byte by byte.
#include <string>

#include "pe_image.h"
#include "support.h"

namespace ipodcomm::test {
namespace {

constexpr const wchar_t* kProgram = L"qz104.exe";
constexpr const wchar_t* kFileVersion = L"\\StringFileInfo\\040904b0\\FileVersion";

class Version : public PlatformTest {
 protected:
  void Place(int bits) {
    world.PlaceFile(kProgram, PeImage(bits, VersionResource({
                                                StringNode(u"CompanyName", u"Orvian Fitness"),
                                                StringNode(u"FileVersion", u"2,5,0,17"),
                                                StringNode(u"InternalName", u"qz\u00E9"),
                                            })));
  }

  // The file's resource; empty when it has none.
  static Bytes Load(const wchar_t* file) {
    DWORD handle = 7;
    const DWORD size = GetFileVersionInfoSizeW(file, &handle);
    EXPECT_EQ(handle, 0U);
    Bytes block(size);
    if (size == 0) return {};
    EXPECT_TRUE(GetFileVersionInfoW(file, 0, size, block.data()));
    return block;
  }

  static std::wstring Query(const Bytes& block, const wchar_t* path) {
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(block.data(), path, &value, &length)) return L"not found";
    const auto* text = static_cast<const wchar_t*>(value);
    EXPECT_EQ(text[length - 1], L'\0');
    return {text, length - 1};
  }
};

TEST_F(Version, IsReadFrom32BitFiles) {
  Place(32);
  EXPECT_EQ(Query(Load(kProgram), kFileVersion), L"2,5,0,17");
}

TEST_F(Version, IsReadFrom64BitFiles) {
  Place(64);
  EXPECT_EQ(Query(Load(kProgram), kFileVersion), L"2,5,0,17");
}

TEST_F(Version, EveryStringIsFound) {
  Place(32);
  const Bytes block = Load(kProgram);
  EXPECT_EQ(Query(block, L"\\StringFileInfo\\040904b0\\CompanyName"), L"Orvian Fitness");
  EXPECT_EQ(Query(block, L"\\StringFileInfo\\040904b0\\InternalName"), L"qz\u00E9");
}

TEST_F(Version, PathsMayHaveAnyCase) {
  Place(32);
  const Bytes block = Load(kProgram);
  EXPECT_EQ(Query(block, L"\\stringfileinfo\\040904B0\\FILEVERSION"), L"2,5,0,17");
}

TEST_F(Version, TheValueLivesInTheBlock) {
  Place(32);
  const Bytes block = Load(kProgram);
  void* value = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), kFileVersion, &value, &length));
  EXPECT_EQ(length, 9U);
  EXPECT_GE(static_cast<const std::uint8_t*>(value), block.data());
  EXPECT_LE(static_cast<const wchar_t*>(value) + length,
            static_cast<const void*>(block.data() + block.size()));
}

TEST_F(Version, TheFixedPartIsFound) {
  Place(32);
  const Bytes block = Load(kProgram);
  void* value = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &value, &length));
  EXPECT_EQ(length, 52U);
  const auto* bytes = static_cast<const std::uint8_t*>(value);
  EXPECT_EQ(bytes[0], 0xBD);
  EXPECT_EQ(bytes[3], 0xFE);
}

TEST_F(Version, WhatIsNotThereIsNotFound) {
  Place(32);
  const Bytes block = Load(kProgram);
  EXPECT_EQ(Query(block, L"\\StringFileInfo\\040904b0\\Comments"), L"not found");
  EXPECT_EQ(Query(block, L"\\StringFileInfo\\040704b0\\FileVersion"), L"not found");
  EXPECT_EQ(Query(block, L"\\StringFileInfo\\040904b0\\FileVersion2"), L"not found");
}

TEST_F(Version, AMissingFileHasNone) {
  SetLastError(0);
  EXPECT_EQ(Load(L"no such file.exe"), Bytes{});
  EXPECT_NE(GetLastError(), 0U);
  char block[16];
  EXPECT_FALSE(GetFileVersionInfoW(L"no such file.exe", 0, sizeof block, block));
}

TEST_F(Version, AFileThatIsNoExecutableHasNone) {
  world.PlaceFile(kProgram, {'h', 'e', 'l', 'l', 'o'});
  SetLastError(0);
  EXPECT_EQ(Load(kProgram), Bytes{});
  EXPECT_NE(GetLastError(), 0U);
}

}  // namespace
}  // namespace ipodcomm::test

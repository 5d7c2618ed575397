// SPDX-License-Identifier: MIT
// Executable files that lie: every truncation, every byte changed, and mistakes made on purpose.
// The reader gives an error or what is really there, and never leaves the file.
#include <cstring>
#include <string>

#include "pe_image.h"
#include "platform/common/pe_file.h"
#include "platform/common/version_block.h"
#include "support.h"

namespace ipodcomm::test {
namespace {

using platform::FindVersionValue;
using platform::MakeVersionBlock;
using platform::VersionValue;

constexpr const wchar_t* kFileVersion = L"\\StringFileInfo\\040904b0\\FileVersion";

Bytes Resource() { return VersionResource({StringNode(u"FileVersion", u"2,5,0,17")}); }

DWORD ReadResource(const Bytes& file, Bytes* resource) {
  return platform::ReadVersionResource(
      [&file](std::uint64_t offset, void* buffer, std::size_t size) {
        if (offset > file.size() || size > file.size() - offset) return false;
        if (size != 0) std::memcpy(buffer, file.data() + offset, size);
        return true;
      },
      resource);
}

std::wstring Find(const Bytes& block, const std::wstring& path) {
  VersionValue value = {};
  if (block.empty() || !FindVersionValue(block.data(), path, &value)) return L"not found";
  return {static_cast<const wchar_t*>(value.data), value.length - 1};
}

// What a host would see of `file`.
std::wstring FileVersion(const Bytes& file) {
  Bytes resource;
  if (ReadResource(file, &resource) != ERROR_SUCCESS) return L"refused";
  return Find(MakeVersionBlock(resource), kFileVersion);
}

TEST(HostileVersion, TheHonestImageIsRead) {
  EXPECT_EQ(FileVersion(PeImage(32, Resource())), L"2,5,0,17");
  EXPECT_EQ(FileVersion(PeImage(64, Resource())), L"2,5,0,17");
}

TEST(HostileVersion, EveryTruncationIsRefused) {
  const std::size_t needed = kVersion + Resource().size();
  for (const int bits : {32, 64}) {
    const Bytes whole = PeImage(bits, Resource());
    for (std::size_t size = 0; size < needed; ++size) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      ASSERT_EQ(FileVersion(cut), L"refused") << size;
    }
    const Bytes enough(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(needed));
    EXPECT_EQ(FileVersion(enough), L"2,5,0,17");
  }
}

TEST(HostileVersion, EveryByteMayBeAnything) {
  const Bytes whole = PeImage(32, Resource());
  const std::size_t used = kVersion + Resource().size();
  for (std::size_t offset = 0; offset < used; ++offset) {
    for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      Bytes changed = whole;
      changed[offset] = static_cast<std::uint8_t>(value);
      EXPECT_LE(FileVersion(changed).size(), used);
    }
  }
}

TEST(HostileVersion, EveryTruncationOfTheResourceKeepsItsWordsInside) {
  const Bytes whole = Resource();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    ASSERT_TRUE(MakeVersionBlock(cut).empty()) << size;  // the root's length says more
  }
  for (std::size_t size = 6; size < whole.size(); ++size) {
    Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    Put16(cut, 0, static_cast<unsigned>(size));  // a root that claims to be this short
    const std::wstring found = Find(MakeVersionBlock(cut), kFileVersion);
    EXPECT_TRUE(found == L"not found" || found == L"2,5,0,17") << size;
  }
}

TEST(HostileVersion, WrongSignaturesAreRefused) {
  for (const std::size_t offset :
       {std::size_t{0}, std::size_t{1}, kPeSignature, kPeSignature + 1, kPeSignature + 2,
        kPeSignature + 3, kOptionalHeader, kOptionalHeader + 1}) {
    Bytes image = PeImage(32, Resource());
    image[offset] ^= 0x40;
    EXPECT_EQ(FileVersion(image), L"refused") << offset;
  }
}

TEST(HostileVersion, HeadersOutsideTheFileAreRefused) {
  Bytes image = PeImage(32, Resource());
  Put32(image, 0x3C, 0xFFFFFFFF);
  EXPECT_EQ(FileVersion(image), L"refused");
  image = PeImage(32, Resource());
  Put16(image, kPeSignature + 6, 0xFFFF);  // more sections than there are
  EXPECT_EQ(FileVersion(image), L"refused");
  image = PeImage(32, Resource());
  Put16(image, kPeSignature + 20, 0xFFFF);  // an optional header beyond the end
  EXPECT_EQ(FileVersion(image), L"refused");
}

TEST(HostileVersion, ImagesWithoutResourcesAreRefused) {
  Bytes image = PeImage(32, Resource());
  Put32(image, kOptionalHeader + 96 + 16, 0);
  EXPECT_EQ(FileVersion(image), L"refused");
  image = PeImage(32, Resource());
  Put32(image, kOptionalHeader + 92, 2);  // no third directory
  EXPECT_EQ(FileVersion(image), L"refused");
  image = PeImage(32, Resource());
  Put16(image, kPeSignature + 6, 0);  // no section holds it
  EXPECT_EQ(FileVersion(image), L"refused");
  image = PeImage(32, Resource());
  Put16(image, kPeSignature + 20, 100);  // an optional header that ends before it
  EXPECT_EQ(FileVersion(image), L"refused");
}

TEST(HostileVersion, ResourcesWithoutAVersionSaySo) {
  Bytes image = PeImage(32, Resource());
  Put32(image, kResources + 0x10, 3);  // an icon
  Bytes resource;
  EXPECT_EQ(ReadResource(image, &resource), 1813U);
}

TEST(HostileVersion, ATreeThatGoesInCirclesEnds) {
  Bytes image = PeImage(32, Resource());
  Put32(image, kResources + 0x14, 0x80000000);  // the version type is the root again
  EXPECT_EQ(FileVersion(image), L"refused");
  image = PeImage(32, Resource());
  Put32(image, kResources + 0x44, 0x80000030);  // the language is itself again
  EXPECT_EQ(FileVersion(image), L"refused");
}

TEST(HostileVersion, OffsetsFarAwayAreRefused) {
  for (const std::size_t offset : {kResources + 0x14, kResources + 0x2C, kResources + 0x44}) {
    for (const std::uint32_t value : {0x7FFFFFFFU, 0xFFFFFFFFU, 0x00010000U, 0x80010000U}) {
      Bytes image = PeImage(32, Resource());
      Put32(image, offset, value);
      EXPECT_EQ(FileVersion(image), L"refused") << offset << " " << value;
    }
  }
  for (const std::uint32_t address : {0U, 0xFFFU, 0x2000U, 0xFFFFFFFFU}) {
    Bytes image = PeImage(32, Resource());
    Put32(image, kDataEntry, address);
    EXPECT_EQ(FileVersion(image), L"refused") << address;
  }
}

TEST(HostileVersion, WhatStandsBehindTheSectionIsNotInMemory) {
  Bytes image = PeImage(32, Resource());
  const auto behind = static_cast<std::uint32_t>(image.size() - kResources);
  const Bytes resource = Resource();
  image.insert(image.end(), resource.begin(), resource.end());
  Put32(image, kDataEntry, kResourceAddress + behind);
  EXPECT_EQ(FileVersion(image), L"refused");
}

TEST(HostileVersion, SizesBeyondTheFileAreRefused) {
  for (const std::uint32_t size : {0x00000800U, 0x0000FFFFU, 0x00010000U, 0xFFFFFFFFU}) {
    Bytes image = PeImage(32, Resource());
    Put32(image, kDataEntry + 4, size);
    EXPECT_EQ(FileVersion(image), L"refused") << size;
  }
  Bytes image = PeImage(32, Resource());
  Put32(image, kDataEntry + 4, 0);
  EXPECT_EQ(FileVersion(image), L"not found");
}

TEST(HostileVersion, ManyNamedEntriesAreSkipped) {
  Bytes image = PeImage(32, Resource());
  Put16(image, kResources + 12, 0xFFFF);
  Put16(image, kResources + 14, 0xFFFF);
  EXPECT_EQ(FileVersion(image), L"2,5,0,17");  // the first entry is still the version
  Put32(image, kResources + 0x10, 99);
  EXPECT_EQ(FileVersion(image), L"refused");
}

TEST(HostileVersion, NodesOfNoLengthEndTheirList) {
  Bytes resource =
      VersionResource({VersionNode(u"", true, 0, {}, {}), StringNode(u"FileVersion", u"2,5,0,17")});
  EXPECT_EQ(Find(MakeVersionBlock(resource), kFileVersion), L"2,5,0,17");
  Bytes zero_length = VersionNode(u"a", true, 0, {}, {});
  Put16(zero_length, 0, 0);
  resource = VersionResource({zero_length, StringNode(u"FileVersion", u"2,5,0,17")});
  EXPECT_EQ(Find(MakeVersionBlock(resource), kFileVersion), L"not found");
}

TEST(HostileVersion, ANodeLongerThanItsParentIsLeftOut) {
  Bytes longer = StringNode(u"FileVersion", u"2,5,0,17");
  Put16(longer, 0, 0xFFFF);
  EXPECT_EQ(Find(MakeVersionBlock(VersionResource({longer})), kFileVersion), L"not found");
}

TEST(HostileVersion, AValueIsCutAtItsNodesEnd) {
  Bytes longer = StringNode(u"FileVersion", u"2,5,0,17");
  Put16(longer, 2, 0xFFFF);
  EXPECT_EQ(Find(MakeVersionBlock(VersionResource({longer})), kFileVersion), L"2,5,0,17");
  Bytes shorter = StringNode(u"FileVersion", u"2,5,0,17");
  Put16(shorter, 2, 3);
  EXPECT_EQ(Find(MakeVersionBlock(VersionResource({shorter})), kFileVersion), L"2,5");
}

TEST(HostileVersion, AnEmptyValueIsAnEmptyText) {
  const Bytes resource = VersionResource({VersionNode(u"FileVersion", true, 0, {}, {})});
  EXPECT_EQ(Find(MakeVersionBlock(resource), kFileVersion), L"");
}

TEST(HostileVersion, TextOutsideTheFirstPlaneAndBrokenPairs) {
  const Bytes resource = VersionResource(
      {StringNode(u"FileVersion", {u'a', 0xD83C, 0xDFB5, u'b', 0xD83C, u'c', 0xDFB5})});
  EXPECT_EQ(Find(MakeVersionBlock(resource), kFileVersion), L"a\U0001F3B5b\uFFFDc\uFFFD");
}

TEST(HostileVersion, WhatIsNoVersionResourceMakesNoBlock) {
  EXPECT_TRUE(MakeVersionBlock({}).empty());
  EXPECT_TRUE(MakeVersionBlock(Bytes(5, 0xFF)).empty());
  EXPECT_TRUE(MakeVersionBlock(Bytes(1000, 0)).empty());
  EXPECT_TRUE(MakeVersionBlock(Bytes(1000, 0xFF)).empty());
  EXPECT_TRUE(MakeVersionBlock(VersionNode(u"SOMETHING_ELSE", false, 0, {}, {})).empty());
}

TEST(HostileVersion, ASmallResourceMakesNoHugeBlock) {
  // Thousands of the smallest nodes below the longest key.
  std::vector<Bytes> nodes(7000, VersionNode(u"", true, 0, {}, {}));
  const Bytes table = VersionNode(std::u16string(2000, u'k'), true, 0, {}, nodes);
  const Bytes info = VersionNode(u"StringFileInfo", true, 0, {}, {table});
  const Bytes resource = VersionNode(u"VS_VERSION_INFO", false, 0, {}, {info});
  ASSERT_LT(resource.size(), 0x10000U);
  EXPECT_LT(MakeVersionBlock(resource).size(), 0x1000000U);
}

TEST(HostileVersion, ABlockOfSomethingElseIsRefused) {
  alignas(8) const char other[64] = "this is no version block at all";
  void* value = nullptr;
  UINT length = 0;
  EXPECT_FALSE(VerQueryValueW(other, kFileVersion, &value, &length));
  EXPECT_FALSE(VerQueryValueW(nullptr, kFileVersion, &value, &length));
}

}  // namespace
}  // namespace ipodcomm::test

// SPDX-License-Identifier: MIT
// Proves that a Windows host can link the library, shared or static, and call what it exports.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/CIpodSerial.h"
#include "ipodcomm/TraceLog.h"
#include "ipodcomm/ipod.h"

namespace {

TEST(WindowsHost, ConstantsAreExportedAsDataWithAnAddress) {
  const unsigned char* start = &ipod::IPOD_PACKET_START_VAL;
  const unsigned char* sync = &ipod::IPOD_PACKET_SYNC_VAL;
  EXPECT_EQ(0x55, *start);
  EXPECT_EQ(0xFF, *sync);
}

TEST(WindowsHost, ClosedPortRefusesToWrite) {
  CIpodSerial serial;
  unsigned char frame[] = {0xFF, 0x55, 0x02, 0x00, 0x00, 0xFE};
  EXPECT_EQ(6, serial.WritePacket(frame, sizeof frame));
}

TEST(WindowsHost, ClosedPortHoldsNoPacket) {
  CIpodSerial serial;
  unsigned char buffer[64] = {};
  unsigned long length = 0;
  EXPECT_EQ(6, serial.ReadPacket(buffer, sizeof buffer, &length, nullptr));
  EXPECT_EQ(0U, length);
}

TEST(WindowsHost, CopiesOfATransportAreDestroyedInAnyOrder) {
  auto* first = new CIpodSerial;
  auto* second = new CIpodSerial(*first);
  delete first;
  unsigned char frame[] = {0xFF, 0x55, 0x02, 0x00, 0x00, 0xFE};
  EXPECT_EQ(6, second->WritePacket(frame, sizeof frame));
  delete second;
}

// A list as a host makes it: its first element is its number of elements.
wchar_t** MakeRecordNames(std::uintptr_t count) {
  auto** names = static_cast<wchar_t**>(LocalAlloc(LPTR, (count + 1) * sizeof(wchar_t*)));
  names[0] = reinterpret_cast<wchar_t*>(count);
  for (std::uintptr_t i = 1; i < count; ++i) {
    names[i] = static_cast<wchar_t*>(LocalAlloc(LPTR, 16));
  }
  return names;
}

// Whatever the number looks like as an address: aligned as a block, marked as a movable one, or
// odd.
TEST(WindowsHost, ReleasingRecordListsOfAnyLengthLeavesTheHeapWhole) {
  ipod legacy;
  for (const std::uintptr_t count : {0U, 1U, 2U, 3U, 7U, 8U, 16U, 24U, 64U, 100U, 4096U}) {
    wchar_t** names = MakeRecordNames(count);
    legacy.deleterecords(&names, nullptr);
    EXPECT_NE(0, HeapValidate(GetProcessHeap(), 0, nullptr)) << count;
  }
}

TEST(WindowsHost, LoggedErrorsGoToStandardErrorAfterTheWindowsRules) {
  testing::internal::CaptureStderr();
  CKORVATrace::LogSoftwareError(L"WindowsHost::Test", L"%s failed with %d (%S)", L"wide", 22,
                                "narrow");
  EXPECT_EQ("WindowsHost::Test: wide failed with 22 (narrow)\n",
            testing::internal::GetCapturedStderr());
}

}  // namespace

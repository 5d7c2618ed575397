// SPDX-License-Identifier: MIT
// A host that defines the trace function itself gets the library's errors, whether the stand-in is
// linked as a shared or as a static library.
#include <gtest/gtest.h>

#include <string>

#include "ipodcomm/TraceLog.h"

void LogFromLibrary();

namespace {
std::wstring logged;
}

void CKORVATrace::LogSoftwareError(const wchar_t* source, const wchar_t* format, ...) {
  logged = std::wstring(source) + L" | " + format;
}

namespace {

TEST(ReplacedTraceLog, GetsTheLibrarysErrors) {
  ::testing::internal::CaptureStderr();
  LogFromLibrary();
  EXPECT_EQ(logged, L"CIpodSerial::Open | Error %d");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

}  // namespace

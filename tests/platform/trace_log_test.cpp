// SPDX-License-Identifier: MIT
// The stand-in for the maker's trace library writes one line per logged error.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "ipodcomm/TraceLog.h"

namespace {

TEST(TraceLog, WritesOneLineToStandardError) {
  ::testing::internal::CaptureStderr();
  CKORVATrace::LogSoftwareError(L"CIpodSerial::Open", L"Error opening iPod serial port");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "CIpodSerial::Open: Error opening iPod serial port\n");
}

TEST(TraceLog, FormatsAfterTheWindowsRules) {
  ::testing::internal::CaptureStderr();
  CKORVATrace::LogSoftwareError(L"CIpodComm::Select", L"%s %d %hs", L"wide", -7, "narrow");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "CIpodComm::Select: wide -7 narrow\n");
}

TEST(TraceLog, WritesUtf8) {
  ::testing::internal::CaptureStderr();
  CKORVATrace::LogSoftwareError(L"source", L"%s", L"Beyonc\u00E9 \U0001F3B5");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "source: Beyonc\xC3\xA9 \xF0\x9F\x8E\xB5\n");
}

TEST(TraceLog, TakesTextOfAnyLengthAndNoSource) {
  ::testing::internal::CaptureStderr();
  CKORVATrace::LogSoftwareError(nullptr, L"%s", std::wstring(5000, L'a').c_str());
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), ": " + std::string(5000, 'a') + "\n");
}

TEST(TraceLog, IsSilentOnRequest) {
  const auto set = [](const char* value) {
#if defined(_WIN32)
    _putenv_s("IPODCOMM_TRACE", value);
#else
    setenv("IPODCOMM_TRACE", value, 1);
#endif
  };
  set("off");
  ::testing::internal::CaptureStderr();
  CKORVATrace::LogSoftwareError(L"source", L"not told");
  set("on");
  CKORVATrace::LogSoftwareError(L"source", L"told");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "source: told\n");
}

}  // namespace

// SPDX-License-Identifier: MIT
// Debug output on Linux: to standard error when it is asked for, else nowhere.
#include <cstdlib>

#include "support.h"

namespace ipodcomm::test {
namespace {

std::string Printed() {
  ::testing::internal::CaptureStderr();
  NKDbgPrintfW(L"Failed to extract file version from %s!\r\n", L"qz\u00E9.exe");
  return ::testing::internal::GetCapturedStderr();
}

TEST(DebugOutput, GoesToStandardErrorWhenAskedFor) {
  setenv("IPODCOMM_DEBUG", "1", 1);
  EXPECT_EQ(Printed(), "Failed to extract file version from qz\xC3\xA9.exe!\r\n");
}

TEST(DebugOutput, GoesNowhereElse) {
  for (const char* value : {"", "0", "yes", "11"}) {
    setenv("IPODCOMM_DEBUG", value, 1);
    EXPECT_EQ(Printed(), "");
  }
  unsetenv("IPODCOMM_DEBUG");
  EXPECT_EQ(Printed(), "");
}

TEST(DebugOutput, TakesTextOfAnyLength) {
  setenv("IPODCOMM_DEBUG", "1", 1);
  ::testing::internal::CaptureStderr();
  NKDbgPrintfW(L"%s", std::wstring(100000, L'a').c_str());
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), std::string(100000, 'a'));
}

}  // namespace
}  // namespace ipodcomm::test

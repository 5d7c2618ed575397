// SPDX-License-Identifier: MIT
// Tells virtual worlds about the running test: whether it has failed, and how it is repeated.
// Linked into a test program, it registers itself.
#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>

#include "world/world.h"

namespace {

std::string ProgramPath() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : "<test program>";
}

std::string Command() {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  if (test == nullptr) return ProgramPath();
  return ProgramPath() + " --gtest_filter=" + test->test_suite_name() + "." + test->name();
}

const bool registered = [] {
  ipodcomm::virtual_platform::SetTestHooks({testing::Test::HasFailure, Command});
  return true;
}();

}  // namespace

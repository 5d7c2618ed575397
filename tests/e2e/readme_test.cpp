// SPDX-License-Identifier: MIT
// The README's host program, as it stands there, on a docked iPod.
#include <gtest/gtest.h>

#include "docked_ipod.h"
#include "support/process.h"

namespace {

test::Ended RunHost(const std::string& device) {
  return test::RunProgram("/usr/bin/env",
                          {"IPODCOMM_COM2=" + device, "LC_ALL=C.UTF-8", README_HOST_PROGRAM});
}

TEST(ReadmeHost, ListsTheArtistsOfTheDockedIpod) {
  const e2e::DockedIpod dock;
  const test::Ended ended = RunHost(dock.device());
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "Jürgen Größe\nThe Hum\n山田\n");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(ReadmeHost, EndsWithAnErrorWhereThereIsNoPort) {
  const test::Ended ended = RunHost("/dev/no-such-dock");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
}

}  // namespace

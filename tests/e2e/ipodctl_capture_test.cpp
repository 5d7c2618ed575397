// SPDX-License-Identifier: MIT
// ipodctl --capture: what a recording of a whole session holds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

#include "support/process.h"
#include "support/temporary_folder.h"

using test::Ended;
using test::Ipodctl;
using test::TemporaryFolder;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

// The first bytes of a section, as they stand in a file.
const std::string kSection("\x0A\x0D\x0D\x0A", 4);

std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::uint32_t Word(const std::string& text, std::size_t at) {
  std::uint32_t word = 0;
  for (std::size_t i = 4; i-- > 0;) word = word << 8 | static_cast<std::uint8_t>(text.at(at + i));
  return word;
}

// The event of the last packet: 6 when the recording was closed.
int LastEvent(const std::string& recording) {
  int event = -1;
  for (std::size_t at = 0; at < recording.size(); at += Word(recording, at + 4)) {
    if (Word(recording, at) == 6) event = static_cast<std::uint8_t>(recording.at(at + 36));
  }
  return event;
}

TEST(IpodctlCapture, RecordsTheLineBesideWhatTheCommandDoes) {
  const TemporaryFolder folder;
  const Ended plain = Ipodctl({"--simulated", "info", "--json"});
  const Ended recorded =
      Ipodctl({"--simulated", "--capture", folder.path("line.pcapng"), "info", "--json"});
  EXPECT_EQ(recorded.status, 0) << recorded.err;
  EXPECT_EQ(recorded.err, "");
  EXPECT_EQ(recorded.out.size(), plain.out.size());
  const std::string recording = Contents(folder.path("line.pcapng"));
  EXPECT_THAT(recording, StartsWith(kSection));
  EXPECT_EQ(LastEvent(recording), 6);
  // What the iPod calls itself, as it came over the line.
  EXPECT_THAT(recording, HasSubstr("Zoë’s iPod"));
}

TEST(IpodctlCapture, OnStandardOutputMovesTheCommandsTextAside) {
  const Ended ended = Ipodctl({"--simulated", "--capture", "-", "info"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.out, StartsWith(kSection));
  EXPECT_EQ(LastEvent(ended.out), 6);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("Model"), HasSubstr("MB598LL")));
}

TEST(IpodctlCapture, ThatCannotBeMadeIsSaidBeforeAnythingIsDone) {
  const Ended ended = Ipodctl({"--simulated", "--capture", "/nowhere/line.pcapng", "info"});
  EXPECT_EQ(ended.status, 73);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err,
            "ipodctl: cannot record to /nowhere/line.pcapng: No such file or directory.\n");
}

TEST(IpodctlCapture, OnAFullDiskEndsAndTheCommandDoesNot) {
  const Ended ended = Ipodctl({"--simulated", "--capture", "/dev/full", "info"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "ipodcomm: the recording /dev/full ends here: No space left on device\n");
  EXPECT_THAT(ended.out, HasSubstr("MB598LL"));
}

}  // namespace

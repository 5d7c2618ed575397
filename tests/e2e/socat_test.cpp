// SPDX-License-Identifier: MIT
// One session, seen three times: by socat, which passes its bytes on between two pseudo-terminals,
// in the recording, and in what tshark shows of that.
#include <gtest/gtest.h>

#include <cctype>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>

#include "support/pcapng_reader.h"
#include "support/process.h"
#include "support/temporary_folder.h"
#include "support/tshark.h"

using test::Bytes;
using test::Ended;
using test::Process;

namespace {

constexpr const char* kSocat = "/usr/bin/socat";

struct BothDirections {
  Bytes to_ipod;
  Bytes from_ipod;
};

std::uint8_t ByteOf(const std::string& digits) {
  return static_cast<std::uint8_t>(std::stoul(digits, nullptr, 16));
}

// Of "> 2026/11/22 10:15:02.000356325  length=8 from=0 to=7" and lines behind it, " FF 55 ...",
// with sixteen bytes at the most and then the same as text.
BothDirections BytesOfSocat(const std::string& dump) {
  BothDirections seen;
  Bytes* direction = nullptr;
  for (const std::string& line : test::LinesOf(dump)) {
    if (line.find(" length=") != std::string::npos) {
      direction = line[0] == '>' ? &seen.to_ipod : &seen.from_ipod;
      continue;
    }
    const auto is_byte = [&](std::size_t at) {
      return at + 2 < line.size() && line[at] == ' ' && std::isxdigit(line[at + 1]) != 0;
    };
    for (std::size_t at = 0; at < 48 && is_byte(at); at += 3) {
      if (direction != nullptr) direction->push_back(ByteOf(line.substr(at + 1, 2)));
    }
  }
  return seen;
}

// What follows the twelve bytes in front of each packet, which tshark shows as digits.
BothDirections BytesOfTshark(const std::string& recording) {
  BothDirections seen;
  const std::string text = test::Tshark(recording, {"-T", "json", "-x"});
  for (const nlohmann::json& packet : nlohmann::json::parse(text)) {
    const nlohmann::json& layers = packet["_source"]["layers"];
    const std::string event = layers["ipodcomm"]["ipodcomm.event"];
    const std::string digits = layers["frame_raw"][0];
    Bytes* const direction = event == "1" ? &seen.to_ipod : &seen.from_ipod;
    for (std::size_t at = 24; at < digits.size(); at += 2) {
      direction->push_back(ByteOf(digits.substr(at, 2)));
    }
  }
  return seen;
}

// Real time: socat prints nothing when it has made its terminal.
void AwaitTerminal(const std::string& link) {
  for (int look = 0; look < 600 && !std::filesystem::exists(link); ++look) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
}

TEST(Socat, SeesEveryByteThatTheRecordingHolds) {
  ASSERT_TRUE(std::filesystem::exists(kSocat)) << "socat is missing; script/bootstrap installs it";
  test::RequireTshark();
  const test::TemporaryFolder folder;
  Process ipodsim(IPODSIM_PROGRAM, {"--link", folder.path("ipod")});
  ASSERT_TRUE(ipodsim.WaitForOutput("serving"));
  Process socat(kSocat, {"-x", "-v", "PTY,rawer,wait-slave,link=" + folder.path("dock"),
                         folder.path("ipod") + ",rawer"});
  AwaitTerminal(folder.path("dock"));
  const Ended session = test::Ipodctl({"--port", folder.path("dock"), "--capture",
                                       folder.path("line.pcapng"), "--conduct", "fast", "info"});
  EXPECT_EQ(session.status, 0) << session.err;
  ipodsim.Signal(SIGINT);
  EXPECT_EQ(ipodsim.Wait().status, 0);
  socat.Signal(SIGTERM);
  const BothDirections dumped = BytesOfSocat(socat.Wait().err);
  const BothDirections shown = BytesOfTshark(folder.path("line.pcapng"));
  const test::ReadRecording recorded = test::ReadPcapngFile(folder.path("line.pcapng"));
  EXPECT_GT(dumped.to_ipod.size(), 100U);
  EXPECT_GT(dumped.from_ipod.size(), 100U);
  EXPECT_EQ(recorded.BytesOf(1), dumped.to_ipod);
  EXPECT_EQ(recorded.BytesOf(2), dumped.from_ipod);
  EXPECT_EQ(shown.to_ipod, dumped.to_ipod);
  EXPECT_EQ(shown.from_ipod, dumped.from_ipod);
}

}  // namespace

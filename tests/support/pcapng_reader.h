// SPDX-License-Identifier: MIT
// Reads a recording for tests, with nothing of the writer's.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/bytes.h"

namespace test {

struct RecordedInterface {
  unsigned link_type = 0;
  std::string name;
  std::string description;
  std::uint64_t speed = 0;
  unsigned time_resolution = 0;
};

struct RecordedPacket {
  unsigned interface_number = 0;
  std::uint64_t time_ns = 0;
  std::uint64_t header_time_us = 0;  // in the twelve bytes in front
  unsigned event = 0;
  unsigned control_lines = 0;
  Bytes bytes;
  std::uint32_t flags = 0;
  std::vector<std::string> comments;
};

struct RecordedStatistics {
  unsigned interface_number = 0;
  std::uint64_t received = 0;
  std::uint64_t dropped = 0;
};

struct ReadRecording {
  std::string application;
  std::vector<RecordedInterface> interfaces;
  std::vector<RecordedPacket> packets;
  std::vector<RecordedStatistics> statistics;

  /// "> FF 55 ..." for what went to the iPod, "< ..." for what came, "event 6" for anything else.
  std::vector<std::string> Lines() const;
  /// All bytes of a direction, put together: event 1 to the iPod, 2 from it.
  Bytes BytesOf(unsigned event) const;
};

/// Fails the test where the file is not well formed.
ReadRecording ReadPcapng(const Bytes& file);
ReadRecording ReadPcapngFile(const std::string& path);
Bytes ReadWholeFile(const std::string& path);

}  // namespace test

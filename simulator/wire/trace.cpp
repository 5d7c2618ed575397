// SPDX-License-Identifier: MIT
// Decodes frames for people.

#include "trace.h"

#include <array>
#include <cstdio>

#include "simulator/protocol/accessory_information.h"

namespace ipodsim {
namespace {

constexpr std::size_t kLongestText = 60;
constexpr std::size_t kMostBytes = 24;

std::string Hex(unsigned value, int digits) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%0*X", digits, value);
  return text.data();
}

const char* StatusName(std::uint8_t status) {
  switch (static_cast<AckStatus>(status)) {
    case AckStatus::kOk:
      return "ok";
    case AckStatus::kFailed:
      return "failed";
    case AckStatus::kOutOfResources:
      return "out of resources";
    case AckStatus::kBadParameter:
      return "bad parameter";
    case AckStatus::kUnknown:
      return "unknown";
    case AckStatus::kPending:
      return "pending";
    case AckStatus::kNotAuthenticated:
      return "not authenticated";
  }
  return "status ?";
}

// Where the name in an answer begins; 0 when it holds none.
std::size_t TextStart(const Frame& frame) {
  if (frame.lingo == kGeneral) {
    switch (frame.command) {
      case general::kReturnIpodName:
      case general::kReturnIpodSerialNum:
        return 1;
      case general::kReturnIpodModelNum:
        return 5;
      case general::kRetAccessoryInfo:
        return !frame.data.empty() && IsTextInformation(frame.data[0]) ? 2 : 0;
      default:
        return 0;
    }
  }
  if (frame.lingo != kExtended) return 0;
  switch (frame.command) {
    case extended::kReturnCurrentPlayingTrackChapterName:
    case extended::kReturnIndexedPlayingTrackTitle:
    case extended::kReturnIndexedPlayingTrackArtistName:
    case extended::kReturnIndexedPlayingTrackAlbumName:
      return 1;
    case extended::kReturnCategorizedDatabaseRecord:
      return 5;
    default:
      return 0;
  }
}

// Cut where a character ends, with everything that could disturb a terminal left out.
std::string Quote(const Bytes& data, std::size_t begin) {
  std::string text = "\"";
  for (std::size_t i = begin; i < data.size() && data[i] != 0; ++i) {
    const bool begins_character = (data[i] & 0xC0) != 0x80;
    if (begins_character && text.size() > kLongestText) {
      text += "...";
      break;
    }
    text += data[i] < 0x20 || data[i] == 0x7F ? '?' : static_cast<char>(data[i]);
  }
  return text + '"';
}

std::string HexBytes(const Bytes& data, std::size_t end) {
  std::string text;
  for (std::size_t i = 0; i < end && i < kMostBytes; ++i) {
    if (i > 0) text += ' ';
    text += Hex(data[i], 2);
  }
  if (end > kMostBytes) text += " ... (" + std::to_string(end) + " bytes)";
  return text;
}

bool IsAck(const Frame& frame) {
  return frame.command == AckCommand(frame.lingo) &&
         frame.data.size() >= (frame.lingo == kExtended ? 3u : 2u);
}

std::string DescribeAck(const Frame& frame) {
  const Bytes& data = frame.data;
  const std::uint16_t acknowledged = frame.lingo == kExtended ? Get16(data, 1) : data[1];
  std::string text =
      std::string(" ") + StatusName(data[0]) + " for " + CommandName(frame.lingo, acknowledged);
  const std::size_t time_at = frame.lingo == kExtended ? 3 : 2;
  if (data[0] == static_cast<std::uint8_t>(AckStatus::kPending) && data.size() >= time_at + 4) {
    text += " within " + std::to_string(Get32(data, time_at)) + " ms";
  }
  return text;
}

}  // namespace

std::string Describe(const Frame& whole, bool has_identifier, Sender sender) {
  Frame frame = whole;
  std::string text =
      std::string(LingoName(frame.lingo)) + " " + CommandName(frame.lingo, frame.command, sender);
  if (has_identifier && frame.data.size() >= 2) {
    text += " id " + Hex(Get16(frame.data, 0), 4);
    frame.data.erase(frame.data.begin(), frame.data.begin() + 2);
  }
  if (IsAck(frame)) return text + DescribeAck(frame);
  const std::size_t text_start = TextStart(frame);
  if (text_start != 0 && frame.data.size() >= text_start) {
    if (text_start > 1) text += " " + HexBytes(frame.data, text_start - 1);
    return text + " " + Quote(frame.data, text_start - 1);
  }
  if (!frame.data.empty()) text += ": " + HexBytes(frame.data, frame.data.size());
  return text;
}

std::string Format(const TraceLine& line) {
  std::array<char, 48> time{};
  std::snprintf(time.data(), time.size(), "%4lld.%06lld ",
                static_cast<long long>(line.at / kSecond),
                static_cast<long long>(line.at % kSecond));
  const char* arrow = line.direction == TraceLine::Direction::kFromAccessory ? "> "
                      : line.direction == TraceLine::Direction::kToAccessory ? "< "
                                                                             : "* ";
  return time.data() + std::string(arrow) + line.text;
}

}  // namespace ipodsim

// SPDX-License-Identifier: MIT
// One good frame of every command that the library sends or receives, in every form.
#include "golden_frames.h"

namespace test {

namespace {

// The lingo, the command and its data, as they stand on the line.
struct Command {
  const char* head;
  const char* data;
};

// From sync and start bytes inside the data on, what is in them makes no difference to a frame;
// such data are among them, and checksums of all kinds.
constexpr Command kCommands[] = {
    // General
    {"00 01", "04"},
    {"00 02", "00 05"},
    {"00 02", "06 38 00 00 0B B8"},
    {"00 03", ""},
    {"00 04", "01"},
    {"00 05", ""},
    {"00 06", ""},
    {"00 07", ""},
    {"00 08", "5A 6F 65 00"},
    {"00 09", ""},
    {"00 0A", "01 02 03"},
    {"00 0B", ""},
    {"00 0C", "38 4B 36 34 32 00"},
    {"00 0D", ""},
    {"00 0E", "00 0D 00 05 4D 41 31 34 37 00"},
    {"00 0F", "04"},
    {"00 10", "04 01 0E"},
    {"00 11", ""},
    {"00 12", "01 00"},
    {"00 13", "00 00 12 1D 00 00 00 00 00 00 02 00"},
    {"00 23", "02"},
    {"00 27", "09"},
    {"00 28", "00 00 00 02 1B"},
    {"00 29", "0A"},
    {"00 2A", "0A 01"},
    {"00 2B", "0A 01 01"},
    {"00 37", "02"},
    {"00 38", ""},
    {"00 39", "02 0D 00 00 03 00 04 09 00 00 00 02 00 00 00 00 0A 00 02 01 47 79 6D 00 FF 55"},
    {"00 3A", "02 04 00 00 00 00 04 00 02 00 01"},
    {"00 3B", "00"},
    {"00 3C", "00"},
    {"00 49", "00 00 00 00 00 00 00 0C"},
    {"00 4A", "02 05"},
    {"00 4B", "09"},
    {"00 4C", "09 00 00 00 00 00 00 00 02"},
    {"00 4F", ""},
    {"00 50", "04 00 1A 00 07"},
    {"00 51", "00 00 00 00 00 00 00 0E"},
    // Simple Remote
    {"02 00", "01"},
    {"02 00", "00 00 00 00"},
    {"02 01", "00 00"},
    // Display Remote
    {"03 00", "00 12"},
    {"03 12", "05 00 00 00 03 00 00"},
    {"03 13", "05 48 65 6C 6C 6F 00"},
    // Extended Interface
    {"04 00 01", "00 00 16"},
    {"04 00 07", ""},
    {"04 00 08", "4F 6E 65 00"},
    {"04 00 0C", "00 00 00 00 01 00 00"},
    {"04 00 0D", "00 00 00 00 00 00 03 6F FF"},
    {"04 00 0E", ""},
    {"04 00 0F", "04 04 02 00 37 00 37"},
    {"04 00 10", "00 00 00 01 04 04 00 00 00 00"},
    {"04 00 11", "00 00 00 00 00 00 FF 55 04 04 FF FF 55 55 00 00"},
    {"04 00 16", ""},
    {"04 00 17", "05 00 00 00 07"},
    {"04 00 18", "05"},
    {"04 00 19", "00 00 FF 55"},
    {"04 00 1A", "05 00 00 00 00 FF FF FF FF"},
    {"04 00 1B", "00 00 00 07 53 6F 6E 67 20 73 65 76 65 6E 00"},
    {"04 00 1C", ""},
    {"04 00 1D", "00 03 6F FF 00 00 FF 55 01"},
    {"04 00 1E", ""},
    {"04 00 1F", "00 00 00 03"},
    {"04 00 1F", "00 00 00 03 00 01 00 00 00 0A"},
    {"04 00 20", "00 00 00 03"},
    {"04 00 21", "54 69 74 6C 65 00"},
    {"04 00 22", "00 00 00 03"},
    {"04 00 23", "41 72 74 69 73 74 00"},
    {"04 00 24", "00 00 00 03"},
    {"04 00 25", "41 6C 62 75 6D 00"},
    {"04 00 26", "01"},
    {"04 00 27", "04 00 00 FF 55"},
    {"04 00 28", "00 00 00 03"},
    {"04 00 29", "01"},
    {"04 00 2B", "00 00 00 00"},
    {"04 00 2C", ""},
    {"04 00 2D", "01"},
    {"04 00 2E", "01 00"},
    {"04 00 2F", ""},
    {"04 00 30", "02"},
    {"04 00 31", "02 00"},
    {"04 00 32", "00 00 01 00 08 00 02 00 00 00 02 FF 55 00 FF"},
    {"04 00 33", ""},
    {"04 00 34", "00 64 00 40 01"},
    {"04 00 38", "05 00 00 00 07 04"},
    {"04 00 3B", "01"},
    {"04 00 40", "00 00 00 00 00 00 00 05 40"},
    {"04 00 41", "00 00 00 01 40 00 03 6F FF"},
    // Sports
    {"09 00", "00 01"},
    {"09 01", ""},
    {"09 02", "01 00"},
    {"09 03", ""},
    {"09 04", "02 00 00"},
    {"09 80", "00 8A"},
    {"09 83", ""},
    {"09 84", "00 03 00"},
    {"09 88", "01"},
    {"09 89", "01 02"},
    {"09 8A", "01 01"},
    // Storage
    {"0C 00", "00 07"},
    {"0C 01", ""},
    {"0C 02", "00 01 86 A0 00 00 02 00 01 0F 00 00 00 00"},
    {"0C 04", "01"},
    {"0C 07", "01 00 00 02 00 3C 67 79 6D 64 61 74 61 3E 0A"},
    {"0C 08", "01"},
    {"0C 10", ""},
    {"0C 11", "00 00 00 00 3B 9A CA 00"},
    {"0C 12", "01 00 07 01 03 00 02 00"},
    {"0C 81", ""},
    {"0C 82", "00 00 00 00 00 00 00 00 00 00 01 00 00 00"},
};

// The length byte through the checksum sum to 0.
Bytes Frame(const Bytes& body, bool large) {
  Bytes frame = {0xFF, 0x55};
  if (large) frame.insert(frame.end(), {0, static_cast<std::uint8_t>(body.size() / 256)});
  frame.push_back(static_cast<std::uint8_t>(body.size() % 256));
  frame.insert(frame.end(), body.begin(), body.end());
  unsigned sum = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) sum += frame[i];
  frame.push_back(static_cast<std::uint8_t>(256 - sum % 256));
  return frame;
}

std::vector<Bytes> MakeFrames() {
  std::vector<Bytes> frames;
  for (const Command& command : kCommands) {
    for (const char* transaction_id : {"", "FF 55"}) {
      Bytes body = Hex(command.head);
      for (const char* more : {transaction_id, command.data}) {
        const Bytes bytes = Hex(more);
        body.insert(body.end(), bytes.begin(), bytes.end());
      }
      frames.push_back(Frame(body, false));
      frames.push_back(Frame(body, true));
    }
  }
  return frames;
}

}  // namespace

const std::vector<Bytes>& GoldenFrames() {
  static const std::vector<Bytes> frames = MakeFrames();
  return frames;
}

}  // namespace test

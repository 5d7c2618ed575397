// SPDX-License-Identifier: MIT
// Reads recordings: pcapng files of link type 250, in which each packet begins with twelve bytes
// that tell when and what happened, and the bytes of the line follow.
//
// A file is read from its beginning to its end, block by block, whatever its size. One of another
// program is read as well as one of ours, in either byte order. What is damaged ends the reading,
// with a sentence that says where.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "wire/conversation.h"

namespace ipodwire {

struct Packet {
  enum class Event {
    kStatus,
    kSent,      ///< bytes from the accessory to the iPod
    kReceived,  ///< bytes from the iPod
    kLost,
    kComplete,  ///< the recording was closed here
    kFraming,
    kParity,
    kBreak,
    kOverflow,
    kUnknown,
  };

  std::uint64_t number = 0;  ///< counted from 1, as other programs count too
  Nanoseconds time = 0;      ///< since the beginning of 1970
  std::string line;          ///< the recorded line's name; may be empty
  std::uint32_t baud = 0;    ///< the line's speed; 0 where the recording does not tell
  Event event = Event::kUnknown;
  std::vector<std::uint8_t> bytes;
  std::vector<std::string> comments;
};

class RecordingReader {
 public:
  /// Puts up to `count` bytes at `bytes`, waiting for them where they are still to come, and
  /// returns how many; 0 at the end.
  using Source = std::function<std::size_t(std::uint8_t* bytes, std::size_t count)>;

  enum class End {
    kNone,           ///< not reached
    kClosed,         ///< by the program that recorded
    kCut,            ///< it ends, and nothing closes it
    kDamaged,        ///< what follows cannot be read
    kNoRecording,    ///< the file is something else
    kOtherLinkType,  ///< the file is a recording of something else
  };

  explicit RecordingReader(Source source) : source_(std::move(source)) {}

  /// False at the end; end() and problem() then say why.
  bool Next(Packet* packet);

  End end() const { return end_; }
  /// What ended the reading, as the rest of a sentence that begins with the file's name: "ends in
  /// the middle of a block, at byte 1024". Empty when the recording was closed.
  const std::string& problem() const { return problem_; }
  /// How far it was read.
  std::uint64_t position() const { return position_; }

 private:
  struct Interface {
    std::string name;
    std::uint32_t baud = 0;
    bool is_serial = false;
    std::uint64_t ticks_per_second = 1'000'000;
  };
  using Bytes = std::vector<std::uint8_t>;

  bool Fill(std::uint8_t* bytes, std::size_t count, std::size_t* filled);
  bool FillBody(std::size_t size, Bytes* body);
  bool ReadBlock(std::uint32_t* type, Bytes* body);
  bool BeginSection();
  void AddInterface(const Bytes& body);
  bool ReadPacket(const Bytes& body, Packet* packet);
  bool Stop(End end, const std::string& problem);
  bool StopInBlock(const std::string& what);
  std::uint16_t Get16(const std::uint8_t* at) const;
  std::uint32_t Get32(const std::uint8_t* at) const;
  template <class Use>
  void ForEachOption(const Bytes& body, std::size_t begin, Use use) const;

  Source source_;
  std::uint64_t position_ = 0;
  std::uint64_t block_at_ = 0;
  bool in_section_ = false;
  bool big_endian_ = false;
  bool has_other_links_ = false;
  bool closed_ = false;
  std::uint64_t packets_ = 0;         // of any kind
  std::uint64_t serial_packets_ = 0;  // of serial lines
  std::vector<Interface> interfaces_;
  End end_ = End::kNone;
  std::string problem_;
};

}  // namespace ipodwire

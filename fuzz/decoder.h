// SPDX-License-Identifier: MIT
// One decoder of a session, which looks for the awaited answer in a frame.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "fuzz.h"
#include "input.h"
#include "ipodcomm/CIpodComm.h"
#include "quiet_world.h"
#include "support/peers.h"
#include "world/world.h"

namespace fuzz {

using Decoder = tagIPOD_COMM_ERROR (CIpodComm::*)(unsigned char* frame, unsigned long length,
                                                  tagIPOD_READ_PARAMS* read, int* keep_reading);

/// A session without a port, for all inputs: what a decoder leaves in it is put back.
class Bench {
 public:
  static Bench& Get() {
    static Bench bench;
    return bench;
  }

  /// The session, as a new one is but for the identifiers.
  CIpodComm& Prepare(bool identifiers, std::uint16_t own_identifier) {
    // Where no time passes at all a world suspects a loop.
    world_.Advance(1);
    CIpodCommPeer::Responses(session_).Clear();
    CIpodCommPeer::TransactionIdMode(session_) = identifiers ? 1 : 0;
    CIpodCommPeer::OwnTransactionId(session_) = own_identifier;
    return session_;
  }

 private:
  ipodcomm::virtual_platform::World world_{QuietWorld()};
  CIpodComm session_;
};

/// What a decoder is asked to find, and what it finds.
class Awaited {
 public:
  explicit Awaited(Input* input) : buffer_(input->Byte() % kMostBytes) {
    read_.expected_command = input->Byte();
    read_.final_command = input->Byte();
    read_.accept_ack = input->Byte() & 1;
    read_.buffer = buffer_.data();
    read_.size = static_cast<std::int32_t>(buffer_.size());
    read_.retries = 1;
  }
  tagIPOD_READ_PARAMS* read() { return &read_; }

  /// What was stored fits the buffer and stands in the frame.
  void Check(const std::vector<std::uint8_t>& frame) const {
    Require(read_.stored <= buffer_.size());
    const auto end = buffer_.begin() + static_cast<std::ptrdiff_t>(read_.stored);
    Require(std::search(frame.begin(), frame.end(), buffer_.begin(), end) != frame.end() ||
            read_.stored == 0);
  }

 private:
  static constexpr std::size_t kMostBytes = 64;

  std::vector<std::uint8_t> buffer_;
  tagIPOD_READ_PARAMS read_ = {};
};

/// The packet that follows, if the input has one: an answer that was announced.
inline void Follow(const std::vector<std::uint8_t>& bytes, CIpodComm* session) {
  tagSERIAL_PACKET packet = {};
  packet.length = static_cast<std::uint32_t>(std::min(bytes.size(), sizeof packet.data));
  std::copy_n(bytes.begin(), packet.length, packet.data);
  if (packet.length != 0) CIpodCommPeer::Responses(*session).Append(packet);
}

/// The first bytes choose identifiers and what is awaited; the frame follows behind its length, and
/// behind it perhaps another.
inline int Decode(Decoder decoder, const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMostBytes = 1024;
  if (size > kMostBytes) return 0;
  Input input(data, size);
  const std::uint8_t identifiers = input.Byte();
  CIpodComm& session = Bench::Get().Prepare((identifiers & 1) != 0, identifiers >> 1);
  Awaited awaited(&input);
  const std::size_t length = input.Byte() << 2;
  std::vector<std::uint8_t> frame = input.Bytes(length);
  Follow(input.Rest(), &session);

  int keep_reading = 0;
  const tagIPOD_COMM_ERROR result = (session.*decoder)(
      frame.data(), static_cast<unsigned long>(frame.size()), awaited.read(), &keep_reading);
  Require(result == IPOD_COMM_OK || result == IPOD_COMM_NO_ANSWER ||
          result == IPOD_COMM_UNEXPECTED);
  awaited.Check(frame);
  return 0;
}

}  // namespace fuzz

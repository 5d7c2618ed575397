// SPDX-License-Identifier: MIT
// How what a device sends gets on its way: as it is sent, byte by byte, split, late, behind junk.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace ipodcomm::virtual_platform {

class Delivery {
 public:
  using Bytes = std::vector<std::uint8_t>;

  /// A piece of what is sent, and how long after the piece before it goes out.
  struct Piece {
    Bytes bytes;
    std::int64_t gap_us = 0;
  };
  /// What becomes of what a device sends at a time, which is not empty: mostly a frame.
  using Manner = std::vector<Piece> (*)(const Bytes& sent);

  /// "as-sent", "byte-by-byte", "split", "late" or "junk".
  /// @throws std::invalid_argument for any other name
  static Manner ByName(const std::string& name);
  /// The manner that the environment variable IPODCOMM_DELIVERY names; as sent when it is not set.
  static Manner FromEnvironment();

  void Choose(Manner manner) { manner_ = manner; }

  void Add(const Bytes& sent, std::int64_t now_us);
  /// When the next piece goes out, or kNever.
  std::int64_t NextEvent() const;
  /// Takes that piece, which is due.
  Bytes PopPiece();
  /// Cut: what has not gone out is lost.
  void Cut() { pieces_.clear(); }

 private:
  struct Due {
    Bytes bytes;
    std::int64_t due_us;
  };

  Manner manner_ = FromEnvironment();
  std::deque<Due> pieces_;
};

}  // namespace ipodcomm::virtual_platform

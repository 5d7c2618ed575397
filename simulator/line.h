// SPDX-License-Identifier: MIT
// The way from the iPod to the accessory: frames wait for their time, then become bytes on a line
// that may be faulty.

#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>

#include "faults.h"

namespace ipodsim {

// Frames by the time at which they are due; equal times keep their order.
class Outbox {
 public:
  struct Item {
    Bytes wire;
    bool has_identifier = false;
    bool streamed = false;         // one of many answers to one request
    std::uint16_t identifier = 0;  // of that request
  };

  void Add(Microseconds due, Item item) { items_.emplace(due, std::move(item)); }
  std::optional<Microseconds> NextDue() const;
  // The frame due first, when its time has come.
  bool Take(Microseconds now, Microseconds* due, Item* item);
  // Drops what is left of streamed answers; of one request, when an identifier is given.
  void CancelStreams(std::optional<std::uint16_t> identifier);
  void Clear() { items_.clear(); }

 private:
  std::multimap<Microseconds, Item> items_;
};

// Bytes in the order in which they go out; frames never mix.
class Line {
 public:
  explicit Line(FaultDice* dice) : dice_(dice) {}

  void Send(const Bytes& wire, Microseconds at);
  std::optional<Microseconds> NextDue() const;
  Bytes Take(Microseconds now);
  void Clear();

 private:
  struct Chunk {
    Microseconds due;
    Bytes bytes;
  };

  void Damage(Bytes* wire);
  void Append(Bytes bytes, Microseconds due);

  FaultDice* dice_;
  std::deque<Chunk> chunks_;
  Microseconds busy_until_ = 0;
};

}  // namespace ipodsim

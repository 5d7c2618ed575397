// SPDX-License-Identifier: MIT
// Where the iPod's frames wait for their time.

#pragma once

#include <map>
#include <optional>

#include "simulator/base/bytes.h"
#include "simulator/base/clock.h"

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
  bool Pop(Microseconds now, Microseconds* due, Item* item);
  // Drops what is left of streamed answers; of one request, when an identifier is given.
  void CancelStreams(std::optional<std::uint16_t> identifier);
  void Clear() { items_.clear(); }

 private:
  std::multimap<Microseconds, Item> items_;
};

}  // namespace ipodsim

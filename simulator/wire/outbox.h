// SPDX-License-Identifier: MIT
// Where the iPod's frames wait for their time.

#pragma once

#include <map>
#include <optional>

#include "simulator/base/bytes.h"
#include "simulator/base/clock.h"

namespace ipodsim {

/// Frames by the time at which they are due; equal times keep their order.
class Outbox {
 public:
  /// A request that is answered.
  struct Asked {
    std::uint8_t lingo = 0;
    std::uint16_t command = 0;
    Microseconds at = 0;
    bool was_pending = false;  // it was acknowledged as pending before
  };
  struct Item {
    Bytes wire;
    std::optional<Asked> asked;  // none for what the iPod says unasked
    bool has_identifier = false;
    bool streamed = false;         // one of many answers to one request
    bool after_next = false;       // goes out only behind the next answer
    std::uint16_t identifier = 0;  // of that request
  };

  void Add(Microseconds due, Item item) { items_.emplace(due, std::move(item)); }
  std::optional<Microseconds> NextDue() const;
  /// The frame due first, when its time has come.
  bool Pop(Microseconds now, Microseconds* due, Item* item);
  /// The answer due first after `now`; null when there is none.
  const Item* NextAnswer(Microseconds now) const;
  /// Drops what is left of streamed answers; of one request, when an identifier is given.
  void CancelStreams(std::optional<std::uint16_t> identifier);
  void Clear() { items_.clear(); }

 private:
  std::multimap<Microseconds, Item> items_;
};

}  // namespace ipodsim

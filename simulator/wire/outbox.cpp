// SPDX-License-Identifier: MIT
// Keeps frames until they are due.

#include "outbox.h"

#include <iterator>
#include <utility>

namespace ipodsim {

std::optional<Microseconds> Outbox::NextDue() const {
  if (items_.empty()) return std::nullopt;
  return items_.begin()->first;
}

bool Outbox::Pop(Microseconds now, Microseconds* due, Item* item) {
  const auto first = items_.begin();
  if (first == items_.end() || first->first > now) return false;
  *due = first->first;
  *item = std::move(first->second);
  items_.erase(first);
  return true;
}

const Outbox::Item* Outbox::NextAnswer(Microseconds now) const {
  for (auto it = items_.upper_bound(now); it != items_.end(); ++it) {
    if (it->second.asked) return &it->second;
  }
  return nullptr;
}

void Outbox::CancelStreams(std::optional<std::uint16_t> identifier) {
  for (auto it = items_.begin(); it != items_.end();) {
    const bool drop = it->second.streamed && (!identifier || *identifier == it->second.identifier);
    it = drop ? items_.erase(it) : std::next(it);
  }
}

}  // namespace ipodsim
